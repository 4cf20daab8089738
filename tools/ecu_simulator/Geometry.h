#pragma once

#include "orv_decoder/SensorMountPosition.h"

#include <cmath>
#include <optional>

namespace ecusim {

/// A point or a vector of the vehicle's plane in millimetres: x forward, y to the left, from below
/// the middle of the rear axle.
struct Point
{
    double x = 0;
    double y = 0;
};

constexpr Point operator+(Point a, Point b)
{
    return {a.x + b.x, a.y + b.y};
}

constexpr Point operator-(Point a, Point b)
{
    return {a.x - b.x, a.y - b.y};
}

constexpr Point operator*(Point a, double factor)
{
    return {a.x * factor, a.y * factor};
}

constexpr double dot(Point a, Point b)
{
    return a.x * b.x + a.y * b.y;
}

constexpr double cross(Point a, Point b)
{
    return a.x * b.y - a.y * b.x;
}

inline double length(Point a)
{
    return std::hypot(a.x, a.y);
}

/// The unit vector at an angle in radians, counter-clockwise from x.
inline Point unitVector(double angle)
{
    return {std::cos(angle), std::sin(angle)};
}

constexpr double radians(double degrees)
{
    return degrees * 3.14159265358979323846 / 180;
}

/// Where a sensor is and where it looks.
struct Pose
{
    Point position;
    double direction = 0; ///< radians, counter-clockwise from x

    /// The point at a distance in millimetres, `angle` radians to the left of the direction.
    Point pointAt(double distance, double angle = 0) const;

    /// How far a point lies off the direction in radians, 0..pi, left and right alike.
    double offAxisAngle(Point point) const;
};

Pose poseOf(const orv::SensorMountPosition& mount);

/// A straight wall between two points.
struct Wall
{
    Point from;
    Point to;
};

/// Something round that stands upright: a post, a leg.
struct Disc
{
    Point centre;
    double radius = 0; ///< millimetres
};

/// How sound travels from one sensor over an object to another.
struct EchoPath
{
    Point reflection;
    double lengthMm = 0;     ///< sender to reflection to listener
    bool isFromEdge = false; ///< scattered by the end of a wall, not mirrored
};

/// The path over a wall; nothing when the wall stands between the two.
std::optional<EchoPath> echoPath(const Wall& wall, Point sender, Point listener);

EchoPath echoPath(const Disc& disc, Point sender, Point listener);

/// Distance in millimetres at which a ray of this direction (a unit vector) meets the object;
/// nothing when it misses.
std::optional<double> rayDistance(const Wall& wall, Point origin, Point direction);
std::optional<double> rayDistance(const Disc& disc, Point origin, Point direction);

} // namespace ecusim
