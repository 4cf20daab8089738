#include "orv_decoder/ControlFrame.h"
#include "orv_decoder/Crc8.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Crc8, noBytesGiveZero)
{
    EXPECT_EQ(orv::crc8({}), 0);
}

TEST(ControlFrame, statusFiveIsReportedInDecimal)
{
    Bytes reply = orv::encodeReply(2, {}, 5);
    std::string error;
    EXPECT_FALSE(orv::decodeReply(orv::ControlCommand::FirmwareVersion, reply, error));
    EXPECT_EQ(error, "ECU error (5)");
}

} // namespace
