#include "orv_decoder/OrvCtrlClient.h"
#include "tests/support/ScriptedControlSocket.h"

#include <gtest/gtest.h>

#include <functional>
#include <numeric>
#include <stdexcept>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::EcuNetworkSettings;
using orv::FirmwareVersion;
using orv::MseqStep;
using orv::OrvCtrlClient;
using orv::SensorMountPositions;
using orv::SensorThreshold;

const SensorThreshold kThreshold = {
    .valid = true,
    .sensorId = 2,
    .entries = {0x0A, 0x2B, 0x4C, 0x6D, 0x8E, 0xAF, 0xD0, 0xF1, 0x12, 0x33, 0x54, 0x75},
    .scale = 2};

Bytes thresholdBytes(std::uint8_t sensorId, std::uint8_t scale)
{
    return {sensorId, 0x0A, 0x2B, 0x4C, 0x6D, 0x8E, 0xAF,
            0xD0,     0xF1, 0x12, 0x33, 0x54, 0x75, scale};
}

// `count` announced steps followed by the bytes of `present` ones, the third byte of step i being
// i.
Bytes sequenceBytes(std::uint8_t count, std::uint8_t present)
{
    Bytes bytes = {count};
    for (std::uint8_t i = 0; i < present; ++i)
        bytes.insert(bytes.end(), {0x01, 0x00, i, 0x00, 0x01, 0x00, 0x00, 0x00, 0x07, 0x00});
    return bytes;
}

class CtrlClient : public testing::Test
{
protected:
    ScriptedControlSocket mSocket;
    OrvCtrlClient mClient{&mSocket};
};

void expectInvalidSocketPointer(const std::function<void()>& act)
{
    try {
        act();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Invalid socket pointer");
    }
}

TEST_F(CtrlClient, refusesANullSocket)
{
    expectInvalidSocketPointer([] { const OrvCtrlClient client(nullptr); });
}

TEST_F(CtrlClient, refusesANullSocketLaterAndKeepsTheOldOne)
{
    expectInvalidSocketPointer([this] { mClient.setSocket(nullptr); });
    EXPECT_EQ(mClient.socket(), &mSocket);
}

TEST_F(CtrlClient, talksThroughTheSocketItWasGivenLast)
{
    ScriptedControlSocket other;
    other.queueReply(2, {1, 2, 3});
    mClient.setSocket(&other);
    FirmwareVersion version;
    EXPECT_TRUE(mClient.readFirmwareVersion(version));
    EXPECT_TRUE(mSocket.requests().empty());
}

TEST_F(CtrlClient, hasNoErrorAtFirst)
{
    EXPECT_EQ(mClient.lastError(), "");
}

TEST_F(CtrlClient, successLeavesTheLastReasonInPlace)
{
    FirmwareVersion version;
    ASSERT_FALSE(mClient.readFirmwareVersion(version));
    mSocket.queueReply(2, {1, 2, 3});
    EXPECT_TRUE(mClient.readFirmwareVersion(version));
    EXPECT_EQ(mClient.lastError(), "socket: receive timeout");
}

TEST_F(CtrlClient, readsTheFirmwareVersion)
{
    mSocket.queueRaw({0x02, 0x02, 0x0E, 0x00, 0x00, 0xFB});
    FirmwareVersion version;
    EXPECT_TRUE(mClient.readFirmwareVersion(version));
    EXPECT_EQ(version.text(), "2.14.0");
    EXPECT_EQ(mSocket.requests(), (std::vector<Bytes>{{0x02, 0x94}}));
}

TEST_F(CtrlClient, readsTheMeasurementSequence)
{
    mSocket.queueReply(0, {2,    0x01, 0x08, 0xFE, 0x07, 0x01, 0x00, 0x02, 0x00, 0x07, 0x00,
                           0x02, 0x00, 0xFD, 0x0F, 0x00, 0x00, 0x00, 0x00, 0x09, 0x00});
    std::vector<MseqStep> steps;
    EXPECT_TRUE(mClient.readMeasurementSequence(steps));
    EXPECT_EQ(steps,
              (std::vector<MseqStep>{
                  {.valid = true,
                   .activeMask = 0x0801,
                   .passiveMask = 0x07FE,
                   .modulation = 1,
                   .code = 2,
                   .fifthValue = 7},
                  {.valid = true, .activeMask = 0x0002, .passiveMask = 0x0FFD, .fifthValue = 9}}));
    EXPECT_EQ(mSocket.requests(), (std::vector<Bytes>{{0x00, 0x01, 0xA1}}));
}

