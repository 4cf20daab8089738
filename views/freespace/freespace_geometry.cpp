#include "views/freespace/freespace_geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>

namespace freespace {

namespace {

constexpr double kFullTurnDegrees = 360.0;
constexpr std::uint16_t kFullTurn = 65535;
constexpr double kLabelDistanceMm = 100.0;
constexpr int kWheelUnitsPerDegree = 60;
constexpr int kWheelUnitsPerZoomStep = 64;
constexpr double kZoomedOutScale = 0.01;
constexpr double kZoomedInScale = 2.0;
constexpr double kSmallestScale = 0.001;
constexpr double kLargestScale = 20.0;
constexpr int kMaxPendingSteps = 100;

struct PointPair
{
    orv::OrvPoint first;
    orv::OrvPoint second;
};

// Where a wedge without an obstacle of its own ends: on the arc of the field of view.
PointPair arcSection(const orv::OrvFreespaceEntry& entry, std::size_t distanceIndex)
{
    switch (distanceIndex) {
    case 2:
        return {entry.corners[2], entry.arcEnds[1]};
    case 1:
        return {entry.arcEnds[1], entry.arcEnds[0]};
    default:
        return {entry.arcEnds[0], entry.corners[1]};
    }
}

std::optional<PointPair> chainLink(const orv::OrvFreespaceEntry& entry, std::size_t distanceIndex)
{
    const orv::OrvDistanceItem& item = entry.distances[distanceIndex];
    if (!item.isPresent())
        return std::nullopt;
    const PointPair pair = item.firstPoint.x != 0 ? PointPair{item.secondPoint, item.firstPoint}
                                                  : arcSection(entry, distanceIndex);
    if (pair.first == orv::OrvPoint{})
        return std::nullopt;
    return pair;
}

// From right to left, which is the way round that continues the corners.
QPolygonF distanceChain(const orv::OrvFreespaceEntry& entry)
{
    QPolygonF chain;
    for (std::size_t i = entry.distances.size(); i-- > 0;) {
        if (const auto link = chainLink(entry, i))
            chain << toScene(link->first) << toScene(link->second);
    }
    return chain;
}

QPointF middleInScene(orv::OrvPoint a, orv::OrvPoint b)
{
    const int x = (a.x + b.x) / 2;
    const int y = (a.y + b.y) / 2;
    return {static_cast<double>(x), -static_cast<double>(y)};
}

} // namespace

Shape shapeOf(const orv::OrvFreespaceEntry& entry)
{
    const auto& corners = entry.corners;
    const QPolygonF chain = distanceChain(entry);
    Shape shape;
    for (orv::OrvPoint corner : corners)
        shape.outline << toScene(corner);
    shape.outline << chain << toScene(corners[0]);
    shape.wedge << toScene(corners[3]) << chain << toScene(corners[0]) << toScene(corners[3]);
    shape.distanceGradient = {toScene(corners[1]), toScene(corners[2])};
    shape.areaGradient = {middleInScene(corners[0], corners[1]),
                          middleInScene(corners[2], corners[3])};
    return shape;
}

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
