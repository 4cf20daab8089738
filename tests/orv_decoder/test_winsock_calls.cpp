#include "orv_decoder/DatagramSocket.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "orv_decoder/OrvUdpSocket.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/native_sockets.h"

#include <gtest/gtest.h>

#include <chrono>
#include <mswsock.h>
#include <thread>
#include <vector>

// Winsock's functions are called through pointers that the linker provides; those below take their
// place. So the library meets what Winsock does also under Wine, which has another system's sockets
// below it and never reports a port that nobody holds.
namespace {

using Bytes = std::vector<std::uint8_t>;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kLongMs = 5000;
constexpr int kNoError = 0;

struct System
{
    int receiveError = kNoError; // of the next receives
    int failingReceives = 0;
    int receiveCount = 0;
    std::vector<DWORD> controlCodes; // of switches that were turned off
    bool optionsFail = false;
};

System fakeSystem;

template<typename Function>
Function winsock(const char* name)
{
    const auto library = ::LoadLibraryA("ws2_32.dll");
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}

int WSAAPI receiveFrom(SOCKET handle, char* buffer, int size, int flags, sockaddr* sender,
                       int* senderSize)
{
    static const auto real = winsock<decltype(&receiveFrom)>("recvfrom");
    // The other end of the test asks for its sender; the control channel does not.
    if (sender)
        return real(handle, buffer, size, flags, sender, senderSize);
    ++fakeSystem.receiveCount;
    if (fakeSystem.failingReceives == 0)
        return real(handle, buffer, size, flags, sender, senderSize);
    --fakeSystem.failingReceives;
    WSASetLastError(fakeSystem.receiveError);
    return SOCKET_ERROR;
}

int WSAAPI control(SOCKET, DWORD code, void* in, DWORD, void*, DWORD, DWORD*, WSAOVERLAPPED*,
                   LPWSAOVERLAPPED_COMPLETION_ROUTINE)
{
    if (*static_cast<const BOOL*>(in) == FALSE)
        fakeSystem.controlCodes.push_back(code);
    return 0;
}

int WSAAPI setOption(SOCKET handle, int level, int option, const char* value, int size)
{
    static const auto real = winsock<decltype(&setOption)>("setsockopt");
    return fakeSystem.optionsFail ? SOCKET_ERROR : real(handle, level, option, value, size);
}

} // namespace

extern "C" {
extern decltype(&receiveFrom) const replacedReceiveFrom __asm__("__imp_recvfrom");
extern decltype(&control) const replacedControl __asm__("__imp_WSAIoctl");
extern decltype(&setOption) const replacedSetOption __asm__("__imp_setsockopt");
decltype(&receiveFrom) const replacedReceiveFrom = receiveFrom;
decltype(&control) const replacedControl = control;
decltype(&setOption) const replacedSetOption = setOption;
}

namespace {

class WinsockCalls : public testing::Test
{
protected:
    WinsockCalls() { fakeSystem = {}; }
    ~WinsockCalls() override { fakeSystem = {}; }

    static void failReceives(int count, int error)
    {
        fakeSystem.failingReceives = count;
        fakeSystem.receiveError = error;
        fakeSystem.receiveCount = 0;
    }

    static bool isHeldAlone(const orv::DatagramSocket& socket)
    {
        BOOL isAlone = FALSE;
        int size = sizeof isAlone;
        ::getsockopt(static_cast<SOCKET>(socket.handle()), SOL_SOCKET, SO_EXCLUSIVEADDRUSE,
                     reinterpret_cast<char*>(&isAlone), &size);
        return isAlone == TRUE;
    }