TEST_F(CtrlClient, readsASequenceOfTwelveSteps)
{
    mSocket.queueReply(0, sequenceBytes(12, 12));
    std::vector<MseqStep> steps;
    EXPECT_TRUE(mClient.readMeasurementSequence(steps));
    ASSERT_EQ(steps.size(), 12U);
    EXPECT_EQ(steps[11].passiveMask, 11);
}

TEST_F(CtrlClient, readsAnEmptySequence)
{
    mSocket.queueReply(0, {0});
    std::vector<MseqStep> steps(3);
    EXPECT_TRUE(mClient.readMeasurementSequence(steps));
    EXPECT_TRUE(steps.empty());
}

TEST_F(CtrlClient, replacesTheStepsOfAnEarlierRead)
{
    mSocket.queueReply(0, sequenceBytes(1, 1));
    std::vector<MseqStep> steps(5);
    EXPECT_TRUE(mClient.readMeasurementSequence(steps));
    EXPECT_EQ(steps.size(), 1U);
}

TEST_F(CtrlClient, acceptsBytesBehindTheLastStep)
{
    mSocket.queueReply(0, sequenceBytes(1, 3));
    std::vector<MseqStep> steps;
    EXPECT_TRUE(mClient.readMeasurementSequence(steps));
    EXPECT_EQ(steps.size(), 1U);
}

TEST_F(CtrlClient, clearsTheStepsBeforeItReads)
{
    std::vector<MseqStep> steps(3);
    EXPECT_FALSE(mClient.readMeasurementSequence(steps));
    EXPECT_TRUE(steps.empty());
}

TEST_F(CtrlClient, stopsAtTheFirstStepThatIsCut)
{
    Bytes cut = sequenceBytes(3, 2);
    cut.resize(cut.size() + 9);
    mSocket.queueReply(0, cut);
    std::vector<MseqStep> steps;
    EXPECT_FALSE(mClient.readMeasurementSequence(steps));
    EXPECT_EQ(mClient.lastError(), "wrong format");
    ASSERT_EQ(steps.size(), 2U);
    EXPECT_EQ(steps[1].passiveMask, 1);
}

TEST_F(CtrlClient, writesTheMeasurementSequence)
{
    mSocket.queueReply(0, {});
    const MseqStep step = {
        .activeMask = 0x0001, .passiveMask = 0x0FFE, .modulation = 1, .code = 0, .fifthValue = 7};
    EXPECT_TRUE(mClient.writeMeasurementSequence({&step, 1}));
    EXPECT_EQ(mSocket.requests(), (std::vector<Bytes>{{0x00, 0x00, 0x01, 0x01, 0x00, 0xFE, 0x0F,
                                                       0x01, 0x00, 0x00, 0x00, 0x07, 0x00, 0xB6}}));
}

TEST_F(CtrlClient, writesTwelveStepsButNotThirteenOrNone)
{
    mSocket.queueReply(0, {});
    EXPECT_TRUE(mClient.writeMeasurementSequence(std::vector<MseqStep>(12)));
    ASSERT_EQ(mSocket.requests().size(), 1U);
    EXPECT_EQ(mSocket.requests()[0].size(), 1U + 122U + 1U);
    for (const std::size_t count : {std::size_t{0}, std::size_t{13}, std::size_t{256}}) {
        EXPECT_FALSE(mClient.writeMeasurementSequence(std::vector<MseqStep>(count)));
        EXPECT_EQ(mClient.lastError(), "Only 1...12 steps can be set.");
    }
    EXPECT_EQ(mSocket.requests().size(), 1U);
}

