#include "views/freespace/FreespaceAges.h"

#include <gtest/gtest.h>

namespace {

const SensorSet kNobody;
const SensorSet kFourth("1000");

// The package that ends the drawing, counted from 1; 0 when none of the first `limit` does.
int packagesUntilOver(FreespaceAges& ages, int limit)
{
    for (int package = 1; package <= limit; ++package) {
        if (ages.advance(kFourth, kNobody).any())
            return package;
    }
    return 0;
}

TEST(FreespaceAges, reportingSensorLastsForSixtyTwoPackagesMore)
{
    FreespaceAges ages;
    ages.advance(kFourth, kFourth);
    EXPECT_EQ(packagesUntilOver(ages, 1000), 63);
}

TEST(FreespaceAges, reportingLongerDoesNotMakeItOlder)
{
    FreespaceAges ages;
    for (int package = 0; package < 1000; ++package)
        ages.advance(kFourth, kFourth);
    EXPECT_EQ(packagesUntilOver(ages, 1000), 63);
}

TEST(FreespaceAges, markerThatNeverReportedStartsAtFifty)
{
    FreespaceAges ages;
    EXPECT_EQ(packagesUntilOver(ages, 1000), 51);
}

TEST(FreespaceAges, sensorWithoutMarkerHasNoAge)
{
    FreespaceAges ages;
    for (int package = 0; package < 100; ++package)
        EXPECT_TRUE(ages.advance(kNobody, kFourth).none());
    EXPECT_EQ(packagesUntilOver(ages, 1000), 51);
}

TEST(FreespaceAges, goneSensorStaysGone)
{
    FreespaceAges ages;
    packagesUntilOver(ages, 1000);
    EXPECT_EQ(ages.advance(kFourth, kNobody), kFourth);
    EXPECT_EQ(ages.advance(kFourth, kNobody), kFourth);
}

TEST(FreespaceAges, returningSensorClimbsByTwelve)
{
    FreespaceAges ages;
    packagesUntilOver(ages, 1000);
    ages.advance(kFourth, kFourth);
    EXPECT_EQ(packagesUntilOver(ages, 1000), 13);
    ages.advance(kFourth, kFourth);
    ages.advance(kFourth, kFourth);
    EXPECT_EQ(packagesUntilOver(ages, 1000), 25);
}

TEST(FreespaceAges, returningSensorClimbsToSixtyAtMost)
{
    FreespaceAges ages;
    packagesUntilOver(ages, 1000);
    for (int package = 0; package < 20; ++package)
        ages.advance(kFourth, kFourth);
    EXPECT_EQ(packagesUntilOver(ages, 1000), 61);
}

TEST(FreespaceAges, sensorsAgeIndependently)
{
    FreespaceAges ages;
    const SensorSet both("100000001000");
    ages.advance(both, both);
    for (int package = 0; package < 62; ++package)
        EXPECT_TRUE(ages.advance(both, kFourth).none());
    EXPECT_EQ(ages.advance(both, kFourth), SensorSet("100000000000"));
}

} // namespace
