#include "tools/ecu_simulator/Freespace.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ecusim {

namespace {

constexpr double kNearMm = 150;
constexpr double kHalfField = radians(30);
constexpr double kThird = 2 * kHalfField / 3;
constexpr double kFarCornerMm = kFreespaceRangeMm / 0.86602540378443865; // by the cosine of 30
constexpr int kRaysPerThird = 40;                                        // half a degree apart

std::int16_t millimetres(double value)
{
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(
        std::clamp<double>(std::round(value), Limits::min(), Limits::max()));
}

orv::OrvPoint wirePoint(Point point)
{
    return {.x = millimetres(point.x), .y = millimetres(point.y)};
}

// A first point with x = 0 means "free to the end of the field", so that of an obstacle is not.
orv::OrvPoint obstaclePoint(Point point)
{
    orv::OrvPoint wire = wirePoint(point);
    if (wire.x == 0)
        wire.x = 1;
    return wire;
}

template<typename Shape>
double nearestAlong(const std::vector<Reflector<Shape>>& reflectors, Point origin, Point direction)
{
    double nearest = std::numeric_limits<double>::infinity();
    for (const auto& reflector : reflectors) {
        if (const auto distance = rayDistance(reflector.shape, origin, direction))
            nearest = std::min(nearest, *distance);
    }
    return nearest;
}

double nearestInSector(const Surroundings& surroundings, const Pose& sensor, double leftAngle)
{
    double nearest = std::numeric_limits<double>::infinity();
    for (int i = 0; i <= kRaysPerThird; ++i) {
        const double angle = leftAngle - kThird * i / kRaysPerThird;
        const Point ray = unitVector(sensor.direction + angle);
        nearest = std::min({nearest, nearestAlong(surroundings.walls, sensor.position, ray),
                            nearestAlong(surroundings.discs, sensor.position, ray)});
    }
    return nearest;
}

// Its first point stands for the end of the field; an absent item would be drawn as blocked.
constexpr orv::OrvDistanceItem kFreeThird{.mode = 1,
                                          .distanceMm =
                                              static_cast<std::uint16_t>(kFreespaceRangeMm),
                                          .firstPoint = {},
                                          .secondPoint = {}};

orv::OrvDistanceItem distanceItem(const Surroundings& surroundings, const Pose& sensor,
                                  double leftAngle)
{
    const double distance = nearestInSector(surroundings, sensor, leftAngle);
    if (distance > kFreespaceRangeMm)
        return kFreeThird;
    return {.mode = 1,
            .distanceMm = static_cast<std::uint16_t>(std::lround(distance)),
            .firstPoint = obstaclePoint(sensor.pointAt(distance, leftAngle)),
            .secondPoint = obstaclePoint(sensor.pointAt(distance, leftAngle - kThird))};
}

std::uint16_t sendersOf(const std::vector<orv::MseqStep>& sequence)
{
    std::uint16_t senders = 0;
    for (const orv::MseqStep& step : sequence)
        senders |= step.activeMask;
    return senders;
}

} // namespace

orv::OrvFreespaceEntry freespaceEntry(std::uint8_t sensorId, const orv::SensorMountPosition& mount,
                                      const Surroundings& surroundings)
{
    const Pose sensor = poseOf(mount);
    const auto at = [&](double distance, double angle) {
        return wirePoint(sensor.pointAt(distance, angle));
    };
    orv::OrvFreespaceEntry entry;
    entry.valid = true;
    entry.sensorId = sensorId;
    entry.corners = {at(kNearMm, kHalfField), at(kFarCornerMm, kHalfField),
                     at(kFarCornerMm, -kHalfField), at(kNearMm, -kHalfField)};
    entry.arcEnds = {at(kFreespaceRangeMm, kThird / 2), at(kFreespaceRangeMm, -kThird / 2)};
    entry.position = orv::planarPosition(mount);
    for (std::size_t i = 0; i < entry.distances.size(); ++i)
        entry.distances[i] =
            distanceItem(surroundings, sensor, kHalfField - kThird * static_cast<double>(i));
    return entry;
}

orv::OrvFreespacePackage freespacePackage(const EcuState& state, const Scene& scene,
                                          std::uint16_t missingMask, double seconds)
{
    const auto senders = static_cast<std::uint16_t>(sendersOf(state.sequence) & ~missingMask);
    orv::OrvFreespacePackage package;
    package.valid = true;
    for (std::uint8_t id = 0; id < orv::kSensorCount; ++id) {
        if (!((senders >> id) & 1))
            continue;
        const orv::SensorMountPosition& mount = state.positions[id];
        package.entries.push_back(
            freespaceEntry(id, mount, scene.seenFrom(poseOf(mount), seconds)));
    }
    return package;
}

} // namespace ecusim
