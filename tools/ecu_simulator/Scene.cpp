#include "tools/ecu_simulator/Scene.h"

#include <array>
#include <cmath>

namespace ecusim {

namespace {

constexpr double kWallHalfWidthMm = 20000;
constexpr double kPedestrianRadiusMm = 200;
constexpr double kPedestrianSpeedMmPerS = 1100;

constexpr double kPedestrianDb = -4;
constexpr double kPostDb = -6;
constexpr double kParkedCarDb = -2;
constexpr double kHouseWallDb = 0;
constexpr double kHedgeDb = -5;
constexpr double kKerbDb = -9;

// Clockwise round the vehicle, closer at the front than at the back.
constexpr std::array<Point, 8> kPedestrianWalk = {{{-1900, 2600},
                                                   {-1200, 3500},
                                                   {1200, 3700},
                                                   {2000, 2700},
                                                   {1900, -2500},
                                                   {1200, -3700},
                                                   {-1400, -3900},
                                                   {-2200, -2500}}};

Surroundings carSurroundings(double seconds)
{
    Surroundings scene;
    scene.walls = {
        {{{-6000, 5100}, {4200, 5300}}, kHouseWallDb},
        {{{-3400, 4000}, {-3200, -5500}}, kHouseWallDb},
        {{{-2600, -6100}, {3500, -5900}}, kHouseWallDb},
        {{{2500, 900}, {2600, -3300}}, kParkedCarDb},
        {{{3300, 1300}, {3500, 5200}}, kHedgeDb},
        {{{-3000, -4400}, {1900, -4300}}, kKerbDb},
    };
    scene.discs = {
        {{{1250, 3050}, 60}, kPostDb},
        {{{-700, 4300}, 90}, kPostDb},
        {{{-2700, 2900}, 90}, kPostDb},
        {{{2600, 2900}, 70}, kPostDb},
        {{{-600, -3300}, 80}, kPostDb},
        {{{1700, -4700}, 110}, kPostDb},
        {{pedestrianAt(seconds), kPedestrianRadiusMm}, kPedestrianDb},
    };
    return scene;
}

Surroundings wallAcross(const Pose& sensor, double distanceMm)
{
    const Point centre = sensor.pointAt(distanceMm);
    const Point along = unitVector(sensor.direction + radians(90)) * kWallHalfWidthMm;
    return {.walls = {{{centre - along, centre + along}, kHouseWallDb}}, .discs = {}};
}

Point walkCorner(std::size_t index)
{
    return kPedestrianWalk[index % kPedestrianWalk.size()];
}

double walkLength()
{
    double sum = 0;
    for (std::size_t i = 0; i < kPedestrianWalk.size(); ++i)
        sum += length(walkCorner(i + 1) - walkCorner(i));
    return sum;
}

} // namespace

Surroundings Scene::seenFrom(const Pose& sensor, double seconds) const
{
    if (mKind == SceneKind::Wall)
        return wallAcross(sensor, mWallDistanceMm);
    return carSurroundings(seconds);
}

Point pedestrianAt(double seconds)
{
    double left = std::fmod(seconds * kPedestrianSpeedMmPerS, walkLength());
    for (std::size_t i = 0; i < kPedestrianWalk.size(); ++i) {
        const Point leg = walkCorner(i + 1) - walkCorner(i);
        const double legLength = length(leg);
        if (left <= legLength)
            return walkCorner(i) + leg * (left / legLength);
        left -= legLength;
    }
    return walkCorner(0);
}

} // namespace ecusim
