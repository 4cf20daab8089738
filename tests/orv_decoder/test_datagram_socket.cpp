#include "orv_decoder/DatagramSocket.h"
#include "tests/support/LoopbackPeer.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>

namespace {

using namespace std::chrono_literals;
using orv::DatagramSocket;
using Clock = DatagramSocket::Clock;

// Long enough for any machine: what is waited for has been sent already.
constexpr std::uint32_t kLongMs = 5000;

// A socket as it is before it is bound.
class Datagrams : public testing::Test
{
protected:
    Datagrams() { EXPECT_TRUE(mSocket.startUp() && mSocket.create()); }

    const std::uint16_t mPort = freeUdpPort();
    DatagramSocket mSocket;
    std::array<std::uint8_t, 4> mBuffer{};
};

TEST_F(Datagrams, portThatIsNotSharedIsNobodyElses)
{
    ASSERT_TRUE(mSocket.bindToAnyAddress(mPort));
    DatagramSocket sharing;
    ASSERT_TRUE(sharing.create());
    ASSERT_TRUE(sharing.setReuseAddress());
    EXPECT_FALSE(sharing.bindToAnyAddress(mPort));
}

TEST_F(Datagrams, sharedPortIsNotHadWithoutSharing)
{
    ASSERT_TRUE(mSocket.setReuseAddress());
    ASSERT_TRUE(mSocket.bindToAnyAddress(mPort));
    DatagramSocket alone;
    ASSERT_TRUE(alone.create());
    EXPECT_FALSE(alone.bindToAnyAddress(mPort));
}

TEST_F(Datagrams, closedSocketHasNoHandle)
{
    EXPECT_NE(mSocket.handle(), -1);
    mSocket.close();
    EXPECT_EQ(mSocket.handle(), -1);
}

TEST_F(Datagrams, portInUseIsTold)
{
    const LoopbackPeer other;
    ASSERT_FALSE(mSocket.bindToAnyAddress(other.port()));
    const std::string reason = DatagramSocket::systemError();
    EXPECT_TRUE(reason.find("in use") != std::string::npos ||
                reason.find("(10048)") != std::string::npos)
        << reason;
}

TEST_F(Datagrams, sharingEndsWithTheSocketThatAskedForIt)
{
    ASSERT_TRUE(mSocket.setReuseAddress());
    ASSERT_TRUE(mSocket.create());
    ASSERT_TRUE(mSocket.bindToAnyAddress(mPort));
    DatagramSocket sharing;
    ASSERT_TRUE(sharing.create());
    ASSERT_TRUE(sharing.setReuseAddress());
    EXPECT_FALSE(sharing.bindToAnyAddress(mPort));
}

TEST_F(Datagrams, cutDatagramFillsTheBufferAndTellsItsSender)
{
    ASSERT_TRUE(mSocket.bindToAnyAddress(mPort));
    ASSERT_TRUE(mSocket.setReceiveTimeout(kLongMs));
    LoopbackPeer peer;
    peer.sendTo(mPort, {1, 2, 3, 4, 5, 6});
    orv::Ipv4Endpoint sender;
    EXPECT_EQ(mSocket.receive(mBuffer, &sender), 4U);
    EXPECT_EQ(mBuffer, (std::array<std::uint8_t, 4>{1, 2, 3, 4}));
    EXPECT_EQ(sender.port, peer.port());
}

// Winsock would tell at once that nobody holds the port, as an error. The system may end its own
// time-out a tick of its clock too early.
TEST_F(Datagrams, portThatNobodyHoldsEndsNoWait)
{
    ASSERT_TRUE(mSocket.setReceiveTimeout(100));
    const auto start = Clock::now();
    ASSERT_TRUE(mSocket.send(mBuffer, orv::ipv4Endpoint("127.0.0.1", mPort)));
    EXPECT_FALSE(mSocket.receiveUntil(start + 100ms, mBuffer));
    EXPECT_GE(Clock::now() - start, 50ms);
}

TEST_F(Datagrams, answerIsHeardBehindWordOfAPortThatNobodyHolds)
{
    ASSERT_TRUE(mSocket.setReceiveTimeout(kLongMs));
    LoopbackPeer ecu;
    ASSERT_TRUE(mSocket.send(mBuffer, orv::ipv4Endpoint("127.0.0.1", mPort)));
    ASSERT_TRUE(mSocket.send(mBuffer, orv::ipv4Endpoint("127.0.0.1", ecu.port())));
    ASSERT_TRUE(ecu.receive(static_cast<int>(kLongMs)));
    ecu.reply({7});
    EXPECT_EQ(mSocket.receiveUntil(Clock::now() + 5s, mBuffer), 1U);
    EXPECT_EQ(mBuffer.front(), 7);
}

TEST_F(Datagrams, firstOfTwoEndsTheWait)
{
    ASSERT_TRUE(mSocket.bindToAnyAddress(mPort));
    ASSERT_TRUE(mSocket.setReceiveTimeout(kLongMs));
    LoopbackPeer peer;
    peer.sendTo(mPort, {1});
    peer.sendTo(mPort, {1, 2});
    EXPECT_EQ(mSocket.receiveUntil(Clock::now() + 5s, mBuffer), 1U);
    EXPECT_EQ(mSocket.receiveUntil(Clock::now() + 5s, mBuffer), 2U);
}

TEST_F(Datagrams, waitEndsAtItsDeadline)
{
    const auto deadline = Clock::now() + 30ms;
    EXPECT_FALSE(mSocket.waitUntil(deadline));
    EXPECT_GE(Clock::now(), deadline);
}

TEST_F(Datagrams, waitBehindItsDeadlineDoesNotEvenLook)
{
    ASSERT_TRUE(mSocket.bindToAnyAddress(mPort));
    LoopbackPeer().sendTo(mPort, {1});
    EXPECT_FALSE(mSocket.waitUntil(Clock::now() - 1s));
    EXPECT_TRUE(mSocket.waitUntil(Clock::now() + 5s));
}

TEST(Datagram, nothingIsWaitedForWithoutASocket)
{
    const DatagramSocket none;
    EXPECT_FALSE(none.waitUntil(Clock::time_point::max()));
}

} // namespace
