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
constexpr std::array<Point, 8> kPedestrianWalk = {{{3950, 1900},
                                                   {4850, 1200},
                                                   {5050, -1200},
                                                   {4050, -2000},
                                                   {-1150, -1900},
                                                   {-2350, -1200},
                                                   {-2550, 1400},
                                                   {-1150, 2200}}};

Surroundings carSurroundings(double seconds)
{
    Surroundings scene;
    scene.walls = {
        {{{6450, 6000}, {6650, -4200}}, kHouseWallDb},
        {{{5350, 3400}, {-4150, 3200}}, kHouseWallDb},
        {{{-4750, 2600}, {-4550, -3500}}, kHouseWallDb},
        {{{2250, -2500}, {-1950, -2600}}, kParkedCarDb},
        {{{2650, -3300}, {6550, -3500}}, kHedgeDb},
        {{{-3050, 3000}, {-2950, -1900}}, kKerbDb},
    };
    scene.discs = {
        {{{4400, -1250}, 60}, kPostDb},
        {{{5650, 700}, 90}, kPostDb},
        {{{4250, 2700}, 90}, kPostDb},
        {{{4250, -2600}, 70}, kPostDb},
        {{{-1950, 600}, 80}, kPostDb},
        {{{-3350, -1700}, 110}, kPostDb},
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
