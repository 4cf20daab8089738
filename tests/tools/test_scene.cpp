#include "tools/ecu_simulator/EcuState.h"
#include "tools/ecu_simulator/Geometry.h"
#include "tools/ecu_simulator/Scene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

namespace {

using namespace ecusim;

constexpr Wall kWallAhead{.from = {-1000, 2000}, .to = {1000, 2000}};

TEST(EchoPath, directPathGoesThereAndBack)
{
    const auto path = echoPath(kWallAhead, {100, 0}, {100, 0});
    ASSERT_TRUE(path);
    EXPECT_DOUBLE_EQ(path->lengthMm, 4000);
    EXPECT_DOUBLE_EQ(path->reflection.x, 100);
    EXPECT_DOUBLE_EQ(path->reflection.y, 2000);
    EXPECT_FALSE(path->isFromEdge);
}

TEST(EchoPath, crossPathIsMirroredBetweenTheSensors)
{
    const auto path = echoPath(kWallAhead, {-750, 1000}, {750, 1000});
    ASSERT_TRUE(path);
    EXPECT_DOUBLE_EQ(path->lengthMm, 2500);
    EXPECT_DOUBLE_EQ(path->reflection.x, 0);
}

TEST(EchoPath, nearerSensorHasTheReflectionNearer)
{
    const auto path = echoPath(kWallAhead, {0, 1000}, {900, 1500});
    ASSERT_TRUE(path);
    EXPECT_DOUBLE_EQ(path->reflection.x, 600);
}

TEST(EchoPath, besideAWallItsEdgeScatters)
{
    const auto path = echoPath(kWallAhead, {2500, 0}, {2500, 0});
    ASSERT_TRUE(path);
    EXPECT_TRUE(path->isFromEdge);
    EXPECT_DOUBLE_EQ(path->lengthMm, 5000);
}

TEST(EchoPath, wallBetweenTheSensorsGivesNone)
{
    EXPECT_FALSE(echoPath(kWallAhead, {0, 0}, {0, 3000}));
}

TEST(EchoPath, wallWithoutLengthGivesNone)
{
    EXPECT_FALSE(echoPath(Wall{{5, 5}, {5, 5}}, {0, 0}, {0, 0}));
}

TEST(EchoPath, postReturnsSoundFromItsNearSide)
{
    const EchoPath path = echoPath(Disc{{0, 1000}, 100}, {0, 0}, {0, 0});
    EXPECT_DOUBLE_EQ(path.lengthMm, 1800);
    EXPECT_DOUBLE_EQ(path.reflection.y, 900);
}

TEST(RayDistance, endsOnTheWall)
{
    EXPECT_DOUBLE_EQ(rayDistance(kWallAhead, {0, 0}, {0, 1}).value_or(-1), 2000);
}

TEST(RayDistance, missesBesideAndBehind)
{
    EXPECT_FALSE(rayDistance(kWallAhead, {1001, 0}, {0, 1}));
    EXPECT_FALSE(rayDistance(kWallAhead, {0, 0}, {0, -1}));
    EXPECT_FALSE(rayDistance(kWallAhead, {0, 0}, {1, 0}));
}

TEST(RayDistance, endsOnTheNearSideOfAPost)
{
    const Disc post{{0, 1000}, 100};
    EXPECT_DOUBLE_EQ(rayDistance(post, {0, 0}, {0, 1}).value_or(-1), 900);
    EXPECT_FALSE(rayDistance(post, {101, 0}, {0, 1}));
    EXPECT_FALSE(rayDistance(post, {0, 0}, {0, -1}));
}

TEST(Pose, yawTurnsCounterClockwiseFromX)
{
    const Pose sensor = poseOf({.x = 100, .y = 200, .yaw = 16384});
    EXPECT_NEAR(sensor.pointAt(1000).x, 100, 1e-6);
    EXPECT_NEAR(sensor.pointAt(1000).y, 1200, 1e-6);
    EXPECT_NEAR(sensor.pointAt(1000, radians(90)).x, -900, 1e-6);
}

TEST(Pose, offAxisAngleIsTheSameLeftAndRight)
{
    const Pose sensor = poseOf({.yaw = 16384});
    EXPECT_NEAR(sensor.offAxisAngle({100, 100}), radians(45), 1e-9);
    EXPECT_NEAR(sensor.offAxisAngle({-100, 100}), radians(45), 1e-9);
    EXPECT_NEAR(sensor.offAxisAngle({0, -100}), radians(180), 1e-9);
}

TEST(Scene, pedestrianWalksAtAStrollAndNeverThroughTheCar)
{
    for (int tick = 0; tick < 600; ++tick) {
        const Point here = pedestrianAt(tick * 0.1);
        const Point next = pedestrianAt(tick * 0.1 + 0.1);
        EXPECT_LE(length(next - here), 110.0001) << tick;
        EXPECT_TRUE(here.x > 3800 || here.x < -1100 || std::abs(here.y) > 1150) << tick;
    }
}

// The origin is below the middle of the rear axle.
TEST(DefaultMounts, bumpersStandInFrontOfTheOriginAndJustBehindIt)
{
    const orv::SensorMountPositions mounts = defaultEcuState().positions;
    for (std::size_t front = 0; front < 6; ++front) {
        EXPECT_GT(mounts[front].x, 3000) << front;
        EXPECT_LT(mounts[11 - front].x, 0) << front;
        EXPECT_GT(mounts[11 - front].x, -1000) << front;
    }
}

TEST(DefaultMounts, runClockwiseFromTheLeftFrontCorner)
{
    const orv::SensorMountPositions mounts = defaultEcuState().positions;
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_GT(mounts[i].y, mounts[i + 1].y) << i;
        EXPECT_EQ(mounts[i].y, -mounts[5 - i].y) << i;
        EXPECT_EQ(mounts[i].y, mounts[11 - i].y) << i;
    }
}