TEST_F(CtrlClient, readsTheThresholdsOfOneSensor)
{
    mSocket.queueRaw({0x01, 0x02, 0x0A, 0x2B, 0x4C, 0x6D, 0x8E, 0xAF, 0xD0, 0xF1, 0x12, 0x33, 0x54,
                      0x75, 0x02, 0x00, 0xF1});
    SensorThreshold threshold;
    EXPECT_TRUE(mClient.readThresholds(2, threshold));
    EXPECT_EQ(threshold, kThreshold);
    EXPECT_EQ(mSocket.requests(), (std::vector<Bytes>{{0x01, 0x01, 0x02, 0x85}}));
}

TEST_F(CtrlClient, acceptsAScaleOfFour)
{
    mSocket.queueReply(1, thresholdBytes(2, 4));
    SensorThreshold threshold;
    EXPECT_TRUE(mClient.readThresholds(2, threshold));
    EXPECT_EQ(threshold.scale, 4);
}

TEST_F(CtrlClient, writesThresholdsForGood)
{
    mSocket.queueReply(1, {});
    EXPECT_TRUE(mClient.writeThresholds(kThreshold, true));
    EXPECT_EQ(mSocket.requests(),
              (std::vector<Bytes>{{0x01, 0x00, 0x02, 0x0A, 0x2B, 0x4C, 0x6D, 0x8E, 0xAF, 0xD0, 0xF1,
                                   0x12, 0x33, 0x54, 0x75, 0x02, 0xCD}}));
}

TEST_F(CtrlClient, writesThresholdsForNowInModeTwo)
{
    mSocket.queueReply(1, {});
    EXPECT_TRUE(mClient.writeThresholds(kThreshold, false));
    EXPECT_EQ(mSocket.requests(),
              (std::vector<Bytes>{{0x01, 0x02, 0x02, 0x0A, 0x2B, 0x4C, 0x6D, 0x8E, 0xAF, 0xD0, 0xF1,
                                   0x12, 0x33, 0x54, 0x75, 0x02, 0xED}}));
}

const Bytes kNetworkBytes = {192, 168, 1,   3, 255, 255,  255,  0,    192,  168,  1,
                             1,   192, 168, 1, 2,   0x51, 0xC3, 0x52, 0xC3, 0x53, 0xC3};
const EcuNetworkSettings kNetwork = {.valid = true,
                                     .ecuIp = 0x0301A8C0,
                                     .subnetMask = 0x00FFFFFF,
                                     .gateway = 0x0101A8C0,
                                     .controlPort = 50002,
                                     .hostIp = 0x0201A8C0,
                                     .receivePort = 50001,
                                     .freespacePort = 50003};

TEST_F(CtrlClient, readsTheNetworkSettings)
{
    mSocket.queueReply(3, kNetworkBytes);
    EcuNetworkSettings settings;
    EXPECT_TRUE(mClient.readNetworkSettings(settings));
    EXPECT_EQ(settings, kNetwork);
    EXPECT_EQ(mSocket.requests(), (std::vector<Bytes>{{0x03, 0x01, 0xCB}}));
}

TEST_F(CtrlClient, writesTheNetworkSettings)
{
    mSocket.queueReply(3, {});
    EXPECT_TRUE(mClient.writeNetworkSettings(kNetwork));
    EXPECT_EQ(
        mSocket.requests(),
        (std::vector<Bytes>{{0x03, 0x00, 192, 168, 1, 3,    255,  255,  255,  0,    192,  168, 1,
                             1,    192,  168, 1,   2, 0x51, 0xC3, 0x52, 0xC3, 0x53, 0xC3, 0x95}}));
}

TEST_F(CtrlClient, readsTheSensorPositions)
{
    Bytes bytes(144);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    mSocket.queueReply(4, bytes);
    SensorMountPositions positions;
    EXPECT_TRUE(mClient.readSensorPositions(positions));
    EXPECT_EQ(positions[0].x, 0x0100);
    EXPECT_EQ(positions[1].x, 0x0D0C);
    EXPECT_EQ(static_cast<std::uint16_t>(positions[11].y), 0x8786);
    EXPECT_EQ(positions[11].roll, 0x8F8E);
    EXPECT_EQ(mSocket.requests(), (std::vector<Bytes>{{0x04, 0x01, 0xF0}}));
}

