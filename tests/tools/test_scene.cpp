#include "tools/ecu_simulator/Geometry.h"
#include "tools/ecu_simulator/Scene.h"

#include <gtest/gtest.h>

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
        EXPECT_TRUE(std::abs(here.x) > 1150 || std::abs(here.y) > 2450) << tick;
    }
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
