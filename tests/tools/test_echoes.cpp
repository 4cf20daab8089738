#include "tools/ecu_simulator/Clutter.h"
#include "tools/ecu_simulator/Echoes.h"
#include "tools/ecu_simulator/ThresholdCurve.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace ecusim;
using Echo = orv::OrvSensorEcho;

constexpr std::uint64_t kSeed = 1;

orv::SensorThreshold flatThreshold(std::uint8_t levelIndex, std::uint8_t scale = 2)
{
    orv::SensorThreshold threshold;
    threshold.entries.fill(orv::packThresholdEntry(7, levelIndex));
    threshold.scale = scale;
    return threshold;
}

EcuState withStep(std::uint16_t activeMask, std::uint16_t passiveMask)
{
    EcuState state = defaultEcuState();
    state.sequence = {{.valid = true, .activeMask = activeMask, .passiveMask = passiveMask}};
    return state;
}

EcuState withFlatThresholds(EcuState state, std::uint8_t levelIndex, std::uint8_t scale = 2)
{
    state.thresholds.fill(flatThreshold(levelIndex, scale));
    return state;
}

orv::OrvMeasurementResult wallResult(const EcuState& state, double distanceMm)
{
    return Echoes(Scene(SceneKind::Wall, distanceMm), 0, kSeed).measure(state, 0, 0);
}

std::size_t echoCount(const orv::OrvMeasurementResult& result)
{
    std::size_t count = 0;
    for (const auto& [id, echoes] : result.echoes)
        count += echoes.size();
    return count;
}

TEST(ThresholdCurve, goesInStraightStepsAndHoldsTheLastLevel)
{
    orv::SensorThreshold threshold;
    threshold.entries.fill(orv::packThresholdEntry(0, 31)); // 12 x 204.8 us
    threshold.entries[1] = orv::packThresholdEntry(1, 0);   // 204.8 to 614.4 us
    EXPECT_NEAR(thresholdLevel(threshold, 0, Hearing::Active), 0.490343, 1e-6);
    EXPECT_NEAR(thresholdLevel(threshold, 204.7, Hearing::Active), 0.490343, 1e-6);
    EXPECT_NEAR(thresholdLevel(threshold, 204.8, Hearing::Active), 0.016387, 1e-6);
    EXPECT_NEAR(thresholdLevel(threshold, 614.0, Hearing::Active), 0.016387, 1e-6);
    EXPECT_NEAR(thresholdLevel(threshold, 615.0, Hearing::Active), 0.490343, 1e-6);
    EXPECT_NEAR(thresholdLevel(threshold, 29000, Hearing::Active), 0.490343, 1e-6);
}

TEST(ThresholdCurve, scaleCountsForPassiveSensorsAlone)
{
    const orv::SensorThreshold threshold = flatThreshold(31, 0);
    EXPECT_NEAR(thresholdLevel(threshold, 5000, Hearing::Active), 0.490343, 1e-6);
    EXPECT_NEAR(thresholdLevel(threshold, 5000, Hearing::Passive), 0.2451715, 1e-6);
}

TEST(ThresholdCurve, scalesAreThoseOfTheEcu)
{
    EXPECT_EQ(passiveScale(0), 0.5);
    EXPECT_EQ(passiveScale(1), 0.625);
    EXPECT_EQ(passiveScale(2), 0.8125);
    EXPECT_EQ(passiveScale(3), 1);
    EXPECT_EQ(passiveScale(4), 1);
}

TEST(Echoes, wallAtTwoMetresIsHeardAfter11661Microseconds)
{
    const auto result = wallResult(withStep(0x0004, 0), 2000);
    ASSERT_EQ(result.echoes.size(), 1U);
    // 4000 mm at 0.343 mm/us; 6 dB below a touching wall.
    EXPECT_EQ(result.echoes.at(2), (std::vector<Echo>{{12, 0, 11661}}));
}

TEST(Echoes, fartherWallIsWeaker)
{
    const auto result = wallResult(withStep(0x0004, 0), 5000);
    EXPECT_EQ(result.echoes.at(2), (std::vector<Echo>{{7, 0, 29154}}));
}

TEST(Echoes, wallBeyondFullScaleIsNotHeard)
{
    EXPECT_TRUE(wallResult(withStep(0x0004, 0), 5200).echoes.empty());
}

