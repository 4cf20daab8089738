#include "tools/common/ReplayPace.h"

#include <gtest/gtest.h>

namespace {

using cli::ReplayPace;

TEST(ReplayPace, firstPacketIsDueAtOnce)
{
    EXPECT_EQ(ReplayPace(1).dueAt(1767323045.5), 0);
}

TEST(ReplayPace, keepsTheDistancesOfTheCapture)
{
    ReplayPace pace(1);
    pace.dueAt(1000);
    EXPECT_DOUBLE_EQ(pace.dueAt(1000.25), 0.25);
    EXPECT_DOUBLE_EQ(pace.dueAt(1002), 2);
}

TEST(ReplayPace, speedDividesThem)
{
    ReplayPace pace(4);
    pace.dueAt(1000);
    EXPECT_DOUBLE_EQ(pace.dueAt(1002), 0.5);
}

TEST(ReplayPace, clockThatWasSetBackCostsNoTime)
{
    ReplayPace pace(1);
    pace.dueAt(1000);
    pace.dueAt(1001);
    EXPECT_DOUBLE_EQ(pace.dueAt(500), 1);
    EXPECT_DOUBLE_EQ(pace.dueAt(500.5), 1.5);
}

TEST(ReplayPace, nextRoundBeginsAfterAPause)
{
    ReplayPace pace(2);
    pace.dueAt(1000);
    pace.dueAt(1002);
    pace.beginAgain(0.25);
    EXPECT_DOUBLE_EQ(pace.dueAt(1000), 1.25);
    EXPECT_DOUBLE_EQ(pace.dueAt(1002), 2.25);
}

} // namespace
