#include "tests/app/faults/EcuOperation.h"

namespace {

bool namesSensor(const orv::ControlRequest& request)
{
    const auto command = static_cast<orv::ControlCommand>(request.code);
    return request.payload.size() > 1 && (command == orv::ControlCommand::Thresholds ||
                                          command == orv::ControlCommand::AutoCalibration);
}

} // namespace

orv::ControlRequest Exchange::request() const
{
    orv::ControlRequest request{.code = static_cast<std::uint8_t>(command), .payload = {}};
    if (!isProbe())
        request.payload.push_back(static_cast<std::uint8_t>(access));
    if (sensor != orv::kNoSensor)
        request.payload.push_back(sensor);
    return request;
}

Exchange exchangeOf(const orv::ControlRequest& request)
{
    Exchange exchange{.command = static_cast<orv::ControlCommand>(request.code)};
    if (!request.payload.empty())
        exchange.access = static_cast<orv::ControlAccess>(request.payload.front());
    if (namesSensor(request))
        exchange.sensor = request.payload[1];
    return exchange;
}

std::vector<Exchange> ofEachSensor(orv::ControlAccess access)
{
    std::vector<Exchange> exchanges;
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
        exchanges.push_back({orv::ControlCommand::Thresholds, access, sensor});
    return exchanges;
}