TEST(Echoes, listenerHearsTheCrossEchoLaterThanTheSender)
{
    EcuState state = withStep(0x0004, 0x0008);
    state.positions[2] = {.x = -250, .y = 0, .yaw = 16384};
    state.positions[3] = {.x = 250, .y = 0, .yaw = 16384};
    const auto result = wallResult(state, 1000);
    EXPECT_EQ(result.echoes.at(2).front().timeOfFlight, 5830); // 2000 mm
    // 2 x sqrt(250^2 + 1000^2) = 2061.55 mm
    EXPECT_EQ(result.echoes.at(3).front().timeOfFlight, 6010);
}

TEST(Echoes, writtenMountPositionsAreTheOnesUsed)
{
    EcuState state = withStep(0x0004, 0x0008);
    state.positions[2] = {.x = 0, .y = 0, .yaw = 16384};
    state.positions[3] = {.x = 0, .y = 0, .yaw = 49152}; // looks away
    const auto result = wallResult(state, 1000);
    EXPECT_TRUE(result.echoes.contains(2));
    EXPECT_FALSE(result.echoes.contains(3));
}

TEST(Echoes, masksFollowTheStepsInTurn)
{
    EcuState state = withStep(0x0001, 0x0006);
    state.sequence.push_back({.valid = true, .activeMask = 0x0800, .passiveMask = 0x0400});
    const Echoes echoes(Scene(SceneKind::Wall), 0, kSeed);
    EXPECT_EQ(echoes.measure(state, 0, 0).sendMask, 0x0001);
    EXPECT_EQ(echoes.measure(state, 0, 0).receiveMask, 0x0006);
    EXPECT_EQ(echoes.measure(state, 1, 0).sendMask, 0x0800);
    EXPECT_EQ(echoes.measure(state, 2, 0).sendMask, 0x0001);
    EXPECT_EQ(echoes.measure(state, 7, 0).measurementWord, 7U);
}

TEST(Echoes, missingSensorsNeitherSendNorHear)
{
    const Echoes echoes(Scene(SceneKind::Wall), 0x0008, kSeed);
    const auto silentSender = echoes.measure(withStep(0x0008, 0x0014), 0, 0);
    EXPECT_EQ(silentSender.sendMask, 0);
    EXPECT_TRUE(silentSender.echoes.empty());
    const auto deafListener = echoes.measure(withStep(0x0004, 0x0008), 0, 0);
    EXPECT_EQ(deafListener.receiveMask, 0);
    EXPECT_FALSE(deafListener.echoes.contains(3));
}

TEST(Echoes, maskBitsPastTheTwelfthSensorAreIgnored)
{
    const auto result = wallResult(withStep(0xF001, 0xF000), 2000);
    EXPECT_EQ(result.sendMask, 0x0001);
    EXPECT_EQ(result.receiveMask, 0);
}

TEST(Echoes, echoMustRiseAboveTheThreshold)
{
    // Code 12 has the level 0.451856; level 29 is 0.39355, level 31 is 0.490343.
    EXPECT_EQ(echoCount(wallResult(withFlatThresholds(withStep(0x0004, 0), 29), 2000)), 1U);
    EXPECT_EQ(echoCount(wallResult(withFlatThresholds(withStep(0x0004, 0), 31), 2000)), 0U);
}

TEST(Echoes, smallerPassiveScaleLetsMoreThrough)
{
    EcuState state = withStep(0x0004, 0x0008);
    state.positions[3] = state.positions[2];
    // Half of level 31 is below code 12 for the listener; the sender's threshold is not scaled.
    const auto half = wallResult(withFlatThresholds(state, 31, 0), 2000);
    EXPECT_FALSE(half.echoes.contains(2));
    EXPECT_TRUE(half.echoes.contains(3));
    EXPECT_FALSE(wallResult(withFlatThresholds(state, 31, 3), 2000).echoes.contains(3));
}

TEST(Echoes, windowInTheThresholdsShowsTheEchoesInsideItAlone)
{
    EcuState state = withStep(0x0004, 0);
    auto& entries = state.thresholds[2].entries;
    entries.fill(orv::packThresholdEntry(7, 31));
    entries[1] = orv::packThresholdEntry(6, 31); // to 10240 us
    entries[2] = orv::packThresholdEntry(2, 0);  // the window to 11059.2 us
    EXPECT_EQ(echoCount(wallResult(state, 2000)), 0U);
    entries[2] = orv::packThresholdEntry(4, 0); // to 11878.4 us
    EXPECT_EQ(echoCount(wallResult(state, 2000)), 1U);
}

