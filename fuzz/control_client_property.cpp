#include "fuzz/InputScript.h"
#include "fuzz/ecu_properties.h"
#include "fuzz/seeded_records.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/constants.h"
#include "tests/support/ScriptedControlSocket.h"

#include <array>
#include <optional>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::ControlCommand;

constexpr int kMaxOperations = 40;
constexpr unsigned kMaxDatagrams = 4;

/// What has to become of an operation.
enum class Fate {
    Succeeds,
    Fails,
    Open, ///< what came back may be anything
};

/// What comes back in one exchange, by the numbers in the input.
enum class Arrival : std::uint8_t {
    Answer,
    OtherCommand,
    OtherSensor,
    NoBytes,
    FlippedChecksum,
    Refusal,
    CutAnswer,
    AnyBytes,
    kCount,
};

/// A request whose right answer is known.
struct Question
{
    ControlCommand command;
    Bytes answer = {};
    std::optional<std::uint8_t> sensor = {};
};

/// A client on a channel that an input tells the replies of.
class Session
{
public:
    explicit Session(std::span<const std::uint8_t> bytes) : mScript(bytes) {}

    bool holds()
    {
        for (int i = 0; i < kMaxOperations && !mScript.isAtEnd(); ++i) {
            if (!operationHolds(mScript.byte()))
                return false;
        }
        mIsClean = true;
        for (unsigned operation = 0; operation < 11; ++operation) {
            if (!operationHolds(operation))
                return false;
        }
        return true;
    }

private:
    bool operationHolds(unsigned operation);
    bool writeHolds(unsigned operation, std::uint8_t seed);

    Bytes datagram(Arrival arrival, const Question& question);
    static Fate fateOf(Arrival arrival);
    Fate queueReplies(const Question& question);

    template<typename Record, typename Read>
    bool readHolds(const Question& question, const Record& answer, const Record& before, Read read)
    {
        const Fate fate = queueReplies(question);
        Record record = before;
        const bool done = (mClient.*read)(record);
        return outcomeHolds(fate, done) && (done || record == before) &&
               (fate != Fate::Succeeds || record == answer);
    }

    template<typename Write>
    bool isAcknowledged(const Question& question, Write write)
    {
        const Fate fate = queueReplies(question);
        return outcomeHolds(fate, write(mClient));
    }

    bool thresholdsHold(std::uint8_t seed);
    bool sequenceHolds(std::uint8_t seed);
    bool calibrationStateHolds(std::uint8_t seed);

    bool outcomeHolds(Fate fate, bool done)
    {
        const bool isAsked = mSocket.requests().size() == ++mExchanges;
        const bool isRight = fate == Fate::Open || done == (fate == Fate::Succeeds);
        return isAsked && isRight && (done || fate != Fate::Fails || !mClient.lastError().empty());
    }

    InputScript mScript;
    ScriptedControlSocket mSocket;
    orv::OrvCtrlClient mClient{&mSocket};
    std::size_t mExchanges = 0;
    bool mIsClean = false; // from now on the right answers come alone
};

Bytes Session::datagram(Arrival arrival, const Question& question)
{
    const auto code = static_cast<std::uint8_t>(question.command);
    const auto otherCode = static_cast<std::uint8_t>(code + 1);
    Bytes answer = orv::encodeReply(code, question.answer, 0);
    switch (arrival) {
    case Arrival::OtherCommand:
        return orv::encodeReply(otherCode, question.answer, 0);
    case Arrival::OtherSensor: {
        const auto other =
            thresholdOf(7, static_cast<std::uint8_t>(question.sensor.value_or(0) + 1));
        return orv::encodeReply(question.sensor ? code : otherCode, orv::encodeThreshold(other), 0);
    }
    case Arrival::NoBytes:
        return {};
    case Arrival::FlippedChecksum:
        answer.back() ^= static_cast<std::uint8_t>(mScript.below(255) + 1);
        return answer;
    case Arrival::Refusal:
        return orv::encodeReply(code, {}, static_cast<std::uint8_t>(mScript.below(255) + 1));
    case Arrival::CutAnswer:
        answer.resize(mScript.byte() % answer.size());
        return answer;
    case Arrival::AnyBytes:
        return mScript.block();
    default:
        return answer;
    }
}

Fate Session::fateOf(Arrival arrival)
{
    switch (arrival) {
    case Arrival::Answer:
        return Fate::Succeeds;
    case Arrival::FlippedChecksum:
    case Arrival::Refusal:
        return Fate::Fails;
    default:
        return Fate::Open;
    }
}

