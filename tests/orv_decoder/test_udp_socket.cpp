#include "orv_decoder/OrvUdpSocket.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/OpenDescriptors.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::OrvUdpSocket;

// Long enough for any machine: what is waited for has been sent already.
constexpr std::uint32_t kLongMs = 5000;

TEST(UdpSocket, opensNothingWhenItIsMade)
{
    const auto before = openDescriptors();
    const OrvUdpSocket socket(freeUdpPort());
    EXPECT_FALSE(socket.isOpen());
    EXPECT_EQ(socket.lastError(), "");
    EXPECT_EQ(openDescriptors(), before);
}

TEST(UdpSocket, receivesWhatIsSentToItsPort)
{
    const std::uint16_t port = freeUdpPort();
    OrvUdpSocket socket(port);
    ASSERT_TRUE(socket.open());
    LoopbackPeer peer;
    peer.sendTo(port, {1, 2, 3});
    Bytes datagram = {9, 9, 9, 9, 9};
    EXPECT_TRUE(socket.receive(datagram, kLongMs));
    EXPECT_EQ(datagram, (Bytes{1, 2, 3}));
    EXPECT_EQ(socket.lastError(), "");
}

TEST(UdpSocket, takesDatagramsFromAnySenderInTheirOrder)
{
    const std::uint16_t port = freeUdpPort();
    OrvUdpSocket socket(port);
    ASSERT_TRUE(socket.open());
    LoopbackPeer first;
    LoopbackPeer second;
    first.sendTo(port, {1});
    second.sendTo(port, {2});
    first.sendTo(port, {3});
    for (std::uint8_t expected = 1; expected <= 3; ++expected) {
        Bytes datagram;
        ASSERT_TRUE(socket.receive(datagram, kLongMs));
        EXPECT_EQ(datagram, Bytes{expected});
    }
}

TEST(UdpSocket, tellsWhereADatagramCameFrom)
{
    const std::uint16_t port = freeUdpPort();
    OrvUdpSocket socket(port);
    ASSERT_TRUE(socket.open());
    LoopbackPeer peer;
    peer.sendTo(port, {1});
    Bytes datagram;
    ASSERT_TRUE(socket.receive(datagram, kLongMs));
    EXPECT_EQ(socket.lastSender().port, peer.port());
    EXPECT_EQ(socket.lastSender().address, orv::ipv4Endpoint("127.0.0.1", 0).address);
}

TEST(UdpSocket, hasAHandleWhileItIsOpen)
{
    OrvUdpSocket socket(freeUdpPort());
    EXPECT_EQ(socket.handle(), -1);
    ASSERT_TRUE(socket.open());
    EXPECT_GE(socket.handle(), 0);
}

TEST(UdpSocket, openOnAnOpenSocketKeepsWhatWaits)
{
    const std::uint16_t port = freeUdpPort();
    OrvUdpSocket socket(port);
    ASSERT_TRUE(socket.open());
    LoopbackPeer().sendTo(port, {7});
    const auto before = openDescriptors();
    EXPECT_TRUE(socket.open());
    EXPECT_EQ(openDescriptors(), before);
    Bytes datagram;
    EXPECT_TRUE(socket.receive(datagram, kLongMs));
    EXPECT_EQ(datagram, Bytes{7});
}

TEST(UdpSocket, receiveOnAClosedSocketFailsWithoutAReason)
{
    OrvUdpSocket socket(freeUdpPort());
    Bytes datagram = {1};
    EXPECT_FALSE(socket.receive(datagram, 1));
    EXPECT_EQ(socket.lastError(), "");
    EXPECT_EQ(datagram, Bytes{1});
}

TEST(UdpSocket, quietPortEndsInReceiveError)
{
    OrvUdpSocket socket(freeUdpPort());
    ASSERT_TRUE(socket.open());
    Bytes datagram = {1};
    EXPECT_FALSE(socket.receive(datagram, 2));
    EXPECT_EQ(socket.lastError(), "receive error");
    EXPECT_EQ(datagram, Bytes{1});
}

