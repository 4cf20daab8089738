#pragma once

#include <cstdint>
#include <limits>

/// The fields of a mount position in the order of the record: the rows of the position table.
enum MountField {
    MountX,
    MountY,
    MountHeight,
    MountYaw,
    MountPitch,
    MountRoll,
    kMountFieldCount,
};

/// The values that can be entered for a field: millimetres, or degrees for the three angles.
struct MountFieldRange
{
    double minimum;
    double maximum;
};

constexpr MountFieldRange rangeOf(int field)
{
    using Coordinate = std::numeric_limits<std::int16_t>;
    using Height = std::numeric_limits<std::uint16_t>;
    if (field == MountX || field == MountY)
        return {.minimum = Coordinate::min(), .maximum = Coordinate::max()};
    if (field == MountHeight)
        return {.minimum = Height::min(), .maximum = Height::max()};
    return {.minimum = 0, .maximum = 360};
}
