#include "orv_decoder/SensorThreshold.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::SensorThreshold;

const Bytes kThresholdBytes = {0x02, 0x0A, 0x2B, 0x4C, 0x6D, 0x8E, 0xAF,
                               0xD0, 0xF1, 0x12, 0x33, 0x54, 0x75, 0x04};
const SensorThreshold kThreshold = {
    .valid = true,
    .sensorId = 2,
    .entries = {0x0A, 0x2B, 0x4C, 0x6D, 0x8E, 0xAF, 0xD0, 0xF1, 0x12, 0x33, 0x54, 0x75},
    .scale = 4};

TEST(SensorThreshold, encodesAndDecodesKnownBytes)
{
    EXPECT_EQ(orv::encodeThreshold(kThreshold), kThresholdBytes);
    EXPECT_EQ(orv::decodeThreshold(kThresholdBytes), kThreshold);
    EXPECT_TRUE(orv::decodeThreshold(kThresholdBytes).value().valid);
}

TEST(SensorThreshold, ofAnyOtherSizeIsInvalid)
{
    Bytes bytes = kThresholdBytes;
    bytes.resize(20);
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        const auto threshold = orv::decodeThreshold(std::span(bytes).first(length));
        EXPECT_EQ(threshold.has_value(), length == 14) << length;
    }
}

TEST(SensorThreshold, freshRecordIsZeroButForTheScaleOfTwo)
{
    EXPECT_EQ(orv::encodeThreshold({}), (Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2}));
    EXPECT_FALSE(SensorThreshold{}.valid);
}

TEST(CheckedThreshold, isTheRecordOfTheSensorThatWasAskedFor)
{
    const orv::CheckedThreshold checked = orv::checkedThreshold(kThresholdBytes, 2);
    EXPECT_EQ(checked.record, kThreshold);
    EXPECT_EQ(checked.error, "");
}

struct Refused
{
    const char* name;
    std::size_t length;
    std::uint8_t askedFor;
    std::uint8_t scale;
    const char* error;
};

class RefusedThreshold : public testing::TestWithParam<Refused>
{};

TEST_P(RefusedThreshold, isNoRecordAndNamesItsReason)
{
    Bytes bytes = kThresholdBytes;
    bytes.back() = GetParam().scale;
    bytes.resize(GetParam().length, GetParam().scale);
    const orv::CheckedThreshold checked = orv::checkedThreshold(bytes, GetParam().askedFor);
    EXPECT_FALSE(checked.record);
    EXPECT_EQ(checked.error, GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Record, RefusedThreshold,
    testing::Values(Refused{"noBytes", 0, 2, 4, "wrong data size"},
                    Refused{"oneByteShort", 13, 2, 4, "wrong data size"},
                    Refused{"oneByteLong", 15, 2, 4, "wrong data size"},
                    Refused{"shortAndOfAnotherSensor", 13, 3, 4, "wrong data size"},
                    Refused{"ofAnotherSensor", 14, 3, 4, "wrong sensor id"},
                    Refused{"ofAnotherSensorAndScale", 14, 3, 5, "wrong sensor id"},
                    Refused{"firstScaleTooMuch", 14, 2, 5, "wrong scale value read from sensor"},
                    Refused{"largestScale", 14, 2, 255, "wrong scale value read from sensor"}),
    [](const auto& row) { return row.param.name; });

} // namespace
