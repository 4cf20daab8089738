#include "orv_decoder/DatagramSocket.h"

#include <algorithm>
#include <system_error>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#define _WINSOCK_DEPRECATED_NO_WARNINGS
#include <winsock2.h>
#else
#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#endif

namespace orv {

namespace {

#ifdef _WIN32

using NativeSocket = SOCKET;
using NativeSize = int;
using NativeLength = int;

bool startSocketSystem()
{
    WSADATA data;
    const bool started = WSAStartup(MAKEWORD(2, 0), &data) == 0;
    if (!started)
        WSACleanup();
    return started;
}

void stopSocketSystem()
{
    WSACleanup();
}

NativeSocket createSocket()
{
    return ::socket(AF_INET, SOCK_DGRAM, 0);
}

void closeSocket(NativeSocket handle)
{
    ::closesocket(handle);
}

DWORD timeoutValue(std::uint32_t timeoutMs)
{
    return timeoutMs;
}

int lastErrorCode()
{
    return WSAGetLastError();
}

// Winsock calls a datagram that was cut to the buffer an error.
bool wasCut()
{
    return lastErrorCode() == WSAEMSGSIZE;
}

bool wasInterrupted()
{
    return false;
}

bool isReadable(NativeSocket handle, std::uint32_t timeoutMs)
{
    WSAPOLLFD entry{.fd = handle, .events = POLLRDNORM, .revents = 0};
    return WSAPoll(&entry, 1, static_cast<INT>(timeoutMs)) > 0;
}

#else

using NativeSocket = int;
using NativeSize = std::size_t;
using NativeLength = socklen_t;

bool startSocketSystem()
{
    return true;
}

void stopSocketSystem() {}

NativeSocket createSocket()
{
    return ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
}

void closeSocket(NativeSocket handle)
{
    ::close(handle);
}

timeval timeoutValue(std::uint32_t timeoutMs)
{
    timeval value{};
    value.tv_sec = static_cast<decltype(value.tv_sec)>(timeoutMs / 1000);
    value.tv_usec = static_cast<decltype(value.tv_usec)>(timeoutMs % 1000 * 1000);
    return value;
}

int lastErrorCode()
{
    return errno;
}

bool wasCut()
{
    return false;
}

// By a signal, which the program has answered by now.
bool wasInterrupted()
{
    return lastErrorCode() == EINTR;
}

bool isReadable(NativeSocket handle, std::uint32_t timeoutMs)
{
    pollfd entry{.fd = handle, .events = POLLIN, .revents = 0};
    return ::poll(&entry, 1, static_cast<int>(timeoutMs)) > 0;
}

#endif

sockaddr_in socketAddress(std::uint32_t address, std::uint16_t port)
{
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    result.sin_addr.s_addr = address;
    return result;
}

template<typename Value>
bool setSocketOption(std::intptr_t handle, int option, const Value& value)
{
    return ::setsockopt(static_cast<NativeSocket>(handle), SOL_SOCKET, option,
                        reinterpret_cast<const char*>(&value), sizeof value) == 0;
}

} // namespace

Ipv4Endpoint ipv4Endpoint(const std::string& address, std::uint16_t port)
{
    return {.address = ::inet_addr(address.c_str()), .port = port};
}

DatagramSocket::~DatagramSocket()
{
    close();
    if (mStarted)
        stopSocketSystem();
}

bool DatagramSocket::startUp()
{
    if (!mStarted)
        mStarted = startSocketSystem();
    return mStarted;
}

bool DatagramSocket::create()
{
    close();
    mHandle = static_cast<std::intptr_t>(createSocket());
    return mHandle != kNoSocket;
}

void DatagramSocket::close()
{
    if (mHandle == kNoSocket)
        return;
    closeSocket(static_cast<NativeSocket>(mHandle));
    mHandle = kNoSocket;
}

bool DatagramSocket::setReuseAddress()
{
    return setSocketOption(mHandle, SO_REUSEADDR, int{1});
}

bool DatagramSocket::bindToAnyAddress(std::uint16_t port)
{
    const sockaddr_in address = socketAddress(htonl(INADDR_ANY), port);
    return ::bind(static_cast<NativeSocket>(mHandle), reinterpret_cast<const sockaddr*>(&address),
                  sizeof address) == 0;
}

bool DatagramSocket::setReceiveTimeout(std::uint32_t timeoutMs)
{
    return setSocketOption(mHandle, SO_RCVTIMEO, timeoutValue(std::max(timeoutMs, 1U)));
}

std::string DatagramSocket::systemError()
{
    return std::system_category().message(lastErrorCode());
}

bool DatagramSocket::waitForDatagram(std::uint32_t timeoutMs) const
{
    return mHandle != kNoSocket && isReadable(static_cast<NativeSocket>(mHandle), timeoutMs);
}

std::optional<std::size_t> DatagramSocket::receive(std::span<std::uint8_t> buffer,
                                                   Ipv4Endpoint* sender)
{
    sockaddr_in from{};
    NativeLength fromSize = sizeof from;
    // An address that nobody asks for is not copied.
    auto* address = sender ? reinterpret_cast<sockaddr*>(&from) : nullptr;
    const auto receiveOnce = [&] {
        return ::recvfrom(
            static_cast<NativeSocket>(mHandle), reinterpret_cast<char*>(buffer.data()),
            static_cast<NativeSize>(buffer.size()), 0, address, sender ? &fromSize : nullptr);
    };
    auto count = receiveOnce();
    while (count < 0 && wasInterrupted())
        count = receiveOnce();
    if (sender)
        *sender = {.address = from.sin_addr.s_addr, .port = ntohs(from.sin_port)};
    if (count < 0 && wasCut())
        return buffer.size();
    if (count < 0)
        return std::nullopt;
    return static_cast<std::size_t>(count);
}

bool DatagramSocket::send(std::span<const std::uint8_t> datagram, const Ipv4Endpoint& destination)
{
    const sockaddr_in address = socketAddress(destination.address, destination.port);
    const auto count =
        ::sendto(static_cast<NativeSocket>(mHandle), reinterpret_cast<const char*>(datagram.data()),
                 static_cast<NativeSize>(datagram.size()), 0,
                 reinterpret_cast<const sockaddr*>(&address), sizeof address);
    return count >= 0 && static_cast<std::size_t>(count) == datagram.size();
}

} // namespace orv
