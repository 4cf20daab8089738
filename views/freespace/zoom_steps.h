#pragma once

/// The arithmetic of the animated zoom: steps that are pending make each frame of it larger.
namespace freespace {

/// Whole zoom steps of a wheel event, one for a notch of 120.
int zoomSteps(int wheelDelta);

/// False for 0 steps, for zooming out at a scale of 0.01 or less and in at 2.0 or more.
bool canZoom(double scale, int steps);

/// The pending steps after `steps` more: steps against the pending ones replace them unless the
/// sum changed sides. Never beyond 100 either way, so that the zoom factor stays positive.
int pendingStepsAfter(int pendingSteps, int steps);

/// The pending steps after the end of an animation, one nearer to zero; 0 becomes 1.
int pendingStepsAfterAnimation(int pendingSteps);

/// The factor of one animation step; 1 where the scale would leave 0.001 to 20, from where the
/// picture could not be found again.
double zoomFactor(int pendingSteps, double scale);

} // namespace freespace