TEST(DefaultMounts, everySensorLooksAwayFromTheVehicle)
{
    const Point middle{1350, 0};
    for (const orv::SensorMountPosition& mount : defaultEcuState().positions) {
        const Pose sensor = poseOf(mount);
        const Point outwards = sensor.position - middle;
        EXPECT_GT(length(sensor.pointAt(1000) - middle), length(outwards) + 700);
        // Left of the vehicle to the left, right of it to the right.
        EXPECT_GT(unitVector(sensor.direction).y * outwards.y, 0);
    }
    EXPECT_LT(poseOf(defaultEcuState().positions[2]).direction, radians(10)); // nearly ahead
}

TEST(Scene, houseStandsAheadAndTheParkedCarToTheRight)
{
    const auto nearestWall = [](double yawDegrees) {
        const Pose middle{.position = {1350, 0}, .direction = radians(yawDegrees)};
        double nearest = 1e9;
        for (const auto& wall : Scene(SceneKind::Car).seenFrom(middle, 0).walls)
            nearest = std::min(
                nearest, rayDistance(wall.shape, middle.position, unitVector(middle.direction))
                             .value_or(1e9));
        return nearest;
    };
    EXPECT_NEAR(nearestWall(0), 5200, 100);   // house
    EXPECT_NEAR(nearestWall(90), 3300, 100);  // house
    EXPECT_NEAR(nearestWall(180), 4400, 100); // kerb
    EXPECT_NEAR(nearestWall(270), 2500, 100); // parked car
}

TEST(Scene, wallSceneHasOneWallAcrossTheDirection)
{
    const Pose sensor = poseOf({.x = 500, .y = 0, .yaw = 0});
    const Surroundings seen = Scene(SceneKind::Wall, 1500).seenFrom(sensor, 0);
    ASSERT_EQ(seen.walls.size(), 1U);
    EXPECT_TRUE(seen.discs.empty());
    EXPECT_NEAR(seen.walls[0].shape.from.x, 2000, 1e-6);
    EXPECT_NEAR(seen.walls[0].shape.to.x, 2000, 1e-6);
}

} // namespace
