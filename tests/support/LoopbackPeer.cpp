#include "tests/support/LoopbackPeer.h"

#include <arpa/inet.h>
#include <array>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace {

sockaddr_in loopback(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace

LoopbackPeer::LoopbackPeer(std::uint16_t port)
    : mHandle(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address = loopback(port);
    socklen_t size = sizeof address;
    if (mHandle < 0 || ::bind(mHandle, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::getsockname(mHandle, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        throw std::runtime_error("no loopback socket");
    mPort = ntohs(address.sin_port);
}

LoopbackPeer::~LoopbackPeer()
{
    ::close(mHandle);
}

void LoopbackPeer::sendTo(std::uint16_t port, const std::vector<std::uint8_t>& datagram)
{
    const sockaddr_in address = loopback(port);
    const auto sent = ::sendto(mHandle, datagram.data(), datagram.size(), 0,
                               reinterpret_cast<const sockaddr*>(&address), sizeof address);
    if (sent != static_cast<ssize_t>(datagram.size()))
        throw std::runtime_error("loopback send failed");
}

void LoopbackPeer::reply(const std::vector<std::uint8_t>& datagram)
{
    sendTo(mLastSenderPort, datagram);
}

std::optional<std::vector<std::uint8_t>> LoopbackPeer::receive(int timeoutMs)
{
    pollfd waiting{.fd = mHandle, .events = POLLIN, .revents = 0};
    if (::poll(&waiting, 1, timeoutMs) != 1)
        return std::nullopt;
    std::array<std::uint8_t, 65536> buffer;
    sockaddr_in sender{};
    socklen_t size = sizeof sender;
    const auto received = ::recvfrom(mHandle, buffer.data(), buffer.size(), 0,
                                     reinterpret_cast<sockaddr*>(&sender), &size);
    if (received < 0)
        return std::nullopt;
    mLastSenderPort = ntohs(sender.sin_port);
    return std::vector<std::uint8_t>(buffer.begin(), buffer.begin() + received);
}

std::uint16_t freeUdpPort()
{
    return LoopbackPeer().port();
}
