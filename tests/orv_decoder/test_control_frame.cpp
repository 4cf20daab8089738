#include "orv_decoder/ControlFrame.h"
#include "orv_decoder/Crc8.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::ControlCommand;

TEST(ControlRequest, isCodePayloadAndChecksum)
{
    const Bytes frame = orv::encodeRequest(ControlCommand::Thresholds, Bytes{0x01, 0x02});
    EXPECT_EQ(frame, (Bytes{0x01, 0x01, 0x02, 0x85}));
}

TEST(ControlRequest, mayHaveNoPayload)
{
    EXPECT_EQ(orv::encodeRequest(ControlCommand::FirmwareVersion, {}), (Bytes{0x02, 0x94}));
}

TEST(ControlRequest, decodesToWhatWasEncoded)
{
    const auto request = orv::decodeRequest(Bytes{0x05, 0x00, 0x03, 0xF9});
    ASSERT_TRUE(request);
    EXPECT_EQ(request->code, 5);
    EXPECT_EQ(request->payload, (Bytes{0x00, 0x03}));
}

TEST(ControlRequest, withoutPayloadDecodesToAnEmptyOne)
{
    const auto request = orv::decodeRequest(Bytes{0x02, 0x94});
    ASSERT_TRUE(request);
    EXPECT_EQ(request->code, 2);
    EXPECT_TRUE(request->payload.empty());
}

TEST(ControlRequest, keepsACodeThatNoCommandHas)
{
    const auto request = orv::decodeRequest(Bytes{0xFF, 0xFF});
    ASSERT_TRUE(request);
    EXPECT_EQ(request->code, 255);
}

TEST(ControlRequest, isNothingWithoutBytesOrWithAChecksumAlone)
{
    EXPECT_FALSE(orv::decodeRequest({}));
    EXPECT_FALSE(orv::decodeRequest(Bytes{0x00}));
}

TEST(ControlRequest, isNothingWhenCutAnywhere)
{
    const Bytes frame = {0x05, 0x00, 0x03, 0xF9};
    for (std::size_t length = 0; length < frame.size(); ++length)
        EXPECT_FALSE(orv::decodeRequest(std::span(frame).first(length))) << length << " bytes";
}

TEST(ControlReply, isCodePayloadStatusAndChecksum)
{
    EXPECT_EQ(orv::encodeReply(2, Bytes{2, 14, 0}, 0), (Bytes{0x02, 0x02, 0x0E, 0x00, 0x00, 0xFB}));
    EXPECT_EQ(orv::encodeReply(2, {}, 5), (Bytes{0x02, 0x05, 0xF7}));
}

TEST(ControlReply, isCutToItsPayload)
{
    Bytes reply = {0x02, 0x02, 0x0E, 0x00, 0x00, 0xFB};
    std::string error = "earlier";
    EXPECT_TRUE(orv::decodeReply(ControlCommand::FirmwareVersion, reply, error));
    EXPECT_EQ(reply, (Bytes{2, 14, 0}));
    EXPECT_EQ(error, "earlier");
}

TEST(ControlReply, ofThreeBytesHasAnEmptyPayload)
{
    Bytes reply = {0x00, 0x00, 0xC3};
    std::string error;
    EXPECT_TRUE(orv::decodeReply(ControlCommand::MeasurementSequence, reply, error));
    EXPECT_TRUE(reply.empty());
}

struct Refused
{
    const char* name;
    Bytes reply;
    const char* error;
};

class RefusedReply : public testing::TestWithParam<Refused>
{};

TEST_P(RefusedReply, namesItsReason)
{
    Bytes reply = GetParam().reply;
    std::string error;
    EXPECT_FALSE(orv::decodeReply(ControlCommand::FirmwareVersion, reply, error));
    EXPECT_EQ(error, GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    FirmwareVersion, RefusedReply,
    testing::Values(Refused{"noBytes", {}, "checksum error"},
                    Refused{"oneByteThatIsNoChecksum", {0x02}, "checksum error"},
                    Refused{"oneByteWhoseChecksumFits", {0x00}, "wrong reply type"},
                    Refused{"noStatusByte", {0x02, 0x94}, "wrong data size"},
                    Refused{
                        "flippedChecksum", {0x02, 0x02, 0x0E, 0x00, 0x00, 0xFA}, "checksum error"},
                    Refused{"flippedChecksumAndCode", {0x03, 0x00, 0xA8}, "checksum error"},
                    Refused{"otherCode", {0x03, 0x00, 0xA9}, "wrong reply type"},
                    Refused{"otherCodeAndStatus", {0x03, 0x03, 0xC6}, "wrong reply type"},
                    Refused{"status3", {0x02, 0x03, 0xE0}, "ECU error (3)"},
                    Refused{"status5", {0x02, 0x05, 0xF7}, "ECU error (5)"},
                    Refused{"status255", {0x02, 0xFF, 0xE9}, "ECU error (255)"}),
    [](const auto& row) { return row.param.name; });

TEST(ControlReply, isNeverTakenForWholeWhenCut)
{
    const Bytes whole = orv::encodeReply(1, Bytes{2, 10, 43, 76, 109, 142, 175, 208, 241, 18}, 0);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        Bytes reply(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        std::string error;
        EXPECT_FALSE(orv::decodeReply(ControlCommand::Thresholds, reply, error)) << length;
        EXPECT_FALSE(error.empty());
    }
}

TEST(ControlReply, roundTripsForEveryStatus)
{
    for (unsigned status = 0; status < 256; ++status) {
        Bytes reply = orv::encodeReply(4, Bytes{9, 8, 7}, static_cast<std::uint8_t>(status));
        std::string error;
        EXPECT_EQ(orv::decodeReply(ControlCommand::SensorPositions, reply, error), status == 0);
        if (status != 0) {
            EXPECT_EQ(error, "ECU error (" + std::to_string(status) + ")");
        }
    }
}

} // namespace
