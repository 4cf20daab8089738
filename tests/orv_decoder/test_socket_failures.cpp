#include "orv_decoder/OrvCtrlSocket.h"
#include "orv_decoder/OrvUdpSocket.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/OpenDescriptors.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

// The linker takes these two in the place of the system's own, so that they can be told to fail.
namespace {

bool socketFails = false;
int failingOption = -1;

} // namespace

extern "C" int socket(int domain, int type, int protocol) noexcept
{
    return socketFails ? -1 : static_cast<int>(::syscall(SYS_socket, domain, type, protocol));
}

extern "C" int setsockopt(int handle, int level, int option, const void* value,
                          socklen_t size) noexcept
{
    if (option == failingOption)
        return -1;
    return static_cast<int>(::syscall(SYS_setsockopt, handle, level, option, value, size));
}

namespace {

class SocketFailure : public testing::Test
{
protected:
    ~SocketFailure() override
    {
        socketFails = false;
        failingOption = -1;
    }

    const std::uint16_t mPort = freeUdpPort();
    const std::set<int> mBefore = openDescriptors();
};

TEST_F(SocketFailure, streamSocketCannotBeCreated)
{
    socketFails = true;
    orv::OrvUdpSocket socket(mPort);
    EXPECT_FALSE(socket.open());
    EXPECT_EQ(socket.lastError(), "Can't create socket");
    EXPECT_FALSE(socket.isOpen());

    socketFails = false;
    EXPECT_TRUE(socket.reopen(0));
}

TEST_F(SocketFailure, addressReuseCannotBeSet)
{
    failingOption = SO_REUSEADDR;
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
    failingOption = SO_RCVTIMEO;
    std::vector<std::uint8_t> datagram;
    EXPECT_FALSE(socket.receive(datagram, 1));
    EXPECT_EQ(socket.lastError(), "Can't set receive timeout option");
    EXPECT_TRUE(socket.isOpen());
}

TEST_F(SocketFailure, controlSocketCannotBeCreated)
{
    socketFails = true;
    orv::OrvCtrlSocket socket("127.0.0.1", mPort);
    EXPECT_FALSE(socket.isOpen());
    EXPECT_EQ(socket.lastError(), "Can't create socket");

    std::vector<std::uint8_t> buffer = {1};
    EXPECT_FALSE(socket.sendReceive(buffer));
    EXPECT_EQ(socket.lastError(), "send error");

    socketFails = false;
    EXPECT_TRUE(socket.reconnect("", 0));
    EXPECT_TRUE(socket.isOpen());
}

TEST_F(SocketFailure, controlSocketWithoutItsTimeoutSaysSo)
{
    orv::OrvCtrlSocket socket("127.0.0.1", mPort);
    failingOption = SO_RCVTIMEO;
    EXPECT_FALSE(socket.setReceiveTimeout(100));
    EXPECT_FALSE(socket.applyReceiveTimeout());
    EXPECT_EQ(socket.lastError(), "");
}

} // namespace
