#include "orv_decoder/OrvCtrlSocket.h"
#include "orv_decoder/OrvUdpSocket.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/OpenDescriptors.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <poll.h>
#include <set>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>
#include <vector>

// The linker takes the functions below in the place of the system's own, so that they can be told
// what to do and be asked what they were told.
namespace {

using Clock = std::chrono::steady_clock;

// Far longer than a drain may take; what is endless for the caller must end for the test.
constexpr std::chrono::seconds kFloodDuration{20};

struct System
{
    bool socketFails = false;
    int failingOption = -1;
    bool isFlooded = false; // a datagram is waiting whenever one is asked for
    bool isFloodOver = false;
    int interruptedReceives = 0; // the next ones end by a signal
    Clock::time_point floodStart = Clock::now();
    std::vector<std::uint32_t> receiveTimeoutsMs;
    std::vector<int> waitsMs; // of each look for a datagram
};

System fakeSystem;

ssize_t receiveFromFlood(void* buffer)
{
    fakeSystem.isFloodOver = Clock::now() - fakeSystem.floodStart > kFloodDuration;
    *static_cast<std::uint8_t*>(buffer) = 0xEE;
    return fakeSystem.isFloodOver ? -1 : 1;
}

} // namespace

extern "C" int socket(int domain, int type, int protocol) noexcept
{
    if (fakeSystem.socketFails)
        return -1;
    return static_cast<int>(::syscall(SYS_socket, domain, type, protocol));
}

extern "C" int setsockopt(int handle, int level, int option, const void* value,
                          socklen_t size) noexcept
{
    if (option == fakeSystem.failingOption)
        return -1;
    if (option == SO_RCVTIMEO) {
        const auto* time = static_cast<const timeval*>(value);
        fakeSystem.receiveTimeoutsMs.push_back(
            static_cast<std::uint32_t>(time->tv_sec * 1000 + time->tv_usec / 1000));
    }
    return static_cast<int>(::syscall(SYS_setsockopt, handle, level, option, value, size));
}

extern "C" int poll(pollfd* entries, nfds_t count, int timeoutMs)
{
    fakeSystem.waitsMs.push_back(timeoutMs);
    if (fakeSystem.isFlooded)
        return 1;
    const timespec timeout{.tv_sec = timeoutMs / 1000, .tv_nsec = timeoutMs % 1000 * 1'000'000L};
    return static_cast<int>(::syscall(SYS_ppoll, entries, count, &timeout, nullptr, 0));
}

extern "C" ssize_t recvfrom(int handle, void* buffer, size_t length, int flags, sockaddr* sender,
                            socklen_t* senderSize)
{
    if (fakeSystem.interruptedReceives > 0) {
        --fakeSystem.interruptedReceives;
        errno = EINTR;
        return -1;
    }
    if (fakeSystem.isFlooded)
        return receiveFromFlood(buffer);
    return ::syscall(SYS_recvfrom, handle, buffer, length, flags, sender, senderSize);
}

namespace {

using Bytes = std::vector<std::uint8_t>;

class SocketFailure : public testing::Test
{
protected:
    SocketFailure() { fakeSystem = {}; }
    ~SocketFailure() override { fakeSystem = {}; }

