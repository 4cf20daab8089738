#include "tests/app/faults/EcuOperation.h"
#include "tests/app/faults/WindowUnderFault.h"
#include "tests/app/faults/told_texts.h"

namespace {

using orv::ControlAccess;
using orv::ControlCommand;

EcuOperation readSequence()
{
    return {.name = "read sequence",
            .groups = {{{{ControlCommand::MeasurementSequence, ControlAccess::Read}}}},
            .run = [](auto& window) { window.click("readMseqTb"); },
            .tell = told::afterQuestion("Read sequence", told::failures)};
}

EcuOperation readThresholds(std::uint8_t sensor)
{
    return {.name = "read thresholds",
            .groups = {{{{ControlCommand::Thresholds, ControlAccess::Read, sensor}}}},
            .run =
                [sensor](auto& window) {
                    window.selectSensor(sensor);
                    window.click("mReadTb");
                },
            .tell = told::afterQuestion("Read Thresholds", told::failures)};
}

EcuOperation readAllThresholds()
{
    return {.name = "read all thresholds",
            .groups = {{ofEachSensor(ControlAccess::Read)}},
            .run = [](auto& window) { window.click("mReadAllTb"); },
            .tell = told::afterQuestion("Read Thresholds", told::failuresBySensor),
            .hits = {.count = orv::kSensorCount}};
}

EcuOperation readPositions()
{
    return {.name = "read positions",
            .groups = {{{{ControlCommand::SensorPositions, ControlAccess::Read}}}},
            .run = [](auto& window) { window.click("readSensorPositionTb"); },
            .tell = told::afterQuestion("Read Positions", told::failures)};
}

EcuOperation loadFreespace()
{
    return {.name = "freespace Load",
            .groups = {{{{ControlCommand::SensorPositions, ControlAccess::Read}}}},
            .run =
                [](auto& window) {
                    window.click("mModeButton");
                    window.click("mLoadButton");
                    window.click("mModeButton");
                },
            .tell = told::afterQuestion("Read Positions", told::failures)};
}

EcuOperation readConnection()
{
    return {.name = "connection dialog's Read",
            .groups = {{{{ControlCommand::NetworkSettings, ControlAccess::Read}}}},
            .run = [](auto& window) { window.inConnectionDialog("readButton"); },
            .tell = told::failures};
}

} // namespace

std::vector<EcuOperation> readOperations(std::uint8_t sensor)
{
    return {readSequence(),  readThresholds(sensor), readAllThresholds(),
            readPositions(), loadFreespace(),        readConnection()};
}

EcuOperation followUpOf(orv::ControlCommand command, std::uint8_t sensor)
{
    switch (command) {
    case ControlCommand::MeasurementSequence:
        return readSequence();
    case ControlCommand::SensorPositions:
        return readPositions();
    case ControlCommand::NetworkSettings:
        return readConnection();
    default:
        return readThresholds(sensor);
    }
}
