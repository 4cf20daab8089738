#include "orv_decoder/OrvCtrlSocket.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/OpenDescriptors.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::OrvCtrlSocket;

// Long enough for any machine: the reply is on its way.
constexpr std::uint32_t kLongMs = 5000;

// The control channel, the ECU's socket at its other end and the channel's descriptor.
class CtrlSocket : public testing::Test
{
protected:
    // Sends `request`, answers it with `reply` and returns what the channel made of it.
    Bytes exchange(const Bytes& request, const Bytes& reply)
    {
        return exchangeWithReplies(request, {reply});
    }

    Bytes exchangeWithReplies(const Bytes& request, const std::vector<Bytes>& replies)
    {
        mSocket.setReceiveTimeout(kLongMs);
        std::thread ecu([this, &request, &replies] {
            if (mEcu.receive(static_cast<int>(kLongMs)) != request)
                return;
            for (const Bytes& reply : replies)
                mEcu.reply(reply);
        });
        Bytes buffer = request;
        const bool done = mSocket.sendReceive(buffer);
        ecu.join();
        EXPECT_TRUE(done);
        return buffer;
    }

    // Sends a request that the ECU leaves unanswered for now.
    void exchangeWithoutReply(const Bytes& request)
    {
        mSocket.setReceiveTimeout(1);
        Bytes buffer = request;
        EXPECT_FALSE(mSocket.sendReceive(buffer));
        EXPECT_EQ(mEcu.receive(static_cast<int>(kLongMs)), request);
    }

    const std::set<int> mBefore = openDescriptors();
    LoopbackPeer mEcu;
    const std::set<int> mWithEcu = openDescriptors();
    OrvCtrlSocket mSocket{"127.0.0.1", mEcu.port()};
    const int mDescriptor = descriptorSince(mWithEcu);
};

TEST_F(CtrlSocket, isOpenOnceItIsMade)
{
    EXPECT_TRUE(mSocket.isOpen());
    EXPECT_EQ(mSocket.lastError(), "");
    EXPECT_EQ(mSocket.address(), "127.0.0.1");
    EXPECT_EQ(mSocket.port(), mEcu.port());
}

TEST_F(CtrlSocket, waits500MillisecondsAtFirst)
{
    EXPECT_NEAR(receiveTimeoutMsOf(mDescriptor), 500, 10);
}

TEST_F(CtrlSocket, replacesTheRequestByTheReply)
{
    EXPECT_EQ(exchange({1, 2, 3}, {4, 5}), (Bytes{4, 5}));
}

TEST_F(CtrlSocket, replyMayBeAsLongAsADatagramAndIsCutThere)
{
    EXPECT_EQ(exchange({1}, Bytes(1440, 0x33)), Bytes(1440, 0x33));
    EXPECT_EQ(exchange({1}, Bytes(1500, 0x44)), Bytes(1440, 0x44));
}

TEST_F(CtrlSocket, silentEcuEndsInReceiveTimeoutAndAnEmptyBuffer)
{
    mSocket.setReceiveTimeout(2);
    Bytes buffer = {1, 2, 3};
    EXPECT_FALSE(mSocket.sendReceive(buffer));
    EXPECT_EQ(mSocket.lastError(), "receive timeout");
    EXPECT_TRUE(buffer.empty());
}

TEST_F(CtrlSocket, timeoutOfZeroDoesNotWaitForEver)
{
    mSocket.setReceiveTimeout(0);
    Bytes buffer = {1};
    EXPECT_FALSE(mSocket.sendReceive(buffer));
    EXPECT_NE(receiveTimeoutMsOf(mDescriptor), 0U);
}

TEST_F(CtrlSocket, applyReceiveTimeoutGoesBackTo500Milliseconds)
{
    EXPECT_TRUE(mSocket.setReceiveTimeout(100));
    EXPECT_NEAR(receiveTimeoutMsOf(mDescriptor), 100, 10);
    EXPECT_TRUE(mSocket.applyReceiveTimeout());
    EXPECT_NEAR(receiveTimeoutMsOf(mDescriptor), 500, 10);
}

