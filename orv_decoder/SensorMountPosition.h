#pragma once

#include "orv_decoder/constants.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace orv {

/// Where one sensor is mounted on the vehicle.
struct SensorMountPosition
{
    static constexpr std::size_t kWireSize = 12; ///< bytes

    std::int16_t x = 0;       ///< millimetres
    std::int16_t y = 0;       ///< millimetres
    std::uint16_t height = 0; ///< millimetres
    std::uint16_t yaw = 0;    ///< binary angle, 65536 = 360 degrees
    std::uint16_t pitch = 0;  ///< binary angle
    std::uint16_t roll = 0;   ///< binary angle

    bool operator==(const SensorMountPosition&) const = default;
};

/// The whole table, index = sensor number.
using SensorMountPositions = std::array<SensorMountPosition, kSensorCount>;

/// All twelve records in sensor order, 144 bytes.
std::vector<std::uint8_t> encodeMountPositions(const SensorMountPositions& positions);

/// Nothing unless there are exactly 144 bytes.
std::optional<SensorMountPositions> decodeMountPositions(std::span<const std::uint8_t> bytes);

} // namespace orv
