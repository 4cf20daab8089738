#include "views/live/slot_keys.h"

#include <Qt>
#include <gtest/gtest.h>

TEST(SlotKeys, arrowsLeadToTheNeighboursAndStopAtTheEnds)
{
    EXPECT_EQ(slotAfterKey(Qt::Key_Left, 5, 10), 4);
    EXPECT_EQ(slotAfterKey(Qt::Key_Right, 5, 10), 6);
    EXPECT_EQ(slotAfterKey(Qt::Key_Left, 0, 10), 0);
    EXPECT_EQ(slotAfterKey(Qt::Key_Right, 9, 10), 9);
}

TEST(SlotKeys, homeIsTheOldestAndEndTheNewest)
{
    EXPECT_EQ(slotAfterKey(Qt::Key_Home, 5, 10), 0);
    EXPECT_EQ(slotAfterKey(Qt::Key_End, 5, 10), 9);
}

TEST(SlotKeys, spaceAndEnterStay)
{
    for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        EXPECT_EQ(slotAfterKey(key, 5, 10), 5);
}

TEST(SlotKeys, slotThatIsGoneMeansTheLastOne)
{
    EXPECT_EQ(slotAfterKey(Qt::Key_Space, 12, 10), 9);
    EXPECT_EQ(slotAfterKey(Qt::Key_Right, 12, 10), 9);
}

TEST(SlotKeys, otherKeysAndEmptyTimelinesLeadNowhere)
{
    EXPECT_EQ(slotAfterKey(Qt::Key_A, 5, 10), std::nullopt);
    EXPECT_EQ(slotAfterKey(Qt::Key_Up, 5, 10), std::nullopt);
    EXPECT_EQ(slotAfterKey(Qt::Key_Left, 0, 0), std::nullopt);
}