TEST_F(CtrlSocket, probesShortTimeoutSurvivesItsOwnDrain)
{
    mSocket.setReceiveTimeout(100);
    Bytes buffer = {1};
    EXPECT_FALSE(mSocket.sendReceive(buffer)); // drains first
    EXPECT_NEAR(receiveTimeoutMsOf(mDescriptor), 100, 10);
}

TEST_F(CtrlSocket, lateReplyIsNotTakenForThatOfTheNextRequest)
{
    exchangeWithoutReply({1});
    mEcu.reply({0xEE});
    EXPECT_EQ(exchange({2}, {0x22}), Bytes{0x22});
}

TEST_F(CtrlSocket, everyLateReplyIsDiscarded)
{
    exchangeWithoutReply({1});
    for (std::uint8_t i = 0; i < 20; ++i)
        mEcu.reply(Bytes(200, i));
    EXPECT_EQ(exchange({2}, {0x22}), Bytes{0x22});
}

TEST_F(CtrlSocket, drainsAgainAfterEachTimeout)
{
    for (std::uint8_t round = 0; round < 3; ++round) {
        exchangeWithoutReply({1});
        mEcu.reply({0xEE});
        EXPECT_EQ(exchange({2}, {round}), Bytes{round});
    }
}

TEST_F(CtrlSocket, discardsWhatWaitsAlsoAfterAnExchangeThatSucceeded)
{
    exchange({1}, {0x11});
    mEcu.reply({0xEE});
    mEcu.reply({});
    mEcu.reply({0xEF});
    EXPECT_EQ(exchange({2}, {0x22}), Bytes{0x22});
}

TEST_F(CtrlSocket, emptyDatagramDoesNotEndTheDrain)
{
    exchangeWithoutReply({1});
    mEcu.reply({});
    mEcu.reply({0xEE});
    EXPECT_EQ(exchange({2}, {0x22}), Bytes{0x22});
}

TEST_F(CtrlSocket, emptyDatagramsArePassedOver)
{
    EXPECT_EQ(exchangeWithReplies({1}, {{}, {}, {0x11}}), Bytes{0x11});
    EXPECT_EQ(mSocket.lastError(), "");
}

TEST_F(CtrlSocket, emptyDatagramAloneIsATimeout)
{
    mSocket.setReceiveTimeout(100);
    std::thread ecu([this] {
        if (mEcu.receive(static_cast<int>(kLongMs)))
            mEcu.reply({});
    });
    Bytes buffer = {1};
    EXPECT_FALSE(mSocket.sendReceive(buffer));
    ecu.join();
    EXPECT_EQ(mSocket.lastError(), "receive timeout");
    EXPECT_TRUE(buffer.empty());
}

TEST_F(CtrlSocket, anotherDatagramMayFollowTheFirst)
{
    exchange({1}, {0x11});
    mEcu.reply({0x12});
    Bytes buffer = {9};
    EXPECT_TRUE(mSocket.receiveAnother(buffer));
    EXPECT_EQ(buffer, Bytes{0x12});
}

TEST_F(CtrlSocket, anotherDatagramHasWhatTheTimeoutHasLeft)
{
    exchangeWithoutReply({1});
    mSocket.setReceiveTimeout(kLongMs); // of the next request
    mEcu.reply({0x12});
    Bytes buffer = {9};
    EXPECT_FALSE(mSocket.receiveAnother(buffer));
    EXPECT_EQ(mSocket.lastError(), "receive timeout");
    EXPECT_TRUE(buffer.empty());
}

