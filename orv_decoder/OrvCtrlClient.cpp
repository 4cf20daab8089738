#include "orv_decoder/OrvCtrlClient.h"

#include "orv_decoder/ByteWriter.h"
#include "orv_decoder/OrvCtrlSocketBase.h"
#include "orv_decoder/constants.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace orv {

namespace {

constexpr std::uint8_t byteOf(ControlAccess access)
{
    return static_cast<std::uint8_t>(access);
}

// A reply with another sensor's thresholds belongs to an earlier request.
ControlReply checkedForSensor(std::uint8_t sensorId, ControlReply reply)
{
    const bool isRecord = reply.payload && reply.payload->size() == SensorThreshold::kWireSize;
    if (!isRecord || reply.payload->front() == sensorId)
        return reply;
    return {.error = "wrong sensor id", .isStray = true};
}

bool decodeSteps(std::span<const std::uint8_t> bytes, std::size_t count,
                 std::vector<MseqStep>& steps)
{
    for (std::size_t i = 0; i < count; ++i) {
        const auto rest = bytes.subspan(std::min(bytes.size(), i * MseqStep::kWireSize));
        const auto step = decodeStep(rest);
        if (!step)
            return false;
        steps.push_back(*step);
    }
    return true;
}

} // namespace

OrvCtrlClient::OrvCtrlClient(OrvCtrlSocketBase* socket)
{
    setSocket(socket);
}

void OrvCtrlClient::setSocket(OrvCtrlSocketBase* socket)
{
    if (!socket)
        throw std::runtime_error("Invalid socket pointer");
    mSocket = socket;
}

bool OrvCtrlClient::readMeasurementSequence(std::vector<MseqStep>& steps)
{
    steps.clear();
    const auto reply = read(ControlCommand::MeasurementSequence);
    if (!reply)
        return false;
    if (reply->empty())
        return fail("wrong data size");
    const std::size_t count = reply->front();
    if (count > kMaxStepCount)
        return fail("wrong format");
    // What stands behind the last step is not looked at.
    if (!decodeSteps(reply->subspan(1), count, steps))
        return fail("wrong format");
    return true;
}

bool OrvCtrlClient::writeMeasurementSequence(std::span<const MseqStep> steps)
{
    if (steps.empty() || steps.size() > kMaxStepCount)
        return fail("Only 1...12 steps can be set.");
    ByteWriter writer;
    writer.u8(static_cast<std::uint8_t>(steps.size()));
    for (const MseqStep& step : steps)
        writer.bytes(encodeStep(step));
    return write(ControlCommand::MeasurementSequence, ControlAccess::Write, writer.take());
}

bool OrvCtrlClient::readThresholds(std::uint8_t sensorId, SensorThreshold& threshold)
{
    const std::array request = {byteOf(ControlAccess::Read), sensorId};
    const auto reply = exchange(ControlCommand::Thresholds, request, sensorId);
    if (!reply)
        return false;
    const CheckedThreshold checked = checkedThreshold(*reply, sensorId);
    return handOut(checked.record, threshold, checked.error);
}

bool OrvCtrlClient::writeThresholds(const SensorThreshold& threshold, bool permanent)
{
    const auto access = permanent ? ControlAccess::Write : ControlAccess::WriteTemporarily;
    return write(ControlCommand::Thresholds, access, encodeThreshold(threshold),
                 threshold.sensorId);
}

bool OrvCtrlClient::readFirmwareVersion(FirmwareVersion& version)
{
    const auto reply = exchange(ControlCommand::FirmwareVersion, {});
    return reply && handOut(decodeFirmwareVersion(*reply), version, "wrong data size");
}

bool OrvCtrlClient::readNetworkSettings(EcuNetworkSettings& settings)
{
    const auto reply = read(ControlCommand::NetworkSettings);
    return reply && handOut(decodeNetworkSettings(*reply), settings, "wrong data format");
}

bool OrvCtrlClient::writeNetworkSettings(const EcuNetworkSettings& settings)
{
    return write(ControlCommand::NetworkSettings, ControlAccess::Write,
                 encodeNetworkSettings(settings));
}

bool OrvCtrlClient::readSensorPositions(SensorMountPositions& positions)
{
    const auto reply = read(ControlCommand::SensorPositions);
    return reply && handOut(decodeMountPositions(*reply), positions, "wrong data size");
}

bool OrvCtrlClient::writeSensorPositions(const SensorMountPositions& positions)
{
    return write(ControlCommand::SensorPositions, ControlAccess::Write,
                 encodeMountPositions(positions));
}

bool OrvCtrlClient::startAutoCalibration(std::uint8_t sensorIndex)
{
    return write(ControlCommand::AutoCalibration, ControlAccess::Write, {{sensorIndex}});
}

std::int8_t OrvCtrlClient::readAutoCalibrationState()
{
    const auto reply = read(ControlCommand::AutoCalibration);
    if (!reply)
        return kCalibrationPollFailed;
    if (reply->size() != 1) {
        fail("wrong data size");
        return kCalibrationPollFailed;
    }
    return static_cast<std::int8_t>(reply->front());
}

bool OrvCtrlClient::write(ControlCommand command, ControlAccess access,
                          std::span<const std::uint8_t> record,
                          std::optional<std::uint8_t> sensorId)
{
    ByteWriter writer;
    writer.u8(byteOf(access));
    writer.bytes(record);
    return exchange(command, writer.take(), sensorId).has_value();
}

std::optional<OrvCtrlClient::Payload> OrvCtrlClient::read(ControlCommand command)
{
    return exchange(command, std::array{byteOf(ControlAccess::Read)});
}

// The payload of the reply, until the next exchange. With a sensor, other sensors' replies are
// passed over.
std::optional<OrvCtrlClient::Payload> OrvCtrlClient::exchange(ControlCommand command,
                                                              Payload request,
                                                              std::optional<std::uint8_t> sensorId)
{
    const auto decode = [&] {
        ControlReply reply = decodeReply(command, mBuffer);
        return sensorId ? checkedForSensor(*sensorId, std::move(reply)) : reply;
    };
    mBuffer = encodeRequest(command, request);
    if (!mSocket->sendReceive(mBuffer)) {
        fail("socket: " + mSocket->lastError());
        return std::nullopt;
    }
    ControlReply reply = decode();
    while (reply.isStray && mSocket->receiveAnother(mBuffer))
        reply = decode();
    if (!reply.payload)
        fail(std::move(reply.error));
    return reply.payload;
}

template<typename Record>
bool OrvCtrlClient::handOut(const std::optional<Record>& decoded, Record& output,
                            std::string_view error)
{
    if (!decoded)
        return fail(std::string(error));
    output = *decoded;
    return true;
}

} // namespace orv
