#include "orv_decoder/ControlFrame.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/tables.h"
#include "tests/support/ScriptedControlSocket.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

// What docs/protocol.md says is what the library does.
class ProtocolDocument : public testing::Test
{
protected:
    bool says(const std::string& text) const { return mText.find(text) != std::string::npos; }

    static std::string row(std::initializer_list<double> cells)
    {
        std::ostringstream line;
        line << "|";
        for (const double cell : cells)
            line << ' ' << cell << " |";
        return line.str();
    }

private:
    static std::string read()
    {
        std::ifstream file(TARVIO_PROTOCOL_DOCUMENT);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    const std::string mText = read();
};

TEST_F(ProtocolDocument, showsTheRequestThatIsSent)
{
    EXPECT_TRUE(says("    01 01 02 85\n"));
    ScriptedControlSocket socket;
    orv::OrvCtrlClient client(&socket);
    orv::SensorThreshold threshold;
    client.readThresholds(2, threshold);
    EXPECT_EQ(socket.requests(), (std::vector<Bytes>{{0x01, 0x01, 0x02, 0x85}}));
}

TEST_F(ProtocolDocument, showsTheReplyThatIsUnderstood)
{
    EXPECT_TRUE(says("    01 02 0A 2B 4C 6D 8E AF D0 F1 12 33 54 75 02 00 F1\n"));
    ScriptedControlSocket socket;
    orv::OrvCtrlClient client(&socket);
    socket.queueRaw({0x01, 0x02, 0x0A, 0x2B, 0x4C, 0x6D, 0x8E, 0xAF, 0xD0, 0xF1, 0x12, 0x33, 0x54,
                     0x75, 0x02, 0x00, 0xF1});
    orv::SensorThreshold threshold;
    ASSERT_TRUE(client.readThresholds(2, threshold));
    EXPECT_EQ(threshold.scale, 2);
    EXPECT_EQ(threshold.entries[1], 0x2B);
    EXPECT_EQ(orv::timeIndexOf(threshold.entries[1]), 1);
    EXPECT_EQ(orv::levelIndexOf(threshold.entries[1]), 11);
}

TEST_F(ProtocolDocument, showsTheReplyThatIsRefused)
{
    EXPECT_TRUE(says("    01 03 8A\n"));
    const Bytes frame = {0x01, 0x03, 0x8A};
    EXPECT_EQ(orv::decodeReply(orv::ControlCommand::Thresholds, frame).error, "ECU error (3)");
}

TEST_F(ProtocolDocument, listsTheTablesOfTheLibrary)
{
    for (std::size_t i = 0; i < orv::kSegmentDurationsUs.size(); ++i)
        EXPECT_TRUE(says(row({double(i), orv::kSegmentDurationsUs[i]}))) << "duration " << i;
    for (std::size_t k = 0; k < 16; ++k) {
        EXPECT_TRUE(says(
            row({double(k), orv::kThresholdLevelsDb[k], orv::kThresholdLevels[k], double(k + 16),
                 orv::kThresholdLevelsDb[k + 16], orv::kThresholdLevels[k + 16]})))
            << "level " << k;
        EXPECT_TRUE(says(row({double(k), orv::kMagnitudesDb[k], orv::kMagnitudeLevels[k]})))
            << "magnitude " << k;
    }
}

struct Text
{
    const char* name;
    const char* text;
};

class ProtocolText : public ProtocolDocument, public testing::WithParamInterface<Text>
{};

TEST_P(ProtocolText, isNamed)
{
    EXPECT_TRUE(says('"' + std::string(GetParam().text) + '"')) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Errors, ProtocolText,
    testing::Values(
        Text{"startUp", "Can't start win sock"}, Text{"controlStartUp", "Can't start win sock API"},
        Text{"create", "Can't create socket"}, Text{"reuse", "Can't set receive timeout"},
        Text{"bind", "Can't bind socket"},
        Text{"timeoutOption", "Can't set receive timeout option"}, Text{"receive", "receive error"},
        Text{"send", "socket: send error"}, Text{"timeout", "socket: receive timeout"},
        Text{"checksum", "checksum error"}, Text{"replyType", "wrong reply type"},
        Text{"size", "wrong data size"}, Text{"networkSize", "wrong data format"},
        Text{"format", "wrong format"}, Text{"sensor", "wrong sensor id"},
        Text{"scale", "wrong scale value read from sensor"}, Text{"status", "ECU error (3)"},
        Text{"stepCount", "Only 1...12 steps can be set."},
        Text{"datagram", "wrong datagram format"}),
    [](const auto& row) { return row.param.name; });

} // namespace
