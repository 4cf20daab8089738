#include "views/freespace/zoom_steps.h"

#include <algorithm>
#include <cstdint>

namespace freespace {

namespace {

constexpr int kWheelUnitsPerZoomStep = 64;
constexpr double kZoomedOutScale = 0.01;
constexpr double kZoomedInScale = 2.0;
constexpr double kSmallestScale = 0.001;
constexpr double kLargestScale = 20.0;
constexpr int kMaxPendingSteps = 100;

} // namespace

int zoomSteps(int wheelDelta)
{
    return wheelDelta / kWheelUnitsPerZoomStep;
}

bool canZoom(double scale, int steps)
{
    if (steps < 0)
        return scale > kZoomedOutScale;
    return steps > 0 && scale < kZoomedInScale;
}

int pendingStepsAfter(int pendingSteps, int steps)
{
    const std::int64_t sum = std::int64_t{pendingSteps} + steps;
    const bool pointsTheOtherWay = (sum < 0 && steps > 0) || (sum > 0 && steps < 0);
    return static_cast<int>(std::clamp<std::int64_t>(pointsTheOtherWay ? steps : sum,
                                                     -kMaxPendingSteps, kMaxPendingSteps));
}

int pendingStepsAfterAnimation(int pendingSteps)
{
    return pendingSteps > 0 ? pendingSteps - 1 : pendingSteps + 1;
}

double zoomFactor(int pendingSteps, double scale)
{
    const double factor = 1.0 + pendingSteps / 300.0;
    const double zoomed = scale * factor;
    return zoomed < kSmallestScale || zoomed > kLargestScale ? 1.0 : factor;
}

} // namespace freespace
