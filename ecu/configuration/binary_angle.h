#pragma once

#include <cmath>
#include <cstdint>

/// Units of a 16-bit binary angle in one degree: 65536 units are the full turn.
inline constexpr double kBinaryUnitsPerDegree = 65536.0 / 360;

/// The degrees shown for a stored angle: 0 to 359.99 in steps of 0.01, rounded down.
///
/// A hundredth of a degree is almost two units. Rounding up on entry and down on display therefore
/// shows every typed value again and stores it again unchanged.
inline double degreesOf(std::uint16_t binaryAngle)
{
    return std::floor(binaryAngle / kBinaryUnitsPerDegree * 100) / 100;
}

/// The angle stored for entered degrees, rounded up. Whole turns wrap: 360 is 0. What is no finite
/// number is 0.
inline std::uint16_t binaryAngleOf(double degrees)
{
    if (!std::isfinite(degrees))
        return 0;
    const double units = std::fmod(std::ceil(degrees * kBinaryUnitsPerDegree), 65536);
    return static_cast<std::uint16_t>(static_cast<std::int32_t>(units));
}
