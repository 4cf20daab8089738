#include "tests/app/faults/EcuOperation.h"
#include "tests/app/faults/WindowUnderFault.h"
#include "tests/app/faults/told_texts.h"

namespace {

using orv::ControlAccess;
using orv::ControlCommand;

constexpr int kWatchIntervalMs = 3000;

// In the order in which all parts are exchanged.
constexpr Hits kThresholds{.first = 0, .count = orv::kSensorCount};
constexpr Hits kSequence{.first = orv::kSensorCount};
constexpr Hits kPositions{.first = orv::kSensorCount + 1};
constexpr std::size_t kExchangesOfAll = orv::kSensorCount + 2;

std::vector<ExchangeGroup> allParts(ControlAccess access)
{
    return {{ofEachSensor(access), access == ControlAccess::Write},
            {{{ControlCommand::MeasurementSequence, access}}},
            {{{ControlCommand::SensorPositions, access}}}};
}

EcuOperation probe()
{
    return {.name = "probe",
            .groups = {{{{ControlCommand::FirmwareVersion}}}},
            .run = [](auto& window) { window.pass(kWatchIntervalMs); },
            .tell = told::lostConnection};
}

EcuOperation firstContact()
{
    return {.name = "automatic read at the start",
            .groups = allParts(ControlAccess::Read),
            .run = [](auto& window) { window.open(); },
            .tell = told::foundConnection,
            .hits = {.first = 1, .count = kExchangesOfAll - 1},
            .opensWindow = true};
}

EcuOperation readAll(const char* part, const Hits& hits)
{
    return {.name = QStringLiteral("read all settings, ") + part,
            .groups = allParts(ControlAccess::Read),
            .run = [](auto& window) { window.trigger("actionSyncFromECU"); },
            .tell = told::afterQuestion("Sync from ECU", told::readParts),
            .hits = hits};
}

EcuOperation transmitAll(const char* part, const Hits& hits)
{
    return {.name = QStringLiteral("transmit all settings, ") + part,
            .groups = allParts(ControlAccess::Write),
            .run = [](auto& window) { window.trigger("actionTransmitToECU"); },
            .tell = told::transmittedParts,
            .hits = hits};
}

} // namespace

std::vector<EcuOperation> wholeOperations(std::uint8_t)
{
    return {probe(),
            firstContact(),
            readAll("thresholds", kThresholds),
            readAll("sequence", kSequence),
            readAll("positions", kPositions),
            transmitAll("thresholds", kThresholds),
            transmitAll("sequence", kSequence),
            transmitAll("positions", kPositions)};
}