    const std::uint16_t mPort = freeUdpPort();
};

using AbsentEcu = WinsockCalls;

TEST_F(AbsentEcu, isNotToBeReportedByTheSystem)
{
    fakeSystem.controlCodes.clear();
    const orv::OrvCtrlSocket socket("127.0.0.1", mPort);
    EXPECT_EQ(fakeSystem.controlCodes, std::vector<DWORD>{SIO_UDP_CONNRESET});
}

// What a system reports that does not know the switch.
TEST_F(AbsentEcu, doesNotEndTheWaitForAReply)
{
    for (const int error : {WSAECONNRESET, WSAENETRESET}) {
        LoopbackPeer ecu;
        orv::OrvCtrlSocket socket("127.0.0.1", ecu.port());
        socket.setReceiveTimeout(kLongMs);
        std::thread answer([&ecu] {
            if (ecu.receive(static_cast<int>(kLongMs)))
                ecu.reply({7});
        });
        failReceives(3, error);
        Bytes buffer = {1};
        EXPECT_TRUE(socket.sendReceive(buffer)) << error;
        answer.join();
        EXPECT_EQ(buffer, Bytes{7});
        EXPECT_EQ(fakeSystem.receiveCount, 4);
    }
}

TEST_F(AbsentEcu, endsInTheTimeoutAndNotBefore)
{
    orv::OrvCtrlSocket socket("127.0.0.1", mPort);
    socket.setReceiveTimeout(60);
    failReceives(1, WSAECONNRESET);
    const auto start = Clock::now();
    Bytes buffer = {1};
    EXPECT_FALSE(socket.sendReceive(buffer));
    EXPECT_EQ(socket.lastError(), "receive timeout");
    EXPECT_GE(Clock::now() - start, 60ms);
    EXPECT_EQ(fakeSystem.receiveCount, 1); // the rest of the time is waited for a datagram
}

// Each report finds a datagram behind it: only the deadline ends this.
TEST_F(AbsentEcu, reportedWithoutEndDoesNotLengthenTheWait)
{
    orv::DatagramSocket socket;
    ASSERT_TRUE(socket.startUp() && socket.create() && socket.bindToAnyAddress(mPort));
    LoopbackPeer().sendTo(mPort, {1});
    failReceives(1'000'000'000, WSAECONNRESET);
    Bytes buffer(1);
    EXPECT_FALSE(socket.receiveUntil(Clock::now() + 20ms, buffer));
    EXPECT_GT(fakeSystem.receiveCount, 1);
    EXPECT_GT(fakeSystem.failingReceives, 0);
}

TEST_F(WinsockCalls, otherErrorEndsTheWaitAtOnce)
{
    orv::OrvCtrlSocket socket("127.0.0.1", mPort);
    socket.setReceiveTimeout(kLongMs);
    failReceives(1, WSAENOTSOCK);
    const auto start = Clock::now();
    Bytes buffer = {1};
    EXPECT_FALSE(socket.sendReceive(buffer));
    EXPECT_EQ(socket.lastError(), "receive timeout");
    EXPECT_LT(Clock::now() - start, 4s);
}

TEST_F(WinsockCalls, portIsAskedForAloneUnlessItIsShared)
{
    orv::DatagramSocket alone;
    ASSERT_TRUE(alone.startUp() && alone.create() && alone.bindToAnyAddress(mPort));
    EXPECT_TRUE(isHeldAlone(alone));
    orv::DatagramSocket sharing;
    ASSERT_TRUE(sharing.startUp() && sharing.create() && sharing.setReuseAddress());
    ASSERT_TRUE(sharing.bindToAnyAddress(freeUdpPort()));
    EXPECT_FALSE(isHeldAlone(sharing));
}

TEST_F(WinsockCalls, portIsNotHadWhenItCannotBeHadAlone)
{
    orv::DatagramSocket socket;
    ASSERT_TRUE(socket.startUp() && socket.create());
    fakeSystem.optionsFail = true;
    EXPECT_FALSE(socket.bindToAnyAddress(mPort));
}

TEST_F(WinsockCalls, addressReuseCannotBeSet)
{
    fakeSystem.optionsFail = true;
    orv::OrvUdpSocket socket(mPort);
    EXPECT_FALSE(socket.open());
    EXPECT_EQ(socket.lastError(), "Can't set receive timeout");
    EXPECT_FALSE(socket.isOpen());
}

TEST_F(WinsockCalls, receiveTimeoutCannotBeSet)
{
    orv::OrvUdpSocket socket(mPort);
    ASSERT_TRUE(socket.open());
    fakeSystem.optionsFail = true;
    Bytes datagram;
    EXPECT_FALSE(socket.receive(datagram, 1));
    EXPECT_EQ(socket.lastError(), "Can't set receive timeout option");
    EXPECT_TRUE(socket.isOpen());
}

} // namespace