TEST_F(CtrlClient, writesTheSensorPositions)
{
    mSocket.queueReply(4, {});
    SensorMountPositions positions;
    positions[11] = {.x = -2, .y = 3, .height = 4, .yaw = 5, .pitch = 6, .roll = 7};
    EXPECT_TRUE(mClient.writeSensorPositions(positions));
    ASSERT_EQ(mSocket.requests().size(), 1U);
    const Bytes request = mSocket.requests().front();
    ASSERT_EQ(request.size(), 1U + 1U + 144U + 1U);
    EXPECT_EQ(Bytes(request.begin(), request.begin() + 2), (Bytes{0x04, 0x00}));
    EXPECT_EQ(Bytes(request.end() - 13, request.end() - 1),
              (Bytes{0xFE, 0xFF, 3, 0, 4, 0, 5, 0, 6, 0, 7, 0}));
}

TEST_F(CtrlClient, startsTheCalibrationOfOneSensorOrOfNone)
{
    mSocket.queueReply(5, {});
    mSocket.queueReply(5, {});
    EXPECT_TRUE(mClient.startAutoCalibration(3));
    EXPECT_TRUE(mClient.startAutoCalibration(orv::kNoSensor));
    EXPECT_EQ(mSocket.requests(),
              (std::vector<Bytes>{{0x05, 0x00, 0x03, 0xF9}, {0x05, 0x00, 0xFF, 0xF0}}));
}

struct CalibrationRow
{
    const char* name;
    std::uint8_t byte;
    std::int8_t state;
};

class CalibrationState : public testing::TestWithParam<CalibrationRow>
{};

TEST_P(CalibrationState, isTheByteAsASignedNumber)
{
    ScriptedControlSocket socket;
    OrvCtrlClient client(&socket);
    socket.queueReply(5, {GetParam().byte});
    EXPECT_EQ(client.readAutoCalibrationState(), GetParam().state);
    EXPECT_EQ(client.lastError(), "");
    EXPECT_EQ(socket.requests(), (std::vector<Bytes>{{0x05, 0x01, 0xD6}}));
}

INSTANTIATE_TEST_SUITE_P(
    Byte, CalibrationState,
    testing::Values(CalibrationRow{"finished", 0x00, 0}, CalibrationRow{"running", 0x01, 1},
                    CalibrationRow{"endOfPolling", 0x02, 2}, CalibrationRow{"aborted", 0xFF, -1},
                    CalibrationRow{"largest", 0x7F, 127}, CalibrationRow{"smallest", 0x80, -128}),
    [](const auto& row) { return row.param.name; });

TEST_F(CtrlClient, failedPollOfTheCalibrationIsTwo)
{
    EXPECT_EQ(mClient.readAutoCalibrationState(), 2);
    EXPECT_EQ(mClient.lastError(), "socket: receive timeout");
}

// Every operation by its name, for what holds of all of them.
struct Operation
{
    const char* name;
    std::uint8_t code;
    std::function<bool(OrvCtrlClient&)> run;
};

const std::vector<Operation> kOperations = {
    {"readSequence", 0,
     [](OrvCtrlClient& client) {
         std::vector<MseqStep> steps;
         return client.readMeasurementSequence(steps);
     }},
    {"writeSequence", 0,
     [](OrvCtrlClient& client) {
         return client.writeMeasurementSequence(std::vector<MseqStep>(1));
     }},
    {"readThresholds", 1,
     [](OrvCtrlClient& client) {
         SensorThreshold threshold;
         const bool done = client.readThresholds(2, threshold);
         EXPECT_EQ(bool{threshold.valid}, done);
         return done;
     }},
    {"writeThresholds", 1,
     [](OrvCtrlClient& client) { return client.writeThresholds(kThreshold, true); }},
    {"readFirmwareVersion", 2,
     [](OrvCtrlClient& client) {
         FirmwareVersion version;
         return client.readFirmwareVersion(version);
     }},
    {"readNetworkSettings", 3,
     [](OrvCtrlClient& client) {
         EcuNetworkSettings settings;
         return client.readNetworkSettings(settings);
     }},
    {"writeNetworkSettings", 3,
     [](OrvCtrlClient& client) { return client.writeNetworkSettings(kNetwork); }},
    {"readSensorPositions", 4,
     [](OrvCtrlClient& client) {
         SensorMountPositions positions;
         return client.readSensorPositions(positions);
     }},
    {"writeSensorPositions", 4,
     [](OrvCtrlClient& client) { return client.writeSensorPositions({}); }},
    {"startCalibration", 5, [](OrvCtrlClient& client) { return client.startAutoCalibration(3); }},
    {"readCalibrationState", 5,
     [](OrvCtrlClient& client) {
         return client.readAutoCalibrationState() != OrvCtrlClient::kCalibrationPollFailed;
     }},
};

