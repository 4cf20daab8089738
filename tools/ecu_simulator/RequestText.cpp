#include "tools/ecu_simulator/RequestText.h"

#include "orv_decoder/constants.h"

#include <array>

namespace ecusim {

using orv::ControlAccess;
using orv::ControlCommand;

namespace {

std::string accessText(const orv::ControlRequest& request)
{
    if (request.payload.empty())
        return "use ";
    switch (static_cast<ControlAccess>(request.payload.front())) {
    case ControlAccess::Write:
        return "write ";
    case ControlAccess::Read:
        return "read ";
    case ControlAccess::WriteTemporarily:
        return "write for this run ";
    }
    return "use ";
}

std::string ofSensor(const orv::ControlRequest& request)
{
    if (request.payload.size() < 2)
        return "";
    const std::uint8_t sensorId = request.payload[1];
    if (sensorId == orv::kNoSensor)
        return " of all sensors";
    return " of sensor " + std::to_string(sensorId + 1);
}

std::string calibrationText(const orv::ControlRequest& request)
{
    if (request.payload.size() == 2 &&
        request.payload.front() == static_cast<std::uint8_t>(ControlAccess::Write))
        return "start auto calibration" + ofSensor(request);
    return accessText(request) + "auto calibration state";
}

} // namespace

std::string requestText(const orv::ControlRequest& request)
{
    switch (static_cast<ControlCommand>(request.code)) {
    case ControlCommand::MeasurementSequence:
        return accessText(request) + "measurement sequence";
    case ControlCommand::Thresholds:
        return accessText(request) + "thresholds" + ofSensor(request);
    case ControlCommand::FirmwareVersion:
        return "read firmware version";
    case ControlCommand::NetworkSettings:
        return accessText(request) + "network settings";
    case ControlCommand::SensorPositions:
        return accessText(request) + "sensor positions";
    case ControlCommand::AutoCalibration:
        return calibrationText(request);
    }
    return "command " + std::to_string(request.code);
}

std::string statusText(std::uint8_t status)
{
    static constexpr std::array<const char*, 7> kTexts = {
        "ok",           "wrong checksum", "unknown command",   "wrong length",
        "wrong access", "wrong value",    "calibration failed"};
    if (status == 0)
        return kTexts.front();
    const std::string number = "status " + std::to_string(status);
    return status < kTexts.size() ? number + " (" + kTexts[status] + ")" : number;
}

} // namespace ecusim
