#include "bench/BareSocket.h"

#include <cstdio>
#include <cstdlib>
#include <sys/socket.h>
#include <unistd.h>

namespace {

void endUnless(bool isDone, const char* call)
{
    if (isDone)
        return;
    std::perror(call);
    std::exit(EXIT_FAILURE);
}

} // namespace

sockaddr_in loopbackAddress(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

BareSocket::BareSocket() : mHandle(::socket(AF_INET, SOCK_DGRAM, 0)), mAddress(loopbackAddress(0))
{
    auto* address = reinterpret_cast<sockaddr*>(&mAddress);
    socklen_t size = sizeof mAddress;
    endUnless(mHandle >= 0, "socket");
    endUnless(::bind(mHandle, address, size) == 0, "bind");
    endUnless(::getsockname(mHandle, address, &size) == 0, "getsockname");
}

BareSocket::~BareSocket()
{
    ::close(mHandle);
}

void BareSocket::send(std::span<const std::uint8_t> datagram, const sockaddr_in& destination)
{
    const auto sent = ::sendto(mHandle, datagram.data(), datagram.size(), 0,
                               reinterpret_cast<const sockaddr*>(&destination), sizeof destination);
    endUnless(sent == static_cast<ssize_t>(datagram.size()), "sendto");
}

std::span<const std::uint8_t> BareSocket::receive(std::span<std::uint8_t> buffer, sockaddr* sender,
                                                  socklen_t* size)
{
    const auto count = ::recvfrom(mHandle, buffer.data(), buffer.size(), 0, sender, size);
    endUnless(count >= 0, "recvfrom");
    return buffer.first(static_cast<std::size_t>(count));
}