Fate Session::queueReplies(const Question& question)
{
    const auto isPassedOver = [](Arrival arrival) {
        return arrival == Arrival::OtherCommand || arrival == Arrival::OtherSensor ||
               arrival == Arrival::NoBytes;
    };
    std::optional<Fate> fate;
    mSocket.queueTimeout();
    const unsigned count = mIsClean ? 1 : mScript.below(kMaxDatagrams);
    for (unsigned i = 0; i < count; ++i) {
        const auto kinds = static_cast<unsigned>(Arrival::kCount);
        const auto arrival =
            mIsClean ? Arrival::Answer : Arrival{static_cast<std::uint8_t>(mScript.below(kinds))};
        mSocket.alsoRaw(datagram(arrival, question));
        if (!fate && !isPassedOver(arrival))
            fate = fateOf(arrival);
    }
    return fate.value_or(Fate::Fails);
}

bool Session::operationHolds(unsigned operation)
{
    const std::uint8_t seed = mIsClean ? 77 : mScript.byte();
    switch (operation % 11) {
    case 0:
        return sequenceHolds(seed);
    case 1:
        return thresholdsHold(seed);
    case 2: {
        const orv::FirmwareVersion version{.numbers = {seed, 14, 3}};
        return readHolds({ControlCommand::FirmwareVersion, {seed, 14, 3}}, version, {},
                         &orv::OrvCtrlClient::readFirmwareVersion);
    }
    case 3: {
        const orv::EcuNetworkSettings settings{.ecuIp = seed, .controlPort = 50002, .hostIp = 1};
        return readHolds({ControlCommand::NetworkSettings, orv::encodeNetworkSettings(settings)},
                         settings, {}, &orv::OrvCtrlClient::readNetworkSettings);
    }
    case 4:
        return readHolds(
            {ControlCommand::SensorPositions, orv::encodeMountPositions(positionsOf(seed))},
            positionsOf(seed), {}, &orv::OrvCtrlClient::readSensorPositions);
    case 5:
        return calibrationStateHolds(seed);
    default:
        return writeHolds(operation % 11, seed);
    }
}

bool Session::writeHolds(unsigned operation, std::uint8_t seed)
{
    const auto sensor = static_cast<std::uint8_t>(seed % orv::kSensorCount);
    switch (operation) {
    case 6:
        return isAcknowledged({ControlCommand::MeasurementSequence}, [=](auto& client) {
            return client.writeMeasurementSequence(sequenceOf(seed));
        });
    case 7:
        return isAcknowledged(
            {.command = ControlCommand::Thresholds, .sensor = sensor}, [=](auto& client) {
                return client.writeThresholds(thresholdOf(seed, sensor), seed % 2);
            });
    case 8:
        return isAcknowledged({ControlCommand::NetworkSettings}, [=](auto& client) {
            return client.writeNetworkSettings({.ecuIp = seed});
        });
    case 9:
        return isAcknowledged({ControlCommand::SensorPositions}, [=](auto& client) {
            return client.writeSensorPositions(positionsOf(seed));
        });
    default:
        return isAcknowledged({ControlCommand::AutoCalibration},
                              [=](auto& client) { return client.startAutoCalibration(sensor); });
    }
}

bool Session::thresholdsHold(std::uint8_t seed)
{
    const auto sensor = static_cast<std::uint8_t>(seed % orv::kSensorCount);
    const orv::SensorThreshold answer = thresholdOf(seed, sensor);
    const Fate fate =
        queueReplies({ControlCommand::Thresholds, orv::encodeThreshold(answer), sensor});
    const orv::SensorThreshold before{.sensorId = 99, .scale = 4};
    orv::SensorThreshold record = before;
    const bool done = mClient.readThresholds(sensor, record);
    return outcomeHolds(fate, done) && (done ? record.sensorId == sensor : record == before) &&
           (fate != Fate::Succeeds || record == answer);
}

// Of a sequence that is cut short the whole steps are handed out.
bool Session::sequenceHolds(std::uint8_t seed)
{
    const std::vector<orv::MseqStep> answer = sequenceOf(seed);
    const Fate fate = queueReplies({ControlCommand::MeasurementSequence, payloadOf(answer)});
    std::vector<orv::MseqStep> steps(3);
    const bool done = mClient.readMeasurementSequence(steps);
    return outcomeHolds(fate, done) && steps.size() <= orv::kMaxStepCount &&
           (fate != Fate::Succeeds || steps == answer);
}

bool Session::calibrationStateHolds(std::uint8_t seed)
{
    const std::uint8_t answer = seed % 2; // finished or running
    const Fate fate = queueReplies({ControlCommand::AutoCalibration, {answer}});
    const std::int8_t state = mClient.readAutoCalibrationState();
    return outcomeHolds(fate, state != orv::OrvCtrlClient::kCalibrationPollFailed) &&
           (fate != Fate::Succeeds || state == answer);
}

} // namespace

bool controlClientHolds(std::span<const std::uint8_t> bytes)
{
    return Session(bytes).holds();
}
