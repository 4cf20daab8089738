#pragma once

#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvSensorPosition.h"

#include <QLineF>
#include <QPointF>
#include <QPolygonF>
#include <QSizeF>

#include <cstdint>

/// The arithmetic of the freespace picture. Scene units are millimetres; the scene's y axis is the
/// vehicle's, negated.
namespace freespace {

/// What one entry of a package looks like, in scene coordinates.
struct Shape
{
    QPolygonF outline; ///< the field of view, closed along the distances
    QPolygonF wedge;   ///< the near side, from the last corner along the distances to the first
    QLineF distanceGradient;
    QLineF areaGradient;
};

Shape shapeOf(const orv::OrvFreespaceEntry& entry);

QPointF toScene(orv::OrvPoint point);
QPointF toScene(const orv::OrvSensorPosition& position);

/// The nearest scene point that a sensor position can hold.
QPointF boundedToVehicle(QPointF scenePoint);

/// `position` moved to a scene point, rounded to millimetres; the other values are kept.
orv::OrvSensorPosition movedToScene(orv::OrvSensorPosition position, QPointF scenePoint);

/// A direction of 65535 is 360 degrees.
double directionInDegrees(std::uint16_t direction);

/// The direction of an angle, truncated; above 360 degrees it is 0, below 0 it is that of 360.
std::uint16_t directionOf(double degrees);

/// The direction after a wheel step: 2 degrees for each notch of 120, wrapping as directionOf().
std::uint16_t turnedDirection(std::uint16_t direction, int wheelDelta);

/// Angles of a pie that opens symmetrically around a direction, in sixteenths of a degree.
struct PieAngles
{
    int start = 0;
    int span = 0;
};

PieAngles pieAngles(std::uint16_t direction, std::uint16_t beamAngleDegrees);

/// The top left corner of a sensor's label, whose middle lies 100 mm out along the direction.
QPointF labelPosition(std::uint16_t direction, QSizeF labelSize);

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