TEST_F(CtrlSocket, sendsItsRequestInAFloodOfOtherDatagrams)
{
    exchangeWithoutReply({1});
    std::atomic<bool> stop = false;
    std::thread flood([this, &stop] {
        while (!stop)
            mEcu.reply({0xEE});
    });
    mSocket.setReceiveTimeout(kLongMs);
    Bytes buffer = {2};
    const bool done = mSocket.sendReceive(buffer);
    stop = true;
    flood.join();
    EXPECT_TRUE(done);
    EXPECT_EQ(mEcu.receive(static_cast<int>(kLongMs)), Bytes{2});
}

TEST_F(CtrlSocket, requestThatNoDatagramHoldsIsASendError)
{
    Bytes buffer(70000);
    EXPECT_FALSE(mSocket.sendReceive(buffer));
    EXPECT_EQ(mSocket.lastError(), "send error");
}

TEST_F(CtrlSocket, addressThatIsNoneIsASendError)
{
    EXPECT_TRUE(mSocket.reconnect("no address", 0));
    Bytes buffer = {1};
    EXPECT_FALSE(mSocket.sendReceive(buffer));
    EXPECT_EQ(mSocket.lastError(), "send error");
}

TEST_F(CtrlSocket, worksAgainAfterASendError)
{
    Bytes tooLong(70000);
    ASSERT_FALSE(mSocket.sendReceive(tooLong));
    EXPECT_EQ(exchange({1}, {0x11}), Bytes{0x11});
    EXPECT_EQ(mSocket.lastError(), "send error");
}

TEST_F(CtrlSocket, reconnectTalksToTheOtherEcu)
{
    LoopbackPeer other;
    EXPECT_TRUE(mSocket.reconnect("127.0.0.1", other.port()));
    mSocket.setReceiveTimeout(1);
    Bytes buffer = {5};
    EXPECT_FALSE(mSocket.sendReceive(buffer));
    EXPECT_EQ(other.receive(static_cast<int>(kLongMs)), Bytes{5});
    EXPECT_EQ(mEcu.receive(0), std::nullopt);
}

TEST_F(CtrlSocket, reconnectWithNothingKeepsAddressAndPort)
{
    EXPECT_TRUE(mSocket.reconnect("", 0));
    EXPECT_EQ(mSocket.address(), "127.0.0.1");
    EXPECT_EQ(mSocket.port(), mEcu.port());
    EXPECT_EQ(exchange({1}, {0x11}), Bytes{0x11});
}

TEST_F(CtrlSocket, reconnectReplacesAddressAndPortOnTheirOwn)
{
    mSocket.reconnect("127.0.0.2", 0);
    EXPECT_EQ(mSocket.address(), "127.0.0.2");
    EXPECT_EQ(mSocket.port(), mEcu.port());
    mSocket.reconnect("", 4711);
    EXPECT_EQ(mSocket.address(), "127.0.0.2");
    EXPECT_EQ(mSocket.port(), 4711);
}

TEST_F(CtrlSocket, reconnectHearsNoReplyToTheOldConnection)
{
    exchangeWithoutReply({1});
    mSocket.reconnect("", 0);
    mEcu.reply({0xEE});
    EXPECT_EQ(exchange({2}, {0x22}), Bytes{0x22});
}

TEST_F(CtrlSocket, reconnectWaits500MillisecondsAgain)
{
    mSocket.setReceiveTimeout(100);
    const auto before = openDescriptors();
    mSocket.reconnect("", 0);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_NEAR(receiveTimeoutMsOf(mDescriptor), 500, 10);
}

TEST_F(CtrlSocket, timeoutThatCannotBeSetIsReturned)
{
    breakSocket(mDescriptor);
    EXPECT_FALSE(mSocket.setReceiveTimeout(100));
    EXPECT_EQ(mSocket.lastError(), "");
}

TEST(CtrlSocketDescriptor, isReleasedWhenTheChannelEnds)
{
    const auto before = openDescriptors();
    {
        OrvCtrlSocket socket("127.0.0.1", 4711);
        socket.reconnect("", 4712);
        socket.open();
        ASSERT_EQ(openDescriptors().size(), before.size() + 1);
    }
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace
