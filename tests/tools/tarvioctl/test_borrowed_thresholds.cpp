#include "orv_decoder/OrvCtrlClient.h"
#include "tests/support/ScriptedControlSocket.h"
#include "tools/tarvioctl/BorrowedThresholds.h"
#include "tools/tarvioctl/Command.h"

#include <gtest/gtest.h>

using tarvioctl::BorrowedThresholds;

namespace {

constexpr std::uint8_t kThresholds = 1;

/// The thresholds of the fourth sensor.
class Borrowed : public testing::Test
{
protected:
    // The exchanges of borrowing: read, and written once to see that the ECU takes them.
    void queueBorrowing()
    {
        mSocket.queueReply(kThresholds, orv::encodeThreshold({.sensorId = 3, .scale = 1}));
        queueTaken();
    }

    void queueTaken() { mSocket.queueReply(kThresholds, {}); }

    std::size_t requests() const { return mSocket.requests().size(); }

    ScriptedControlSocket mSocket;
    orv::OrvCtrlClient mClient{&mSocket};
};

} // namespace

TEST_F(Borrowed, goBackWithTheObjectWhateverEndsIt)
{
    queueBorrowing();
    queueTaken();
    {
        const BorrowedThresholds thresholds(mClient, 3);
        EXPECT_EQ(requests(), 2U);
    }
    ASSERT_EQ(requests(), 3U);
    EXPECT_EQ(mSocket.requests()[2], mSocket.requests()[1]);
}

TEST_F(Borrowed, givenBackTheyAreNotWrittenAgain)
{
    queueBorrowing();
    queueTaken();
    {
        BorrowedThresholds thresholds(mClient, 3);
        thresholds.giveBack();
    }
    EXPECT_EQ(requests(), 3U);
}

TEST_F(Borrowed, repliesThatAreLostAreAskedForAgain)
{
    queueBorrowing();
    mSocket.queueTimeout();
    mSocket.queueTimeout();
    queueTaken();
    BorrowedThresholds thresholds(mClient, 3);
    EXPECT_NO_THROW(thresholds.giveBack());
}

TEST_F(Borrowed, ecuThatNeverTakesThemBackIsTold)
{
    queueBorrowing();
    BorrowedThresholds thresholds(mClient, 3);
    EXPECT_THROW(thresholds.giveBack(), tarvioctl::Refusal);
}