TEST(Echoes, carSceneIsLivelyAndWithinTheScale)
{
    const EcuState state = defaultEcuState();
    const Echoes echoes(Scene(SceneKind::Car), 0, kSeed);
    std::size_t count = 0;
    for (std::uint32_t index = 0; index < 1200; ++index) {
        const auto result = echoes.measure(state, index, index / 20.0);
        for (const auto& [id, heard] : result.echoes) {
            count += heard.size();
            EXPECT_LE(heard.size(), 10U);
            EXPECT_TRUE(std::ranges::is_sorted(heard, {}, &Echo::timeOfFlight));
            EXPECT_LE(heard.back().timeOfFlight, 29952);
            for (const Echo& echo : heard)
                EXPECT_LE(echo.magnitude, 15);
        }
    }
    EXPECT_GT(count, 5000U);
}

TEST(Echoes, pedestrianTravelsAlongTheTimeline)
{
    // On the way past the front right corner the nearest echo of sensor 5 (shown 6) comes and goes.
    EcuState state = withStep(0x0020, 0);
    const Echoes echoes(Scene(SceneKind::Car), 0, kSeed);
    std::uint16_t nearest = 65535;
    std::size_t without = 0;
    for (std::uint32_t index = 0; index < 500; ++index) {
        const auto result = echoes.measure(state, index, index / 20.0);
        if (result.echoes.contains(5) && result.echoes.at(5).front().timeOfFlight < 10000)
            nearest = std::min(nearest, result.echoes.at(5).front().timeOfFlight);
        else
            ++without;
    }
    EXPECT_LT(nearest, 7000);
    EXPECT_GT(without, 200U);
}

TEST(Echoes, sameSeedGivesTheSameMeasurementAndAnotherSeedDoesNot)
{
    const EcuState state = defaultEcuState();
    const Scene scene(SceneKind::Car);
    const auto first = Echoes(scene, 0, 7).measure(state, 3, 0.15);
    EXPECT_EQ(first, Echoes(scene, 0, 7).measure(state, 3, 0.15));
    EXPECT_NE(first, Echoes(scene, 0, 8).measure(state, 3, 0.15));
}

TEST(Clutter, defaultThresholdsKeepItOut)
{
    EcuState state = defaultEcuState();
    for (std::uint8_t id = 0; id < orv::kSensorCount; ++id) {
        for (double time : clutterTimes(id)) {
            const double level = thresholdLevel(state.thresholds[id], time, Hearing::Active);
            EXPECT_GT(20 * std::log10(level), clutterDb(id, time) + 1.5) << int(id) << ' ' << time;
        }
    }
}

TEST(Clutter, lowThresholdsShowIt)
{
    const Echoes echoes(Scene(SceneKind::Car), 0, kSeed);
    const auto cut = echoes.measure(withStep(0x0004, 0), 0, 0);
    const auto open = echoes.measure(withFlatThresholds(withStep(0x0004, 0), 0), 0, 0);
    const auto isEarly = [](const Echo& echo) { return echo.timeOfFlight < 6000; };
    EXPECT_EQ(std::ranges::count_if(cut.echoes.at(2), isEarly), 0);
    EXPECT_GE(std::ranges::count_if(open.echoes.at(2), isEarly), 4);
}

TEST(Clutter, calibratedCurveLiesJustAboveIt)
{
    for (std::uint8_t id = 0; id < orv::kSensorCount; ++id) {
        const orv::SensorThreshold threshold{.entries = calibratedCurve(id, true)};
        for (double time = 1000; time < 8000; time += 100) {
            const double levelDb =
                20 * std::log10(thresholdLevel(threshold, time, Hearing::Active));
            EXPECT_GT(levelDb, clutterDb(id, time) + 2) << int(id) << ' ' << time;
        }
        const double groundDb = 20 * std::log10(thresholdLevel(threshold, 4000, Hearing::Active));
        EXPECT_LT(groundDb, clutterDb(id, 4000) + 4.5) << int(id);
    }
}

TEST(Clutter, calibrationWithoutClutterGoesToTheLowestLevel)
{
    const auto entries = calibratedCurve(0, false);
    for (std::uint8_t entry : entries)
        EXPECT_EQ(orv::levelIndexOf(entry), 3);
}

} // namespace
