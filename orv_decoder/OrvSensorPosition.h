#pragma once

#include "orv_decoder/SensorMountPosition.h"

#include <cstdint>

namespace orv {

/// The planar position of one sensor, as the freespace display passes it in its signals.
struct OrvSensorPosition
{
    std::uint16_t leadingWord = 0; ///< 0 whenever the user interface builds a position
    std::int16_t x = 0;            ///< millimetres
    std::int16_t y = 0;            ///< millimetres
    std::uint16_t direction = 0;   ///< 65535 = 360 degrees

    bool operator==(const OrvSensorPosition&) const = default;
};

/// x, y and yaw of a mount position.
OrvSensorPosition planarPosition(const SensorMountPosition& mount);

/// `mount` moved to the x, y and direction of `position`; height, pitch and roll are kept.
SensorMountPosition movedTo(SensorMountPosition mount, const OrvSensorPosition& position);

} // namespace orv
