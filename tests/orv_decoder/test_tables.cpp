#include "orv_decoder/SensorThreshold.h"
#include "orv_decoder/constants.h"
#include "orv_decoder/tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

namespace {

TEST(Tables, segmentDurationsAreTheListedMicroseconds)
{
    const std::array<double, 8> listed = {204.8, 409.6, 819.2, 1228.8, 1638.4, 2662.4, 4096, 6144};
    EXPECT_EQ(orv::kSegmentDurationsUs, listed);
}

TEST(Tables, thresholdLevelsAreTheListedFractions)
{
    const std::array<float, 32> listed = {
        0.016387F,  0.018281F,  0.0203939F, 0.022751F,  0.0254097F, 0.0283465F, 0.0316228F,
        0.0352777F, 0.039355F,  0.0439542F, 0.0490343F, 0.0547016F, 0.0610239F, 0.0681554F,
        0.0760326F, 0.0848203F, 0.0946237F, 0.105682F,  0.117896F,  0.131522F,  0.146724F,
        0.16387F,   0.18281F,   0.203939F,  0.22751F,   0.254097F,  0.283465F,  0.316228F,
        0.352777F,  0.39355F,   0.439542F,  0.490343F};
    EXPECT_EQ(orv::kThresholdLevels, listed);
}

TEST(Tables, levelDecibelsAreThirtyTwoStepsOfTwentyTwentyFirsts)
{
    for (std::size_t k = 0; k < orv::kThresholdLevelsDb.size(); ++k) {
        const double exact = (static_cast<double>(k) - 37.5) * 20 / 21;
        EXPECT_NEAR(orv::kThresholdLevelsDb[k], exact, 0.0051) << "level " << k;
    }
    EXPECT_FLOAT_EQ(orv::kThresholdLevelsDb.front(), -35.71F);
    EXPECT_FLOAT_EQ(orv::kThresholdLevelsDb.back(), -6.19F);
}

TEST(Tables, levelsAndTheirDecibelsSayTheSame)
{
    for (std::size_t k = 0; k < orv::kThresholdLevels.size(); ++k) {
        const double level = std::pow(10.0, double{orv::kThresholdLevelsDb[k]} / 20);
        EXPECT_NEAR(orv::kThresholdLevels[k], level, level * 1e-5) << "level " << k;
    }
}

TEST(Tables, magnitudeDecibelsAreTheListedOnes)
{
    const std::array<float, 16> listed = {-29.12F, -27.74F, -25.85F, -24.01F, -22.05F, -20.18F,
                                          -18.27F, -16.42F, -14.52F, -12.58F, -10.69F, -8.8F,
                                          -6.9F,   -4.99F,  -3.09F,  -1.19F};
    EXPECT_EQ(orv::kMagnitudesDb, listed);
}

TEST(Tables, magnitudeLevelsAreTheListedFractions)
{
    const std::array<float, 16> listed = {0.0349945F, 0.0410204F, 0.0509918F, 0.0630231F,
                                          0.0789769F, 0.0979490F, 0.1220390F, 0.1510080F,
                                          0.1879320F, 0.2349630F, 0.2920790F, 0.3630780F,
                                          0.4518560F, 0.5629890F, 0.7006480F, 0.8719670F};
    EXPECT_EQ(orv::kMagnitudeLevels, listed);
}

TEST(Tables, magnitudesAndTheirDecibelsSayTheSame)
{
    for (std::size_t code = 0; code < orv::kMagnitudeLevels.size(); ++code) {
        const double level = std::pow(10.0, double{orv::kMagnitudesDb[code]} / 20);
        EXPECT_NEAR(orv::kMagnitudeLevels[code], level, level * 1e-5) << "code " << code;
    }
}

TEST(Tables, everyTableRises)
{
    const auto rises = [](const auto& table) {
        return std::ranges::adjacent_find(table, std::greater_equal<>()) == table.end();
    };
    EXPECT_TRUE(rises(orv::kSegmentDurationsUs));
    EXPECT_TRUE(rises(orv::kThresholdLevels));
    EXPECT_TRUE(rises(orv::kThresholdLevelsDb));
    EXPECT_TRUE(rises(orv::kMagnitudesDb));
    EXPECT_TRUE(rises(orv::kMagnitudeLevels));
}

TEST(Tables, magnitudeCodesAboveFifteenUseTheLastEntry)
{
    EXPECT_EQ(orv::magnitudeIndex(0), 0U);
    EXPECT_EQ(orv::magnitudeIndex(15), 15U);
    EXPECT_EQ(orv::magnitudeIndex(16), 15U);
    EXPECT_EQ(orv::magnitudeIndex(65535), 15U);
}

TEST(ThresholdEntry, timeIndexIsInTheUpperThreeBits)
{
    EXPECT_EQ(orv::packThresholdEntry(5, 9), 0xA9);
    EXPECT_EQ(orv::timeIndexOf(0xA9), 5);
    EXPECT_EQ(orv::levelIndexOf(0xA9), 9);
}

TEST(ThresholdEntry, indexesPastTheTablesAreCutToTheirBits)
{
    EXPECT_EQ(orv::packThresholdEntry(8, 32), 0x00);
    EXPECT_EQ(orv::packThresholdEntry(15, 63), 0xFF);
}

TEST(ThresholdEntry, everyByteNamesEntriesOfBothTables)
{
    for (unsigned entry = 0; entry < 256; ++entry) {
        const auto byte = static_cast<std::uint8_t>(entry);
        ASSERT_LT(orv::timeIndexOf(byte), orv::kSegmentDurationsUs.size());
        ASSERT_LT(orv::levelIndexOf(byte), orv::kThresholdLevels.size());
        ASSERT_EQ(orv::packThresholdEntry(orv::timeIndexOf(byte), orv::levelIndexOf(byte)), byte);
    }
}

TEST(Constants, areThoseOfTheEcu)
{
    EXPECT_EQ(orv::kSensorCount, 12);
    EXPECT_EQ(orv::kNoSensor, 255);
    EXPECT_EQ(orv::kMaxStepCount, 12U);
    EXPECT_EQ(orv::kThresholdEntryCount, 12U);
    EXPECT_EQ(orv::kMaxTimeOfFlightUs, 30000);
    EXPECT_EQ(orv::kMaxMagnitude, 15);
    EXPECT_EQ(orv::kMaxDatagramSize, 1440U);
}

} // namespace
