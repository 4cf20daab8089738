#include "views/live/signal_geometry.h"

#include <gtest/gtest.h>

using signal_geometry::echoLineEnd;
using signal_geometry::echoLineRect;
using signal_geometry::echoLineY;

TEST(EchoLine, strongestEchoEndsFivePixelsBeforeTheRightEdge)
{
    EXPECT_EQ(echoLineEnd(15, 39), 34);
    EXPECT_EQ(echoLineEnd(15, 244), 239);
}

TEST(EchoLine, lengthIsTruncatedToWholePixels)
{
    EXPECT_EQ(echoLineEnd(1, 39), 1);  // 35 / 15 = 2.33
    EXPECT_EQ(echoLineEnd(7, 39), 15); // 245 / 15 = 16.33
    EXPECT_EQ(echoLineEnd(14, 39), 31);
}

TEST(EchoLine, magnitudeZeroHasNoLine)
{
    EXPECT_EQ(echoLineEnd(0, 39), -1);
}

TEST(EchoLine, weakEchoInANarrowPictureHasNoLine)
{
    EXPECT_EQ(echoLineEnd(1, 19), 0);
    EXPECT_EQ(echoLineEnd(1, 33), 0);
    EXPECT_EQ(echoLineEnd(1, 34), 1);
}

TEST(EchoLine, magnitudeAboveFifteenRunsOutOfThePicture)
{
    EXPECT_EQ(echoLineEnd(16, 39), 36);
    EXPECT_EQ(echoLineEnd(30, 39), 69);
    EXPECT_EQ(echoLineEnd(255, 39), 594);
}

TEST(EchoLine, pictureThinnerThanItsFrameHasNoLine)
{
    EXPECT_EQ(echoLineEnd(15, 4), -1);
    EXPECT_EQ(echoLineEnd(15, 1), -4);
    EXPECT_EQ(echoLineEnd(255, 0), -69);
}

TEST(EchoLine, zeroMillisecondsAreAtTheBottomAndThirtyAtTheTop)
{
    EXPECT_EQ(echoLineY(0, 54), 50);
    EXPECT_EQ(echoLineY(30000, 54), 0);
    EXPECT_EQ(echoLineY(15000, 54), 25);
}

TEST(EchoLine, heightAboveTheBottomIsTruncatedToWholePixels)
{
    EXPECT_EQ(echoLineY(599, 54), 50);
    EXPECT_EQ(echoLineY(600, 54), 49);
    EXPECT_EQ(echoLineY(5120, 54), 42); // 50 * 5120 / 30000 = 8.53
    EXPECT_EQ(echoLineY(29999, 54), 1);
}

TEST(EchoLine, echoLaterThanThirtyMillisecondsLiesAboveThePicture)
{
    EXPECT_EQ(echoLineY(30600, 54), -1);
    EXPECT_EQ(echoLineY(65535, 54), -59);
}

TEST(EchoLine, pictureLowerThanItsFrameDoesNotOverflow)
{
    EXPECT_EQ(echoLineY(15000, 0), -2);
    EXPECT_EQ(echoLineY(65535, 1), 3);
}

TEST(EchoLine, largestPossiblePictureDoesNotOverflow)
{
    EXPECT_EQ(echoLineEnd(255, 16777215), 285212586);
    EXPECT_EQ(echoLineY(65535, 16777215), -19872606);
}

TEST(EchoLine, lineCoversHalfAPixelAroundIt)
{
    EXPECT_EQ(echoLineRect(15, 42), QRectF(1.5, 41.5, 14, 1));
}

TEST(EchoLine, lineThatEndsLeftOfItsStartRunsToTheLeft)
{
    EXPECT_EQ(echoLineRect(1, 42), QRectF(0.5, 41.5, 2, 1));
}
