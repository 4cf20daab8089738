#pragma once

#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvSensorPosition.h"

#include <QPointF>
#include <QSizeF>

#include <cstdint>

/// Where things of the vehicle stand in the picture, and how a marker opens. Scene units are
/// millimetres; the scene's y axis is the vehicle's, negated.
namespace freespace {

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

} // namespace freespace
