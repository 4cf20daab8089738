#include "orv_decoder/EcuNetworkSettings.h"
#include "orv_decoder/MseqStep.h"
#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "orv_decoder/SensorThreshold.h"

#include <gtest/gtest.h>

namespace {

TEST(ValidFlag, isWhatItWasSetTo)
{
    orv::ValidFlag flag;
    EXPECT_FALSE(flag);
    flag = true;
    EXPECT_TRUE(flag);
}

template<typename Record>
class FlaggedRecord : public testing::Test
{};

using FlaggedRecords =
    testing::Types<orv::MseqStep, orv::SensorThreshold, orv::EcuNetworkSettings,
                   orv::OrvMeasurementResult, orv::OrvFreespaceEntry, orv::OrvFreespacePackage>;
TYPED_TEST_SUITE(FlaggedRecord, FlaggedRecords);

TYPED_TEST(FlaggedRecord, equalsOneThatHoldsTheSame)
{
    TypeParam record;
    record.valid = true;
    EXPECT_FALSE(TypeParam{}.valid);
    EXPECT_EQ(record, TypeParam{});
}

} // namespace