TEST(UdpSocket, successLeavesTheLastReasonInPlace)
{
    const std::uint16_t port = freeUdpPort();
    OrvUdpSocket socket(port);
    ASSERT_TRUE(socket.open());
    Bytes datagram;
    ASSERT_FALSE(socket.receive(datagram, 1));
    LoopbackPeer().sendTo(port, {7});
    EXPECT_TRUE(socket.receive(datagram, kLongMs));
    EXPECT_EQ(socket.lastError(), "receive error");
}

TEST(UdpSocket, emptyDatagramIsAReceiveError)
{
    const std::uint16_t port = freeUdpPort();
    OrvUdpSocket socket(port);
    ASSERT_TRUE(socket.open());
    LoopbackPeer().sendTo(port, {});
    Bytes datagram;
    EXPECT_FALSE(socket.receive(datagram, kLongMs));
    EXPECT_EQ(socket.lastError(), "receive error");
}

TEST(UdpSocket, timeoutOfZeroDoesNotWaitForEver)
{
    const auto before = openDescriptors();
    OrvUdpSocket socket(freeUdpPort());
    ASSERT_TRUE(socket.open());
    Bytes datagram;
    EXPECT_FALSE(socket.receive(datagram, 0));
    EXPECT_NE(receiveTimeoutMsOf(descriptorSince(before)), 0U);
}

TEST(UdpSocket, waitsAsLongAsItIsTold)
{
    const auto before = openDescriptors();
    const std::uint16_t port = freeUdpPort();
    OrvUdpSocket socket(port);
    ASSERT_TRUE(socket.open());
    const int descriptor = descriptorSince(before);
    LoopbackPeer peer;
    for (const std::uint32_t timeoutMs : {40U, 1000U, 61500U}) {
        peer.sendTo(port, {1});
        Bytes datagram;
        ASSERT_TRUE(socket.receive(datagram, timeoutMs));
        // The system rounds up to its own clock ticks.
        EXPECT_NEAR(receiveTimeoutMsOf(descriptor), timeoutMs, 10);
    }
}

TEST(UdpSocket, datagramOfFullLengthArrivesWhole)
{
    const std::uint16_t port = freeUdpPort();
    OrvUdpSocket socket(port);
    ASSERT_TRUE(socket.open());
    Bytes sent(1440);
    std::iota(sent.begin(), sent.end(), std::uint8_t{0});
    LoopbackPeer().sendTo(port, sent);
    Bytes datagram;
    EXPECT_TRUE(socket.receive(datagram, kLongMs));
    EXPECT_EQ(datagram, sent);
}

TEST(UdpSocket, longerDatagramIsCutAndTheNextOneIsWhole)
{
    const std::uint16_t port = freeUdpPort();
    OrvUdpSocket socket(port);
    ASSERT_TRUE(socket.open());
    LoopbackPeer peer;
    peer.sendTo(port, Bytes(2000, 0x55));
    peer.sendTo(port, {7});
    Bytes datagram;
    EXPECT_TRUE(socket.receive(datagram, kLongMs));
    EXPECT_EQ(datagram, Bytes(1440, 0x55));
    EXPECT_TRUE(socket.receive(datagram, kLongMs));
    EXPECT_EQ(datagram, Bytes{7});
}

TEST(UdpSocket, reopenListensOnTheNewPort)
{
    const std::uint16_t oldPort = freeUdpPort();
    OrvUdpSocket socket(oldPort);
    ASSERT_TRUE(socket.open());
    const std::uint16_t newPort = freeUdpPort();
    EXPECT_TRUE(socket.reopen(newPort));
    LoopbackPeer().sendTo(oldPort, {1});
    LoopbackPeer().sendTo(newPort, {2});
    Bytes datagram;
    EXPECT_TRUE(socket.receive(datagram, kLongMs));
    EXPECT_EQ(datagram, Bytes{2});
}