    const std::uint16_t mPort = freeUdpPort();
    const std::set<int> mBefore = openDescriptors();
};

using ControlDrain = SocketFailure;
using Interruption = SocketFailure;

TEST_F(SocketFailure, streamSocketCannotBeCreated)
{
    fakeSystem.socketFails = true;
    orv::OrvUdpSocket socket(mPort);
    EXPECT_FALSE(socket.open());
    EXPECT_EQ(socket.lastError(), "Can't create socket");
    EXPECT_FALSE(socket.isOpen());

    fakeSystem.socketFails = false;
    EXPECT_TRUE(socket.reopen(0));
}

TEST_F(SocketFailure, addressReuseCannotBeSet)
{
    fakeSystem.failingOption = SO_REUSEADDR;
    orv::OrvUdpSocket socket(mPort);
    EXPECT_FALSE(socket.open());
    EXPECT_EQ(socket.lastError(), "Can't set receive timeout");
    EXPECT_FALSE(socket.isOpen());
    EXPECT_EQ(openDescriptors(), mBefore);
}

TEST_F(SocketFailure, receiveTimeoutCannotBeSet)
{
    orv::OrvUdpSocket socket(mPort);
    ASSERT_TRUE(socket.open());
    fakeSystem.failingOption = SO_RCVTIMEO;
    Bytes datagram;
    EXPECT_FALSE(socket.receive(datagram, 1));
    EXPECT_EQ(socket.lastError(), "Can't set receive timeout option");
    EXPECT_TRUE(socket.isOpen());
}

TEST_F(SocketFailure, controlSocketCannotBeCreated)
{
    fakeSystem.socketFails = true;
    orv::OrvCtrlSocket socket("127.0.0.1", mPort);
    EXPECT_FALSE(socket.isOpen());
    EXPECT_EQ(socket.lastError(), "Can't create socket");

    Bytes buffer = {1};
    EXPECT_FALSE(socket.sendReceive(buffer));
    EXPECT_EQ(socket.lastError(), "send error");

    fakeSystem.socketFails = false;
    EXPECT_TRUE(socket.reconnect("", 0));
    EXPECT_TRUE(socket.isOpen());
}

TEST_F(SocketFailure, controlSocketWithoutItsTimeoutSaysSo)
{
    orv::OrvCtrlSocket socket("127.0.0.1", mPort);
    fakeSystem.failingOption = SO_RCVTIMEO;
    EXPECT_FALSE(socket.setReceiveTimeout(100));
    EXPECT_FALSE(socket.applyReceiveTimeout());
    EXPECT_EQ(socket.lastError(), "");
}

TEST_F(Interruption, doesNotEndTheWaitForAReply)
{
    orv::DatagramSocket socket;
    ASSERT_TRUE(socket.create() && socket.bindToAnyAddress(mPort));
    LoopbackPeer().sendTo(mPort, {7});
    fakeSystem.interruptedReceives = 3;
    Bytes buffer(4);
    EXPECT_EQ(socket.receiveUntil(Clock::now() + std::chrono::seconds(5), buffer), 1U);
    EXPECT_EQ(buffer.front(), 7);
}

TEST_F(Interruption, withoutEndDoesNotLengthenTheWait)
{
    orv::OrvCtrlSocket socket("127.0.0.1", mPort);
    socket.setReceiveTimeout(20);
    fakeSystem.interruptedReceives = 1'000'000'000;
    Bytes buffer = {1};
    EXPECT_FALSE(socket.sendReceive(buffer));
    EXPECT_EQ(socket.lastError(), "receive timeout");
    EXPECT_GT(fakeSystem.interruptedReceives, 0);
}

TEST_F(Interruption, doesNotEndTheWaitForAStream)
{
    orv::OrvUdpSocket socket(mPort);
    ASSERT_TRUE(socket.open());
    LoopbackPeer().sendTo(mPort, {7});
    fakeSystem.interruptedReceives = 3;
    Bytes datagram;
    EXPECT_TRUE(socket.receive(datagram, 5000));
    EXPECT_EQ(datagram, Bytes{7});
}

TEST_F(ControlDrain, waitsForLateRepliesBeforeTheFirstRequestAndAfterATimeout)
{
    LoopbackPeer silentEcu;
    orv::OrvCtrlSocket socket("127.0.0.1", silentEcu.port());
    socket.setReceiveTimeout(20);
    for (int i = 0; i < 2; ++i) {
        Bytes buffer = {1};
        EXPECT_FALSE(socket.sendReceive(buffer));
    }
    EXPECT_EQ(fakeSystem.waitsMs, (std::vector<int>{5, 5}));
    EXPECT_EQ(fakeSystem.receiveTimeoutsMs, (std::vector<std::uint32_t>{500, 20}));
}

TEST_F(ControlDrain, onlyLooksAfterAnExchangeThatSucceeded)
{
    LoopbackPeer ecu;
    orv::OrvCtrlSocket socket("127.0.0.1", ecu.port());
    fakeSystem.isFlooded = true;
    Bytes buffer = {1};
    ASSERT_TRUE(socket.sendReceive(buffer));
    fakeSystem.isFlooded = false;
    fakeSystem.waitsMs.clear();
    socket.setReceiveTimeout(1);
    socket.sendReceive(buffer);
    EXPECT_EQ(fakeSystem.waitsMs, std::vector<int>{0});
}

TEST_F(ControlDrain, endsInAnEndlessFlood)
{
    LoopbackPeer ecu;
    orv::OrvCtrlSocket socket("127.0.0.1", ecu.port());
    fakeSystem.isFlooded = true;
    for (std::uint8_t request = 1; request <= 2; ++request) {
        Bytes buffer = {request};
        EXPECT_TRUE(socket.sendReceive(buffer));
        EXPECT_EQ(buffer, Bytes{0xEE});
    }
    EXPECT_FALSE(fakeSystem.isFloodOver);

    fakeSystem.isFlooded = false;
    EXPECT_EQ(ecu.receive(5000), Bytes{1});
    EXPECT_EQ(ecu.receive(5000), Bytes{2});
}

} // namespace
