#include "tests/tools/wireshark/RandomExchange.h"

#include "orv_decoder/ControlFrame.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "tests/support/ScriptedControlSocket.h"
#include "tests/tools/wireshark/decoder_readings.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

namespace {

using orv::OrvCtrlClient;

/// An operation of the client, the same each time that it is called: what was read, nothing after
/// a write. And a right reply to it.
struct Operation
{
    std::function<QJsonObject(OrvCtrlClient&)> run;
    std::uint8_t code = 0;
    Bytes payload;
};

template<typename Record>
auto reading(bool (OrvCtrlClient::*read)(Record&))
{
    return [read](OrvCtrlClient& client) {
        Record record{};
        return (client.*read)(record) ? jsonOf(record) : QJsonObject();
    };
}

template<typename Write>
auto writing(Write write)
{
    return [write = std::move(write)](OrvCtrlClient& client) {
        write(client);
        return QJsonObject();
    };
}

Operation thresholdsRead(RandomRecords& records)
{
    orv::SensorThreshold threshold = records.threshold();
    if (records.chance(0.3))
        threshold.scale = records.around(orv::kThresholdScaleLimit);
    const std::uint8_t sensor = threshold.sensorId;
    return {[sensor](OrvCtrlClient& client) {
                orv::SensorThreshold read;
                return client.readThresholds(sensor, read) ? jsonOf(read) : QJsonObject();
            },
            1, orv::encodeThreshold(threshold)};
}

Operation thresholdsWrite(RandomRecords& records)
{
    const orv::SensorThreshold threshold = records.threshold();
    const bool isPermanent = records.chance(0.5);
    return {writing([=](auto& client) { client.writeThresholds(threshold, isPermanent); }), 1, {}};
}

Operation calibrationState(RandomRecords& records)
{
    const std::uint8_t state = records.chance(0.5) ? records.byte() : std::uint8_t{0xFF};
    return {[](OrvCtrlClient& client) {
                const std::int8_t read = client.readAutoCalibrationState();
                return client.lastError().empty() ? QJsonObject{{"state", read}} : QJsonObject();
            },
            5,
            {state}};
}

Operation sequenceRead(RandomRecords& records)
{
    Bytes payload = payloadOf(records.steps());
    if (records.chance(0.3))
        payload.front() = records.around(orv::kMaxStepCount + 1);
    return {reading(&OrvCtrlClient::readMeasurementSequence), 0, payload};
}

Operation calibrationStart(RandomRecords& records)
{
    const std::uint8_t sensor = records.chance(0.8) ? records.sensorId() : orv::kNoSensor;
    return {writing([=](auto& client) { client.startAutoCalibration(sensor); }), 5, {}};
}

Operation anyRead(RandomRecords& records)
{
    switch (records.below(6)) {
    case 0:
        return sequenceRead(records);
    case 1:
        return {reading(&OrvCtrlClient::readFirmwareVersion), 2, records.bytes(3)};
    case 2:
        return {reading(&OrvCtrlClient::readNetworkSettings), 3,
                orv::encodeNetworkSettings(records.network())};
    case 3:
        return {reading(&OrvCtrlClient::readSensorPositions), 4,
                orv::encodeMountPositions(records.positions())};
    case 4:
        return calibrationState(records);
    default:
        return thresholdsRead(records);
    }
}

Operation anyWrite(RandomRecords& records)
{
    switch (records.below(5)) {
    case 0:
        return {writing([steps = records.steps()](auto& client) {
                    client.writeMeasurementSequence(steps);
                }),
                0,
                {}};
    case 1:
        return {writing([network = records.network()](auto& client) {
                    client.writeNetworkSettings(network);
                }),
                3,
                {}};
    case 2:
        return {writing([positions = records.positions()](auto& client) {
                    client.writeSensorPositions(positions);
                }),
                4,
                {}};
    case 3:
        return calibrationStart(records);
    default:
        return thresholdsWrite(records);
    }
}

Operation anyOperation(RandomRecords& records)
{
    return records.chance(0.6) ? anyRead(records) : anyWrite(records);
}

// Right in half of the cases; may be empty.
Bytes anyReplyTo(const Operation& operation, RandomRecords& records)
{
    Bytes right = orv::encodeReply(operation.code, operation.payload, 0);
    const Bytes unchecked(right.begin(), right.end() - 1);
    switch (records.below(14)) {
    case 0: // refused
        return orv::encodeReply(operation.code, {}, records.around(1));
    case 1: // by accident
        return records.damaged(right);
    case 2: // with a checksum that fits
        return orv::encodeReply(operation.code, records.damaged(operation.payload), 0);
    case 3: { // of any shape
        const Bytes bytes = records.damaged(unchecked);
        if (bytes.empty())
            return {};
        return orv::encodeRequest(static_cast<orv::ControlCommand>(bytes.front()),
                                  std::span(bytes).subspan(1));
    }
    case 4: { // to something else
        const Operation other = anyOperation(records);
        return orv::encodeReply(other.code, other.payload, 0);
    }
    case 5: // any thresholds
        return orv::encodeReply(1, orv::encodeThreshold(records.threshold()), 0);
    case 6: // random bytes
        return records.bytes(1 + records.below(40));
    default:
        return right;
    }
}

// A datagram without bytes is none to Wireshark.
Bytes replyTo(const Operation& operation, RandomRecords& records)
{
    const Bytes reply = anyReplyTo(operation, records);
    return reply.empty() ? Bytes{0} : reply;
}

// A client that gets these replies; how many it took, and whether the wait ended with the last.
struct Wait
{
    std::size_t taken = 0;
    bool isOver = false;
    std::string error;
    QJsonObject record;
    Bytes request;
};

class CountingSocket : public ScriptedControlSocket
{
public:
    bool receiveAnother(Bytes& buffer) override
    {
        const bool hasCome = ScriptedControlSocket::receiveAnother(buffer);
        ++(hasCome ? mTaken : mMissed);
        return hasCome;
    }

    std::size_t taken() const { return mTaken; }
    bool hasMissedOne() const { return mMissed > 0; }

private:
    std::size_t mTaken = 0;
    std::size_t mMissed = 0;
};

Wait waitFor(const Operation& operation, const std::vector<Bytes>& replies)
{
    CountingSocket socket;
    socket.queueTimeout();
    for (const Bytes& reply : replies)
        socket.alsoRaw(reply);
    OrvCtrlClient client(&socket);
    Wait wait;
    wait.record = operation.run(client);
    wait.taken = socket.taken();
    wait.isOver = !socket.hasMissedOne();
    wait.error = client.lastError();
    wait.request = socket.requests().front();
    return wait;
}

} // namespace

ExchangeReading randomExchange(RandomRecords& records)
{
    const Operation operation = anyOperation(records);
    std::vector<Bytes> replies(records.chance(0.1) ? 0 : 1 + records.below(3));
    std::ranges::generate(replies, [&] { return replyTo(operation, records); });

    const Wait together = waitFor(operation, replies);
    ExchangeReading exchange{.request = together.request, .replies = {}};
    for (std::size_t i = 0; i < replies.size(); ++i) {
        const Wait alone = waitFor(operation, {replies[i]});
        exchange.replies.push_back({.datagram = replies[i],
                                    .error = alone.error,
                                    .record = alone.record,
                                    .isStray = !alone.isOver,
                                    .isUnasked = together.isOver && i >= together.taken});
    }
    return exchange;
}

Bytes randomRequest(RandomRecords& records)
{
    return waitFor(anyOperation(records), {}).request;
}