TEST(UdpSocket, reopenWithPortZeroKeepsThePortAndDiscardsWhatWaited)
{
    const std::uint16_t port = freeUdpPort();
    OrvUdpSocket socket(port);
    ASSERT_TRUE(socket.open());
    LoopbackPeer().sendTo(port, {1});
    EXPECT_TRUE(socket.reopen(0));
    LoopbackPeer().sendTo(port, {2});
    Bytes datagram;
    EXPECT_TRUE(socket.receive(datagram, kLongMs));
    EXPECT_EQ(datagram, Bytes{2});
}

TEST(UdpSocket, reopenOpensAClosedSocket)
{
    OrvUdpSocket socket(freeUdpPort());
    EXPECT_TRUE(socket.reopen(0));
    EXPECT_TRUE(socket.isOpen());
}

TEST(UdpSocket, portOfAnotherProgramCannotBeBound)
{
    const LoopbackPeer other;
    OrvUdpSocket socket(other.port());
    EXPECT_FALSE(socket.open());
    EXPECT_FALSE(socket.isOpen());
    EXPECT_EQ(socket.lastError(), "Can't bind socket");
}

TEST(UdpSocket, failedOpenKeepsNoDescriptor)
{
    const LoopbackPeer other;
    const auto before = openDescriptors();
    OrvUdpSocket socket(other.port());
    ASSERT_FALSE(socket.open());
    EXPECT_EQ(openDescriptors(), before);
}

TEST(UdpSocket, reopenMaySucceedAfterAFailedOpen)
{
    const LoopbackPeer other;
    OrvUdpSocket socket(other.port());
    ASSERT_FALSE(socket.open());
    EXPECT_TRUE(socket.reopen(freeUdpPort()));
    EXPECT_TRUE(socket.isOpen());
}

TEST(UdpSocket, failedReopenLeavesItClosed)
{
    const LoopbackPeer other;
    OrvUdpSocket socket(freeUdpPort());
    ASSERT_TRUE(socket.open());
    EXPECT_FALSE(socket.reopen(other.port()));
    EXPECT_FALSE(socket.isOpen());
    Bytes datagram;
    EXPECT_FALSE(socket.receive(datagram, 1));
    EXPECT_EQ(socket.lastError(), "Can't bind socket");
}

TEST(UdpSocket, twoSocketsMayShareAPort)
{
    const std::uint16_t port = freeUdpPort();
    OrvUdpSocket first(port);
    OrvUdpSocket second(port);
    EXPECT_TRUE(first.open());
    EXPECT_TRUE(second.open());
}

TEST(UdpSocket, releasesItsDescriptorWhenItEnds)
{
    const auto before = openDescriptors();
    {
        OrvUdpSocket socket(freeUdpPort());
        ASSERT_TRUE(socket.open());
        ASSERT_NE(openDescriptors(), before);
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(UdpSocket, holdsOneDescriptorHoweverOftenItIsReopened)
{
    const auto before = openDescriptors();
    OrvUdpSocket socket(freeUdpPort());
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(socket.reopen(0));
    EXPECT_EQ(openDescriptors().size(), before.size() + 1);
}

TEST(UdpSocket, timeoutThatCannotBeSetIsReported)
{
    const auto before = openDescriptors();
    OrvUdpSocket socket(freeUdpPort());
    ASSERT_TRUE(socket.open());
    breakSocket(descriptorSince(before));
    Bytes datagram;
    EXPECT_FALSE(socket.receive(datagram, 1));
    EXPECT_EQ(socket.lastError(), "Can't set receive timeout option");
}

TEST(UdpSocket, timeoutThatWasSetBeforeAnotherOneFailedIsSetAnew)
{
    const auto before = openDescriptors();
    OrvUdpSocket socket(freeUdpPort());
    ASSERT_TRUE(socket.open());
    Bytes datagram;
    EXPECT_FALSE(socket.receive(datagram, 1));
    ASSERT_EQ(socket.lastError(), "receive error");
    breakSocket(descriptorSince(before));
    EXPECT_FALSE(socket.receive(datagram, 2));
    EXPECT_FALSE(socket.receive(datagram, 1));
    EXPECT_EQ(socket.lastError(), "Can't set receive timeout option");
}

} // namespace