class EveryOperation : public testing::TestWithParam<Operation>
{
protected:
    void expectFailure(const char* error)
    {
        EXPECT_FALSE(GetParam().run(mClient));
        EXPECT_EQ(mClient.lastError(), error);
        EXPECT_EQ(mSocket.requests().size(), 1U) << "retried";
    }

    ScriptedControlSocket mSocket;
    OrvCtrlClient mClient{&mSocket};
};

TEST_P(EveryOperation, passesTheSocketsReasonOn)
{
    expectFailure("socket: receive timeout");
}

TEST_P(EveryOperation, reportsAWrongChecksum)
{
    mSocket.queueRaw({GetParam().code, 0x00, 0x00});
    expectFailure("checksum error");
}

TEST_P(EveryOperation, reportsTheReplyToAnotherCommand)
{
    mSocket.queueReply(static_cast<std::uint8_t>(GetParam().code + 1), {});
    expectFailure("wrong reply type");
}

TEST_P(EveryOperation, reportsTheStatusOfTheEcu)
{
    mSocket.queueReply(GetParam().code, {}, 3);
    expectFailure("ECU error (3)");
}

TEST_P(EveryOperation, reportsAReplyOfOneByteWhoseChecksumFits)
{
    mSocket.queueRaw({0x00});
    expectFailure("wrong reply type");
}

TEST_P(EveryOperation, reportsAReplyWithoutAStatus)
{
    mSocket.queueRaw(orv::encodeRequest(static_cast<orv::ControlCommand>(GetParam().code), {}));
    expectFailure("wrong data size");
}

INSTANTIATE_TEST_SUITE_P(All, EveryOperation, testing::ValuesIn(kOperations),
                         [](const auto& row) { return row.param.name; });

struct WrongReply
{
    const char* name;
    std::size_t operation; // index into kOperations
    Bytes payload;
    const char* error;
};

class RefusedPayload : public testing::TestWithParam<WrongReply>
{};

