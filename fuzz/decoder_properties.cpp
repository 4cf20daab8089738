#include "fuzz/decoder_properties.h"

#include "orv_decoder/ControlFrame.h"
#include "orv_decoder/Crc8.h"
#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocketBase.h"
#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "orv_decoder/constants.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::ControlCommand;

// Answers every request with the same bytes.
class OneReplySocket : public orv::OrvCtrlSocketBase
{
public:
    explicit OneReplySocket(Bytes reply) : mReply(std::move(reply)) {}

    bool sendReceive(Bytes& buffer) override
    {
        buffer = mReply;
        return true;
    }

    bool setReceiveTimeout(std::uint32_t) override { return true; }

private:
    Bytes mReply;
};

bool isWithinItsLimits(const orv::OrvMeasurementResult& result)
{
    const auto hasEchoes = [](const auto& block) {
        return !block.second.empty() && block.second.size() <= 255;
    };
    return result.hasMasks && result.echoes.size() <= orv::kSensorCount &&
           std::ranges::all_of(result.echoes, hasEchoes);
}

// Of an operation that may succeed or fail, but says why in the latter case.
bool saysWhy(bool done, const orv::OrvCtrlClient& client)
{
    return done || !client.lastError().empty();
}

bool sequenceHolds(orv::OrvCtrlClient& client)
{
    std::vector<orv::MseqStep> steps;
    const bool done = client.readMeasurementSequence(steps);
    return saysWhy(done, client) && steps.size() <= orv::kMaxStepCount &&
           std::ranges::all_of(steps, &orv::MseqStep::valid);
}

bool thresholdsHold(orv::OrvCtrlClient& client)
{
    orv::SensorThreshold threshold;
    const bool done = client.readThresholds(2, threshold);
    return saysWhy(done, client) && bool{threshold.valid} == done &&
           threshold.scale < orv::kThresholdScaleLimit;
}

bool otherRecordsHold(orv::OrvCtrlClient& client)
{
    orv::FirmwareVersion version;
    orv::EcuNetworkSettings settings;
    orv::SensorMountPositions positions;
    return saysWhy(client.readFirmwareVersion(version), client) &&
           saysWhy(client.readNetworkSettings(settings), client) &&
           saysWhy(client.readSensorPositions(positions), client) &&
           saysWhy(client.readAutoCalibrationState() != 2, client);
}

// Without this every input of a fuzzer would end at the checksum.
Bytes withRightChecksum(std::span<const std::uint8_t> bytes)
{
    Bytes frame(bytes.begin(), bytes.end());
    if (frame.empty())
        return frame;
    frame.back() = orv::crc8(std::span(frame).first(frame.size() - 1));
    return frame;
}

// What was in the record before must not show.
template<orv::LiveRecord T>
bool decodesTheSameIntoAUsedRecord(std::span<const std::uint8_t> bytes, T used)
{
    T fresh;
    const bool decoded = orv::decodeInto(bytes, fresh);
    return orv::decodeInto(bytes, used) == decoded && used == fresh &&
           bool{fresh.valid} == decoded && bool{used.valid} == decoded;
}

orv::OrvMeasurementResult usedResult()
{
    orv::OrvMeasurementResult result;
    for (const std::uint8_t sensor : Bytes{0, 3, 11, 200})
        result.echoes[sensor].resize(sensor + 1U);
    return result;
}

bool replyHolds(const Bytes& frame)
{
    OneReplySocket socket(frame);
    orv::OrvCtrlClient client(&socket);
    return sequenceHolds(client) && thresholdsHold(client) && otherRecordsHold(client);
}

} // namespace

bool measurementDecoderHolds(std::span<const std::uint8_t> bytes)
{
    if (!decodesTheSameIntoAUsedRecord(bytes, usedResult()))
        return false;
    const auto result = orv::decodeDatagram<orv::OrvMeasurementResult>(bytes);
    if (!result)
        return true;
    const Bytes encoded = orv::encodeMeasurementResult(*result);
    return isWithinItsLimits(*result) &&
           orv::decodeDatagram<orv::OrvMeasurementResult>(encoded) == result;
}

bool freespaceDecoderHolds(std::span<const std::uint8_t> bytes)
{
    orv::OrvFreespacePackage package{.valid = true,
                                     .entries = std::vector<orv::OrvFreespaceEntry>(3)};
    if (!decodesTheSameIntoAUsedRecord(bytes, package))
        return false;
    const bool decoded = orv::decodeInto(bytes, package);
    if (!std::ranges::all_of(package.entries, &orv::OrvFreespaceEntry::valid))
        return false;
    if (!decoded)
        return true;
    const Bytes encoded = orv::encodeFreespacePackage(package);
    return package.entries.size() == bytes[0] &&
           orv::decodeDatagram<orv::OrvFreespacePackage>(encoded) == package;
}

bool controlReplyDecoderHolds(std::span<const std::uint8_t> bytes)
{
    return replyHolds({bytes.begin(), bytes.end()}) && replyHolds(withRightChecksum(bytes));
}

bool controlRequestDecoderHolds(std::span<const std::uint8_t> bytes)
{
    orv::decodeRequest(bytes);
    const Bytes frame = withRightChecksum(bytes);
    const auto request = orv::decodeRequest(frame);
    if (!request)
        return frame.size() < 2;
    return orv::encodeRequest(static_cast<ControlCommand>(request->code), request->payload) ==
           frame;
}
