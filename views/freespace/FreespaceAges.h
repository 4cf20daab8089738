#pragma once

#include "orv_decoder/constants.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>

/// A set of sensors, bit n = sensor n.
using SensorSet = std::bitset<orv::kSensorCount>;

/// Keeps the drawing of a sensor alive for a while after the sensor stopped reporting.
class FreespaceAges
{
public:
    /// Takes note of one package: each sensor with a marker grows by 12 up to 55 or more when it
    /// reports and by -1 down to 0 when it does not. Returns the sensors whose drawing is over.
    SensorSet advance(const SensorSet& withMarker, const SensorSet& reporting);

private:
    std::array<std::optional<std::uint8_t>, orv::kSensorCount> mAges;
};
