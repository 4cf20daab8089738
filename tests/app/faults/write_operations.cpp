#include "tests/app/faults/EcuOperation.h"
#include "tests/app/faults/WindowUnderFault.h"
#include "tests/app/faults/told_texts.h"

namespace {

using orv::ControlAccess;
using orv::ControlCommand;

EcuOperation writeSequence()
{
    return {.name = "write sequence",
            .groups = {{{{ControlCommand::MeasurementSequence, ControlAccess::Write}}}},
            .run = [](auto& window) { window.click("writeMseqTb"); },
            .tell = told::failures};
}

EcuOperation writeThresholds(std::uint8_t sensor)
{
    return {.name = "write thresholds",
            .groups = {{{{ControlCommand::Thresholds, ControlAccess::Write, sensor}}}},
            .run =
                [sensor](auto& window) {
                    window.selectSensor(sensor);
                    window.click("mWriteTb");
                },
            .tell = told::failures};
}

EcuOperation writeAllThresholds()
{
    return {.name = "write all thresholds",
            .groups = {{ofEachSensor(ControlAccess::Write), true}},
            .run = [](auto& window) { window.click("mWriteAllTb"); },
            .tell = told::failures,
            .hits = {.count = orv::kSensorCount}};
}

EcuOperation writePositions()
{
    return {.name = "write positions",
            .groups = {{{{ControlCommand::SensorPositions, ControlAccess::Write}}}},
            .run = [](auto& window) { window.click("writeSensorPositionTb"); },
            .tell = told::failures};
}

EcuOperation programFreespace()
{
    return {.name = "freespace Program",
            .groups = {{{{ControlCommand::SensorPositions, ControlAccess::Write}}}},
            .run =
                [](auto& window) {
                    window.click("mModeButton");
                    window.click("mProgramButton");
                    window.click("mModeButton");
                },
            .tell = told::failures};
}

EcuOperation transmitConnection()
{
    return {.name = "connection dialog's Transmit",
            .groups = {{{{ControlCommand::NetworkSettings, ControlAccess::Write}}}},
            .run = [](auto& window) { window.inConnectionDialog("transmitButton"); },
            .tell = told::transmittedConnection};
}

} // namespace

std::vector<EcuOperation> writeOperations(std::uint8_t sensor)
{
    return {writeSequence(),  writeThresholds(sensor), writeAllThresholds(),
            writePositions(), programFreespace(),      transmitConnection()};
}
