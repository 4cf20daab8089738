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
    const Bytes frame = {0x02, 0x02, 0x0E, 0x00, 0x00, 0xFB};
    const orv::ControlReply reply = orv::decodeReply(ControlCommand::FirmwareVersion, frame);
    ASSERT_TRUE(reply.payload);
    EXPECT_EQ(Bytes(reply.payload->begin(), reply.payload->end()), (Bytes{2, 14, 0}));
    EXPECT_EQ(reply.error, "");
    EXPECT_FALSE(reply.isStray);
}

TEST(ControlReply, ofThreeBytesHasAnEmptyPayload)
{
    const Bytes frame = {0x00, 0x00, 0xC3};
    const orv::ControlReply reply = orv::decodeReply(ControlCommand::MeasurementSequence, frame);
    ASSERT_TRUE(reply.payload);
    EXPECT_TRUE(reply.payload->empty());
}

struct Refused
{
    const char* name;
    Bytes reply;
    const char* error;
    bool isStray = false;
};

class RefusedReply : public testing::TestWithParam<Refused>
{};

TEST_P(RefusedReply, namesItsReason)
{
    const auto reply = orv::decodeReply(ControlCommand::FirmwareVersion, GetParam().reply);
    EXPECT_FALSE(reply.payload);
    EXPECT_EQ(reply.error, GetParam().error);
    EXPECT_EQ(reply.isStray, GetParam().isStray);
}

INSTANTIATE_TEST_SUITE_P(
    FirmwareVersion, RefusedReply,
    testing::Values(Refused{"noBytes", {}, "checksum error", true},
                    Refused{"oneByteThatIsNoChecksum", {0x02}, "checksum error"},
                    Refused{"oneByteWhoseChecksumFits", {0x00}, "wrong reply type", true},
                    Refused{"noStatusByte", {0x02, 0x94}, "wrong data size"},
                    Refused{
                        "flippedChecksum", {0x02, 0x02, 0x0E, 0x00, 0x00, 0xFA}, "checksum error"},
                    Refused{"flippedChecksumAndCode", {0x03, 0x00, 0xA8}, "checksum error"},
                    Refused{"otherCode", {0x03, 0x00, 0xA9}, "wrong reply type", true},
                    Refused{"otherCodeAndStatus", {0x03, 0x03, 0xC6}, "wrong reply type", true},
                    Refused{"status3", {0x02, 0x03, 0xE0}, "ECU error (3)"},
                    Refused{"status5", {0x02, 0x05, 0xF7}, "ECU error (5)"},
                    Refused{"status255", {0x02, 0xFF, 0xE9}, "ECU error (255)"}),
    [](const auto& row) { return row.param.name; });

TEST(ControlReply, isNeverTakenForWholeWhenCut)
{
    const Bytes whole = orv::encodeReply(1, Bytes{2, 10, 43, 76, 109, 142, 175, 208, 241, 18}, 0);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const auto reply =
            orv::decodeReply(ControlCommand::Thresholds, std::span(whole).first(length));
        EXPECT_FALSE(reply.payload) << length;
        EXPECT_FALSE(reply.error.empty());
    }
}

TEST(ControlReply, roundTripsForEveryStatus)
{
    for (unsigned status = 0; status < 256; ++status) {
        const Bytes frame = orv::encodeReply(4, Bytes{9, 8, 7}, static_cast<std::uint8_t>(status));
        const auto reply = orv::decodeReply(ControlCommand::SensorPositions, frame);
        EXPECT_EQ(reply.payload.has_value(), status == 0);
        EXPECT_EQ(reply.error, status == 0 ? "" : "ECU error (" + std::to_string(status) + ")");
    }
}

} // namespace
