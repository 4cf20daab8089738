#include "ecu/configuration/binary_angle.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

TEST(BinaryAngle, quarterTurnIsAQuarterOfTheUnits)
{
    EXPECT_EQ(binaryAngleOf(90), 16384);
    EXPECT_EQ(degreesOf(16384), 90);
}

TEST(BinaryAngle, entryIsRoundedUp)
{
    EXPECT_EQ(binaryAngleOf(0.01), 2); // 1.82
    EXPECT_EQ(binaryAngleOf(0.001), 1);
    EXPECT_EQ(binaryAngleOf(1), 183); // 182.04
    EXPECT_EQ(binaryAngleOf(359.99), 65535);
}

TEST(BinaryAngle, displayIsRoundedDown)
{
    EXPECT_EQ(degreesOf(1), 0);
    EXPECT_EQ(degreesOf(2), 0.01);
    EXPECT_EQ(degreesOf(183), 1);
    EXPECT_EQ(degreesOf(65535), 359.99);
}

TEST(BinaryAngle, fullTurnIsZero)
{
    EXPECT_EQ(binaryAngleOf(360), 0);
    EXPECT_EQ(binaryAngleOf(720), 0);
    EXPECT_EQ(binaryAngleOf(-90), 49152);
}

TEST(BinaryAngle, whatIsNoNumberIsZero)
{
    EXPECT_EQ(binaryAngleOf(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(binaryAngleOf(std::numeric_limits<double>::infinity()), 0);
    EXPECT_EQ(binaryAngleOf(std::numeric_limits<double>::max()), 0);
}

// From the text, as the spin box makes its number from what was typed.
TEST(BinaryAngle, everyTypedHundredthShowsAgainAndIsStoredAgain)
{
    for (int hundredths = 0; hundredths < 36000; ++hundredths) {
        const std::string fraction = std::to_string(100 + hundredths % 100).substr(1);
        const double typed = std::stod(std::to_string(hundredths / 100) + "." + fraction);
        const std::uint16_t stored = binaryAngleOf(typed);
        ASSERT_EQ(degreesOf(stored), typed);
        ASSERT_EQ(binaryAngleOf(degreesOf(stored)), stored) << typed;
    }
}

TEST(BinaryAngle, noStoredAngleDriftsWhenItIsEdited)
{
    for (std::uint32_t stored = 0; stored <= 65535; ++stored) {
        const double shown = degreesOf(static_cast<std::uint16_t>(stored));
        ASSERT_EQ(shown, static_cast<double>(stored * 36000ULL / 65536) / 100) << stored;
        const std::uint16_t edited = binaryAngleOf(shown);
        ASSERT_LE(stored - edited, 1U) << stored;
        ASSERT_EQ(degreesOf(edited), shown) << stored;
        ASSERT_EQ(binaryAngleOf(degreesOf(edited)), edited) << stored;
    }
}
