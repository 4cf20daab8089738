#pragma once

#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "orv_decoder/constants.h"

#include <cstdint>
#include <vector>

/// What all twelve sensors report with five echoes each: the fullest measurement of a busy scene.
inline orv::OrvMeasurementResult fullMeasurement()
{
    constexpr unsigned kEchoesOfSensor = 5;
    orv::OrvMeasurementResult result;
    result.valid = result.hasMasks = true;
    result.sendMask = 0x0001;
    result.receiveMask = 0x0fff;
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
        for (unsigned echo = 0; echo < kEchoesOfSensor; ++echo)
            result.echoes[sensor].push_back(
                {.magnitude = static_cast<std::uint8_t>(1 + (3 * echo + sensor) % 15),
                 .timeOfFlight = static_cast<std::uint16_t>(3072 + 5120 * echo + 512 * sensor)});
    return result;
}

inline std::vector<std::uint8_t> fullMeasurementDatagram()
{
    return orv::encodeMeasurementResult(fullMeasurement());
}

/// A package of twelve entries with all three distances each.
inline std::vector<std::uint8_t> fullFreespaceDatagram()
{
    orv::OrvFreespacePackage package{.valid = true, .entries = {}};
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
        orv::OrvFreespaceEntry entry;
        entry.valid = true;
        entry.sensorId = sensor;
        for (orv::OrvDistanceItem& item : entry.distances)
            item = {.mode = 1, .distanceMm = 870, .firstPoint = {600, 200}, .secondPoint = {}};
        package.entries.push_back(entry);
    }
    return orv::encodeFreespacePackage(package);
}
