#pragma once

#include "orv_decoder/MseqStep.h"
#include "orv_decoder/SensorMountPosition.h"
#include "orv_decoder/SensorThreshold.h"
#include "orv_decoder/constants.h"

#include <cstdint>
#include <vector>

// Records of which two seeds give different ones.

inline std::vector<orv::MseqStep> sequenceOf(std::uint8_t seed)
{
    return std::vector<orv::MseqStep>(seed % orv::kMaxStepCount + 1U,
                                      {.valid = true, .activeMask = seed});
}

inline orv::SensorThreshold thresholdOf(std::uint8_t seed, std::uint8_t sensor)
{
    orv::SensorThreshold threshold{.valid = true, .sensorId = sensor, .scale = 1};
    threshold.entries.fill(seed);
    return threshold;
}

inline orv::SensorMountPositions positionsOf(std::uint8_t seed)
{
    orv::SensorMountPositions positions;
    positions.fill({.x = seed, .y = static_cast<std::int16_t>(-seed), .height = 500});
    return positions;
}

inline std::vector<std::uint8_t> payloadOf(const std::vector<orv::MseqStep>& steps)
{
    std::vector<std::uint8_t> payload{static_cast<std::uint8_t>(steps.size())};
    for (const orv::MseqStep& step : steps) {
        const std::vector<std::uint8_t> bytes = orv::encodeStep(step);
        payload.insert(payload.end(), bytes.begin(), bytes.end());
    }
    return payload;
}
