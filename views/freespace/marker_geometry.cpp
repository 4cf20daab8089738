#include "views/freespace/marker_geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace freespace {

namespace {

constexpr double kFullTurnDegrees = 360.0;
constexpr std::uint16_t kFullTurn = 65535;
constexpr double kLabelDistanceMm = 100.0;
constexpr int kWheelUnitsPerDegree = 60;

} // namespace

QPointF toScene(orv::OrvPoint point)
{
    return {static_cast<double>(point.x), -static_cast<double>(point.y)};
}

QPointF toScene(const orv::OrvSensorPosition& position)
{
    return toScene(orv::OrvPoint{position.x, position.y});
}

QPointF boundedToVehicle(QPointF scenePoint)
{
    constexpr double kMin = std::numeric_limits<std::int16_t>::min();
    constexpr double kMax = std::numeric_limits<std::int16_t>::max();
    return {std::clamp(scenePoint.x(), kMin, kMax), std::clamp(scenePoint.y(), -kMax, -kMin)};
}

orv::OrvSensorPosition movedToScene(orv::OrvSensorPosition position, QPointF scenePoint)
{
    const QPointF bounded = boundedToVehicle(scenePoint);
    position.x = static_cast<std::int16_t>(std::lround(bounded.x()));
    position.y = static_cast<std::int16_t>(-std::lround(bounded.y()));
    return position;
}

double directionInDegrees(std::uint16_t direction)
{
    return direction * kFullTurnDegrees / kFullTurn;
}

std::uint16_t directionOf(double degrees)
{
    if (degrees > kFullTurnDegrees)
        return 0;
    if (degrees < 0)
        return kFullTurn;
    return static_cast<std::uint16_t>(degrees / kFullTurnDegrees * kFullTurn);
}

std::uint16_t turnedDirection(std::uint16_t direction, int wheelDelta)
{
    // In whole numbers: a truncated fraction would turn the sensor even by a delta of 0.
    constexpr std::int64_t kUnitsPerTurn = std::int64_t{360} * kWheelUnitsPerDegree;
    const std::int64_t turned = direction * kUnitsPerTurn + std::int64_t{wheelDelta} * kFullTurn;
    if (turned > kUnitsPerTurn * kFullTurn)
        return 0;
    if (turned < 0)
        return kFullTurn;
    return static_cast<std::uint16_t>(turned / kUnitsPerTurn);
}

PieAngles pieAngles(std::uint16_t direction, std::uint16_t beamAngleDegrees)
{
    const double startDegrees = directionInDegrees(direction) - beamAngleDegrees / 2.0;
    return {.start = static_cast<int>(startDegrees * 16), .span = beamAngleDegrees * 16};
}

QPointF labelPosition(std::uint16_t direction, QSizeF labelSize)
{
    const double angle = (directionInDegrees(direction) + 90) * std::numbers::pi / 180;
    return {std::sin(angle) * kLabelDistanceMm - labelSize.width() / 2,
            std::cos(angle) * kLabelDistanceMm - labelSize.height() / 2};
}

} // namespace freespace
