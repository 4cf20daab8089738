#include "tools/ecu_simulator/Freespace.h"

#include <gtest/gtest.h>

namespace {

using namespace ecusim;

// Looks forward from the origin: along x, with y to its left.
constexpr orv::SensorMountPosition kForward{};

Surroundings wallFrom(Point from, Point to)
{
    return {.walls = {{{from, to}, 0}}, .discs = {}};
}

TEST(FreespaceEntry, cornersRunFromNearLeftRoundToNearRight)
{
    const auto entry = freespaceEntry(4, kForward, {});
    EXPECT_EQ(entry.sensorId, 4);
    EXPECT_EQ(entry.corners[0], (orv::OrvPoint{130, 75}));
    EXPECT_EQ(entry.corners[1], (orv::OrvPoint{4000, 2309}));
    EXPECT_EQ(entry.corners[2], (orv::OrvPoint{4000, -2309}));
    EXPECT_EQ(entry.corners[3], (orv::OrvPoint{130, -75}));
}

TEST(FreespaceEntry, arcEndsDivideTheArcIntoThirds)
{
    const auto entry = freespaceEntry(4, kForward, {});
    EXPECT_EQ(entry.arcEnds[0], (orv::OrvPoint{3939, 695}));
    EXPECT_EQ(entry.arcEnds[1], (orv::OrvPoint{3939, -695}));
}

TEST(FreespaceEntry, thirdsWithoutObstacleAreFreeToTheEndOfTheField)
{
    const auto entry = freespaceEntry(0, kForward, wallFrom({2000, 100}, {2000, -100}));
    const orv::OrvDistanceItem free{
        .mode = 1, .distanceMm = 4000, .firstPoint = {0, 0}, .secondPoint = {0, 0}};
    EXPECT_EQ(entry.distances[0], free);
    EXPECT_EQ(entry.distances[1].distanceMm, 2000);
    EXPECT_EQ(entry.distances[2], free);
}

TEST(FreespaceEntry, distanceIsTheNearestInEachThird)
{
    const auto entry = freespaceEntry(0, kForward, wallFrom({2000, 5000}, {2000, -5000}));
    EXPECT_EQ(entry.distances[0].distanceMm, 2031); // 2000 / cos 10
    EXPECT_EQ(entry.distances[1].distanceMm, 2000);
    EXPECT_EQ(entry.distances[2].distanceMm, 2031);
}

TEST(FreespaceEntry, pointsLieOnTheEdgesOfTheThirdFromLeftToRight)
{
    const auto entry = freespaceEntry(0, kForward, wallFrom({2000, 5000}, {2000, -5000}));
    EXPECT_EQ(entry.distances[1].firstPoint, (orv::OrvPoint{1970, 347}));
    EXPECT_EQ(entry.distances[1].secondPoint, (orv::OrvPoint{1970, -347}));
    EXPECT_EQ(entry.distances[0].firstPoint, (orv::OrvPoint{1759, 1015}));
    EXPECT_EQ(entry.distances[2].secondPoint, (orv::OrvPoint{1759, -1015}));
}

TEST(FreespaceEntry, obstacleBeyondTheRangeIsNone)
{
    const auto atTheEnd = freespaceEntry(0, kForward, wallFrom({4000, 9000}, {4000, -9000}));
    EXPECT_EQ(atTheEnd.distances[1].firstPoint, (orv::OrvPoint{3939, 695}));
    const auto beyond = freespaceEntry(0, kForward, wallFrom({4001, 9000}, {4001, -9000}));
    EXPECT_EQ(beyond.distances[1].firstPoint, (orv::OrvPoint{0, 0}));
}

TEST(FreespaceEntry, firstPointOfAnObstacleNeverHasXZero)
{
    // 10 degrees left of this direction is straight to the left of the vehicle.
    const orv::SensorMountPosition turned{.yaw = 14564};
    const auto entry = freespaceEntry(0, turned, wallFrom({-5000, 2000}, {5000, 2000}));
    EXPECT_EQ(entry.distances[1].firstPoint, (orv::OrvPoint{1, 2000}));
}

TEST(FreespaceEntry, pointsPastTheWireRangeAreClamped)
{
    const auto entry = freespaceEntry(0, {.x = 32000}, {});
    EXPECT_EQ(entry.corners[1].x, 32767);
}

TEST(FreespacePackage, holdsTheSensorsThatSend)
{
    EcuState state = defaultEcuState();
    state.sequence = {{.valid = true, .activeMask = 0x0021, .passiveMask = 0x0FDE}};
    const auto package = freespacePackage(state, Scene(SceneKind::Car), 0, 0);
    ASSERT_EQ(package.entries.size(), 2U);
    EXPECT_EQ(package.entries[0].sensorId, 0);
    EXPECT_EQ(package.entries[1].sensorId, 5);
    EXPECT_EQ(package.entries[1].position, orv::planarPosition(state.positions[5]));
}

TEST(FreespacePackage, leavesMissingSensorsOut)
{
    const auto package = freespacePackage(defaultEcuState(), Scene(SceneKind::Car), 0x0FFE, 0);
    ASSERT_EQ(package.entries.size(), 1U);
    EXPECT_EQ(package.entries[0].sensorId, 0);
}

TEST(FreespacePackage, wallSceneShowsTheWallDistanceToEverySensor)
{
    const auto package = freespacePackage(defaultEcuState(), Scene(SceneKind::Wall, 1200), 0, 0);
    ASSERT_EQ(package.entries.size(), 12U);
    for (const auto& entry : package.entries)
        EXPECT_EQ(entry.distances[1].distanceMm, 1200) << int(entry.sensorId);
}

TEST(FreespacePackage, shapesChangeWhileThePedestrianWalks)
{
    const EcuState state = defaultEcuState();
    const Scene scene(SceneKind::Car);
    const auto before = freespacePackage(state, scene, 0, 1);
    EXPECT_NE(before, freespacePackage(state, scene, 0, 3));
    EXPECT_EQ(before, freespacePackage(state, scene, 0, 1));
}

TEST(FreespacePackage, fullPackageFitsOneDatagram)
{
    const auto package = freespacePackage(defaultEcuState(), Scene(SceneKind::Wall, 1200), 0, 0);
    EXPECT_EQ(orv::encodeFreespacePackage(package).size(), 841U);
}

} // namespace
