#include "tools/ecu_simulator/Freespace.h"

#include <gtest/gtest.h>

namespace {

using namespace ecusim;

// Looks along y from the origin, so that left is negative x.
constexpr orv::SensorMountPosition kForward{.yaw = 16384};

Surroundings wallFrom(Point from, Point to)
{
    return {.walls = {{{from, to}, 0}}, .discs = {}};
}

TEST(FreespaceEntry, cornersRunFromNearLeftRoundToNearRight)
{
    const auto entry = freespaceEntry(4, kForward, {});
    EXPECT_EQ(entry.sensorId, 4);
    EXPECT_EQ(entry.corners[0], (orv::OrvPoint{-75, 130}));
    EXPECT_EQ(entry.corners[1], (orv::OrvPoint{-2309, 4000}));
    EXPECT_EQ(entry.corners[2], (orv::OrvPoint{2309, 4000}));
    EXPECT_EQ(entry.corners[3], (orv::OrvPoint{75, 130}));
}

TEST(FreespaceEntry, arcEndsDivideTheArcIntoThirds)
{
    const auto entry = freespaceEntry(4, kForward, {});
    EXPECT_EQ(entry.arcEnds[0], (orv::OrvPoint{-695, 3939}));
    EXPECT_EQ(entry.arcEnds[1], (orv::OrvPoint{695, 3939}));
}

TEST(FreespaceEntry, thirdsWithoutObstacleAreAbsent)
{
    const auto entry = freespaceEntry(0, kForward, wallFrom({-100, 2000}, {100, 2000}));
    EXPECT_FALSE(entry.distances[0].isPresent());
    EXPECT_TRUE(entry.distances[1].isPresent());
    EXPECT_FALSE(entry.distances[2].isPresent());
}

TEST(FreespaceEntry, distanceIsTheNearestInEachThird)
{
    const auto entry = freespaceEntry(0, kForward, wallFrom({-5000, 2000}, {5000, 2000}));
    EXPECT_EQ(entry.distances[0].distanceMm, 2031); // 2000 / cos 10
    EXPECT_EQ(entry.distances[1].distanceMm, 2000);
    EXPECT_EQ(entry.distances[2].distanceMm, 2031);
}

TEST(FreespaceEntry, pointsLieOnTheEdgesOfTheThirdFromLeftToRight)
{
    const auto entry = freespaceEntry(0, kForward, wallFrom({-5000, 2000}, {5000, 2000}));
    EXPECT_EQ(entry.distances[1].firstPoint, (orv::OrvPoint{-347, 1970}));
    EXPECT_EQ(entry.distances[1].secondPoint, (orv::OrvPoint{347, 1970}));
    EXPECT_EQ(entry.distances[0].firstPoint, (orv::OrvPoint{-1015, 1759}));
    EXPECT_EQ(entry.distances[2].secondPoint, (orv::OrvPoint{1015, 1759}));
}

TEST(FreespaceEntry, obstacleBeyondTheRangeIsNone)
{
    EXPECT_TRUE(freespaceEntry(0, kForward, wallFrom({-9000, 4000}, {9000, 4000}))
                    .distances[1]
                    .isPresent());
    EXPECT_FALSE(freespaceEntry(0, kForward, wallFrom({-9000, 4001}, {9000, 4001}))
                     .distances[1]
                     .isPresent());
}

TEST(FreespaceEntry, firstPointOfAnObstacleNeverHasXZero)
{
    // 10 degrees left of this direction is straight ahead.
    const orv::SensorMountPosition turned{.yaw = 14564};
    const auto entry = freespaceEntry(0, turned, wallFrom({-5000, 2000}, {5000, 2000}));
    ASSERT_TRUE(entry.distances[1].isPresent());
    EXPECT_EQ(entry.distances[1].firstPoint, (orv::OrvPoint{1, 2000}));
}

TEST(FreespaceEntry, pointsPastTheWireRangeAreClamped)
{
    const auto entry = freespaceEntry(0, {.x = 32000, .y = 0, .yaw = 0}, {});
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
