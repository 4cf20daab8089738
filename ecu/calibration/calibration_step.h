#pragma once

#include <cstdint>

/// How long one step of the busy indicator is shown.
inline constexpr int kCalibrationStepMs = 10;

/// The ECU is given this many sweeps; it is asked after each of them.
inline constexpr std::int64_t kCalibrationSweeps = 21;

/// Where the busy indicator of a calibration stands.
struct CalibrationStep
{
    std::int64_t sweep = 0; ///< as many sweeps are over
    int value = 0;          ///< 0..100
    bool inverted = false;  ///< on the way back

    bool operator==(const CalibrationStep&) const = default;
};

/// The step that is due `elapsedMs` after the start: the indicator rests at 0 for half a second,
/// then it rises from 0 to 99 and falls from 100 to 1, inverted, in sweeps of one second.
CalibrationStep calibrationStepAt(std::int64_t elapsedMs);
