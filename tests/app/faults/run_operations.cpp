#include "tests/app/faults/EcuOperation.h"
#include "tests/app/faults/WindowUnderFault.h"
#include "tests/app/faults/told_texts.h"

namespace {

using orv::ControlAccess;
using orv::ControlCommand;

constexpr std::size_t kRecordedWindows = 5;

EcuOperation calibration(const char* step, std::uint8_t sensor, const Hits& hits)
{
    return {.name = QStringLiteral("calibration, ") + step,
            .groups = {{{{ControlCommand::AutoCalibration, ControlAccess::Write, sensor},
                         {ControlCommand::AutoCalibration, ControlAccess::Read},
                         {ControlCommand::Thresholds, ControlAccess::Read, sensor}},
                        true}},
            .run =
                [sensor](auto& window) {
                    window.selectSensor(sensor);
                    window.calibrate();
                },
            .tell = told::failures,
            .hits = hits};
}

EcuOperation recording(std::uint8_t sensor)
{
    const Exchange move{ControlCommand::Thresholds, ControlAccess::WriteTemporarily, sensor};
    return {.name = "recording",
            .groups = {{std::vector<Exchange>(kRecordedWindows, move)}},
            .run = [sensor](auto& window) { window.record(sensor, kRecordedWindows); },
            .tell = told::recorded,
            .hits = {.count = kRecordedWindows}};
}

} // namespace

std::vector<EcuOperation> runOperations(std::uint8_t sensor)
{
    return {calibration("start", sensor, {.first = 0}), calibration("state", sensor, {.first = 1}),
            calibration("thresholds", sensor, {.first = 2}), recording(sensor)};
}
