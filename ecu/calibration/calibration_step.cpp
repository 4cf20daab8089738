#include "ecu/calibration/calibration_step.h"

namespace {

constexpr std::int64_t kStartDelayMs = 500;
constexpr std::int64_t kStepsOfSweep = 100;

} // namespace

CalibrationStep calibrationStepAt(std::int64_t elapsedMs)
{
    if (elapsedMs < kStartDelayMs)
        return {};
    const std::int64_t steps = (elapsedMs - kStartDelayMs) / kCalibrationStepMs;
    const std::int64_t sweep = steps / kStepsOfSweep;
    const int step = static_cast<int>(steps % kStepsOfSweep);
    const bool inverted = sweep % 2 != 0;
    return {.sweep = sweep,
            .value = inverted ? static_cast<int>(kStepsOfSweep) - step : step,
            .inverted = inverted};
}