TEST_P(RefusedPayload, namesItsReason)
{
    const Operation& operation = kOperations[GetParam().operation];
    ScriptedControlSocket socket;
    OrvCtrlClient client(&socket);
    socket.queueReply(operation.code, GetParam().payload);
    EXPECT_FALSE(operation.run(client));
    EXPECT_EQ(client.lastError(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    All, RefusedPayload,
    testing::Values(WrongReply{"sequenceEmpty", 0, {}, "wrong data size"},
                    WrongReply{"sequenceOfThirteen", 0, sequenceBytes(13, 13), "wrong format"},
                    WrongReply{"sequenceOf255", 0, sequenceBytes(255, 0), "wrong format"},
                    WrongReply{"sequenceWithoutItsStep", 0, sequenceBytes(1, 0), "wrong format"},
                    WrongReply{"sequenceOneStepShort", 0, sequenceBytes(12, 11), "wrong format"},
                    WrongReply{"thresholdsEmpty", 2, {}, "wrong data size"},
                    WrongReply{"thresholdsOneByteShort", 2, Bytes(13, 2), "wrong data size"},
                    WrongReply{"thresholdsOneByteLong", 2, Bytes(15, 2), "wrong data size"},
                    WrongReply{"thresholdsOfSensor3", 2, thresholdBytes(3, 2), "wrong sensor id"},
                    WrongReply{"thresholdsOfSensor3WithScale5", 2, thresholdBytes(3, 5),
                               "wrong sensor id"},
                    WrongReply{"thresholdsWithScale5", 2, thresholdBytes(2, 5),
                               "wrong scale value read from sensor"},
                    WrongReply{"thresholdsWithScale255", 2, thresholdBytes(2, 255),
                               "wrong scale value read from sensor"},
                    WrongReply{"versionEmpty", 4, {}, "wrong data size"},
                    WrongReply{"versionOneByteShort", 4, Bytes(2, 1), "wrong data size"},
                    WrongReply{"versionOneByteLong", 4, Bytes(4, 1), "wrong data size"},
                    WrongReply{"networkEmpty", 5, {}, "wrong data format"},
                    WrongReply{"networkOneByteShort", 5, Bytes(21, 1), "wrong data format"},
                    WrongReply{"networkOneByteLong", 5, Bytes(23, 1), "wrong data format"},
                    WrongReply{"positionsEmpty", 7, {}, "wrong data size"},
                    WrongReply{"positionsOneByteShort", 7, Bytes(143, 1), "wrong data size"},
                    WrongReply{"positionsOneByteLong", 7, Bytes(145, 1), "wrong data size"},
                    WrongReply{"calibrationEmpty", 10, {}, "wrong data size"},
                    WrongReply{"calibrationOneByteLong", 10, Bytes(2, 0), "wrong data size"}),
    [](const auto& row) { return row.param.name; });

TEST_P(EveryOperation, passesOverTheRepliesOfOtherCommands)
{
    const auto other = static_cast<std::uint8_t>((GetParam().code + 1) % 6);
    mSocket.queueReply(other, {1});
    mSocket.alsoReply(other, {}, 3);
    mSocket.alsoReply(GetParam().code, {}, 9);
    expectFailure("ECU error (9)");
}

TEST_F(CtrlClient, passesOverAnEmptyDatagram)
{
    mSocket.queueRaw({});
    mSocket.alsoReply(2, {2, 14, 0});
    FirmwareVersion version;
    EXPECT_TRUE(mClient.readFirmwareVersion(version)) << mClient.lastError();
    EXPECT_EQ(version.text(), "2.14.0");

    mSocket.queueRaw({});
    EXPECT_FALSE(mClient.readFirmwareVersion(version));
    EXPECT_EQ(mClient.lastError(), "checksum error");
}

TEST_F(CtrlClient, passesOverTheThresholdsOfOtherSensors)
{
    mSocket.queueReply(1, thresholdBytes(1, 2));
    mSocket.alsoReply(1, thresholdBytes(3, 2));
    mSocket.alsoReply(1, thresholdBytes(2, 1));
    SensorThreshold threshold;
    EXPECT_TRUE(mClient.readThresholds(2, threshold)) << mClient.lastError();
    EXPECT_EQ(threshold.sensorId, 2);
    EXPECT_EQ(threshold.scale, 1);
}

// It may be the answer, damaged on its way: waiting longer would only hide that.
TEST_F(CtrlClient, damagedReplyEndsTheWait)
{
    mSocket.queueRaw({2, 2, 14, 0, 0, 0});
    mSocket.alsoReply(2, {2, 14, 0});
    FirmwareVersion version;
    EXPECT_FALSE(mClient.readFirmwareVersion(version));
    EXPECT_EQ(mClient.lastError(), "checksum error");
}

TEST_F(CtrlClient, failedReadLeavesTheRecordAlone)
{
    SensorThreshold threshold = kThreshold;
    mSocket.queueReply(1, thresholdBytes(2, 5));
    EXPECT_FALSE(mClient.readThresholds(2, threshold));
    EXPECT_EQ(threshold, kThreshold);

    EcuNetworkSettings settings = kNetwork;
    mSocket.queueReply(3, Bytes(21));
    EXPECT_FALSE(mClient.readNetworkSettings(settings));
    EXPECT_EQ(settings, kNetwork);
}

} // namespace
