#pragma once

#include "tools/ecu_simulator/Geometry.h"

#include <vector>

namespace ecusim {

/// What stands around the vehicle.
enum class SceneKind {
    Car,  ///< a parking place: walls, posts, a parked car and a pedestrian who walks round
    Wall, ///< one flat wall across the direction of each sensor, no noise
};

/// A thing that returns sound, with its strength in decibels against a flat wall.
template<typename Shape>
struct Reflector
{
    Shape shape;
    double strengthDb = 0;
};

/// Everything that one sensor can see at one moment.
struct Surroundings
{
    std::vector<Reflector<Wall>> walls;
    std::vector<Reflector<Disc>> discs;
};

/// The world around the vehicle as a function of time. It knows no noise and no sensors but those
/// it is asked about.
class Scene
{
public:
    explicit Scene(SceneKind kind, double wallDistanceMm = 2000)
        : mKind(kind), mWallDistanceMm(wallDistanceMm)
    {}

    /// What a sensor sees `seconds` after the start.
    Surroundings seenFrom(const Pose& sensor, double seconds) const;

    /// Whether ground clutter, noise and multiple echoes exist here.
    bool isNoisy() const { return mKind == SceneKind::Car; }

private:
    SceneKind mKind;
    double mWallDistanceMm;
};

/// Where the pedestrian of the car scene is: on a closed walk round the vehicle.
Point pedestrianAt(double seconds);

} // namespace ecusim
