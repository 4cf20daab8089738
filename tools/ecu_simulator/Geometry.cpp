#include "tools/ecu_simulator/Geometry.h"

#include <algorithm>

namespace ecusim {

namespace {

constexpr double kUnitsPerTurn = 65536;

double pathLength(Point sender, Point reflection, Point listener)
{
    return length(reflection - sender) + length(reflection - listener);
}

} // namespace

Point Pose::pointAt(double distance, double angle) const
{
    return position + unitVector(direction + angle) * distance;
}

double Pose::offAxisAngle(Point point) const
{
    const Point axis = unitVector(direction);
    const Point sight = point - position;
    return std::abs(std::atan2(cross(axis, sight), dot(axis, sight)));
}

Pose poseOf(const orv::SensorMountPosition& mount)
{
    return {.position = {static_cast<double>(mount.x), static_cast<double>(mount.y)},
            .direction = radians(mount.yaw * 360 / kUnitsPerTurn)};
}

std::optional<EchoPath> echoPath(const Wall& wall, Point sender, Point listener)
{
    const Point along = wall.to - wall.from;
    const double wallLength = length(along);
    if (wallLength <= 0)
        return std::nullopt;
    const double senderSide = cross(along, sender - wall.from) / wallLength;
    const double listenerSide = cross(along, listener - wall.from) / wallLength;
    if (senderSide * listenerSide <= 0)
        return std::nullopt;

    const double senderFoot = dot(along, sender - wall.from) / wallLength;
    const double listenerFoot = dot(along, listener - wall.from) / wallLength;
    const double mirror =
        senderFoot + (listenerFoot - senderFoot) * senderSide / (senderSide + listenerSide);
    const double onWall = std::clamp(mirror, 0.0, wallLength);
    const Point reflection = wall.from + along * (onWall / wallLength);
    return EchoPath{.reflection = reflection,
                    .lengthMm = pathLength(sender, reflection, listener),
                    .isFromEdge = onWall != mirror};
}

EchoPath echoPath(const Disc& disc, Point sender, Point listener)
{
    const Point inward = disc.centre - (sender + listener) * 0.5;
    const double distance = std::max(length(inward), 1.0);
    const Point reflection = disc.centre - inward * (disc.radius / distance);
    return {.reflection = reflection, .lengthMm = pathLength(sender, reflection, listener)};
}

std::optional<double> rayDistance(const Wall& wall, Point origin, Point direction)
{
    const Point along = wall.to - wall.from;
    const double steepness = cross(direction, along);
    if (std::abs(steepness) < 1e-9)
        return std::nullopt;
    const Point toWall = wall.from - origin;
    const double distance = cross(toWall, along) / steepness;
    const double onWall = cross(toWall, direction) / steepness;
    if (distance < 0 || onWall < 0 || onWall > 1)
        return std::nullopt;
    return distance;
}

std::optional<double> rayDistance(const Disc& disc, Point origin, Point direction)
{
    const Point toCentre = disc.centre - origin;
    const double nearest = dot(toCentre, direction);
    const double squaredHalfChord =
        disc.radius * disc.radius - dot(toCentre, toCentre) + nearest * nearest;
    if (squaredHalfChord < 0)
        return std::nullopt;
    const double halfChord = std::sqrt(squaredHalfChord);
    if (nearest + halfChord < 0)
        return std::nullopt;
    return std::max(nearest - halfChord, 0.0);
}

} // namespace ecusim
