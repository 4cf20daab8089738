#include "orv_decoder/OrvCtrlClient.h"

#include "orv_decoder/ByteWriter.h"
#include "orv_decoder/OrvCtrlSocketBase.h"
#include "orv_decoder/constants.h"

#include <algorithm>
#include <stdexcept>

namespace orv {

namespace {

constexpr std::uint8_t byteOf(ControlAccess access)
{
    return static_cast<std::uint8_t>(access);
}

std::vector<std::uint8_t> readPayload()
{
    return {byteOf(ControlAccess::Read)};
}

bool decodeSteps(std::span<const std::uint8_t> bytes, std::size_t count,
                 std::vector<MseqStep>& steps)
{
    for (std::size_t i = 0; i < count; ++i) {
        const auto rest = bytes.subspan(std::min(bytes.size(), i * MseqStep::kWireSize));
        const MseqStep step = decodeStep(rest);
        if (!step.valid)
            return false;
        steps.push_back(step);
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
    auto buffer = readPayload();
    if (!exchange(ControlCommand::MeasurementSequence, buffer))
        return false;
    if (buffer.empty())
        return fail("wrong data size");
    const std::size_t count = buffer.front();
    if (count > kMaxStepCount)
        return fail("wrong format");
    // Bytes behind the last step are the ECU's own business.
    if (!decodeSteps(std::span(buffer).subspan(1), count, steps))
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
    std::vector<std::uint8_t> buffer = {byteOf(ControlAccess::Read), sensorId};
    return exchange(ControlCommand::Thresholds, buffer) &&
           checkedThreshold(buffer, sensorId, threshold, mLastError);
}

bool OrvCtrlClient::writeThresholds(const SensorThreshold& threshold, bool permanent)
{
    const auto access = permanent ? ControlAccess::Write : ControlAccess::WriteTemporarily;
    return write(ControlCommand::Thresholds, access, encodeThreshold(threshold));
}

bool OrvCtrlClient::readFirmwareVersion(FirmwareVersion& version)
{
    std::vector<std::uint8_t> buffer;
    if (!exchange(ControlCommand::FirmwareVersion, buffer))
        return false;
    if (buffer.size() != FirmwareVersion::kWireSize)
        return fail("wrong data size");
    std::copy(buffer.begin(), buffer.end(), version.numbers.begin());
    return true;
}

bool OrvCtrlClient::readNetworkSettings(EcuNetworkSettings& settings)
{
    auto buffer = readPayload();
    if (!exchange(ControlCommand::NetworkSettings, buffer))
        return false;
    const EcuNetworkSettings decoded = decodeNetworkSettings(buffer);
    if (!decoded.valid)
        return fail("wrong data format");
    settings = decoded;
    return true;
}

bool OrvCtrlClient::writeNetworkSettings(const EcuNetworkSettings& settings)
{
    return write(ControlCommand::NetworkSettings, ControlAccess::Write,
                 encodeNetworkSettings(settings));
}

bool OrvCtrlClient::readSensorPositions(SensorMountPositions& positions)
{
    auto buffer = readPayload();
    if (!exchange(ControlCommand::SensorPositions, buffer))
        return false;
    if (!decodeMountPositions(buffer, positions))
        return fail("wrong data size");
    return true;
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
    auto buffer = readPayload();
    if (!exchange(ControlCommand::AutoCalibration, buffer))
        return kCalibrationPollFailed;
    if (buffer.size() != 1) {
        fail("wrong data size");
        return kCalibrationPollFailed;
    }
    return static_cast<std::int8_t>(buffer.front());
}

bool OrvCtrlClient::write(ControlCommand command, ControlAccess access,
                          std::span<const std::uint8_t> record)
{
    ByteWriter writer;
    writer.u8(byteOf(access));
    writer.bytes(record);
    auto buffer = writer.take();
    return exchange(command, buffer);
}

// `buffer` holds the request's payload before and the reply's payload after a success.
bool OrvCtrlClient::exchange(ControlCommand command, std::vector<std::uint8_t>& buffer)
{
    buffer = encodeRequest(command, buffer);
    if (!mSocket->sendReceive(buffer))
        return fail("socket: " + mSocket->lastError());
    return decodeReply(command, buffer, mLastError);
}

bool OrvCtrlClient::fail(std::string reason)
{
    mLastError = std::move(reason);
    return false;
}

bool checkedThreshold(std::span<const std::uint8_t> bytes, std::uint8_t sensorId,
                      SensorThreshold& threshold, std::string& error)
{
    const SensorThreshold decoded = decodeThreshold(bytes);
    const char* reason = nullptr;
    if (!decoded.valid)
        reason = "wrong data size";
    else if (decoded.sensorId != sensorId)
        reason = "wrong sensor id";
    else if (decoded.scale >= kThresholdScaleLimit)
        reason = "wrong scale value read from sensor";
    if (reason) {
        error = reason;
        return false;
    }
    threshold = decoded;
    return true;
}

} // namespace orv
