#include "tests/support/LoopbackPeer.h"

#include "tests/support/native_sockets.h"

#include <array>
#include <stdexcept>

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

LoopbackPeer::LoopbackPeer(std::uint16_t port) : mHandle(native::openDatagramSocket())
{
    sockaddr_in address = loopback(port);
    native::Length size = sizeof address;
    if (!native::isOpen(mHandle) ||
        ::bind(mHandle, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::getsockname(mHandle, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        throw std::runtime_error("no loopback socket");
    mPort = ntohs(address.sin_port);
}

LoopbackPeer::~LoopbackPeer()
{
    native::close(mHandle);
}

void LoopbackPeer::sendTo(std::uint16_t port, const std::vector<std::uint8_t>& datagram)
{
    const sockaddr_in address = loopback(port);
    const auto sent = ::sendto(mHandle, reinterpret_cast<const char*>(datagram.data()),
                               static_cast<native::Size>(datagram.size()), 0,
                               reinterpret_cast<const sockaddr*>(&address), sizeof address);
    if (sent < 0 || static_cast<std::size_t>(sent) != datagram.size())
        throw std::runtime_error("loopback send failed");
}

void LoopbackPeer::reply(const std::vector<std::uint8_t>& datagram)
{
    sendTo(mLastSenderPort, datagram);
}

std::optional<std::vector<std::uint8_t>> LoopbackPeer::receive(int timeoutMs)
{
    if (!native::isReadable(mHandle, timeoutMs))
        return std::nullopt;
    std::array<std::uint8_t, 65536> buffer;
    sockaddr_in sender{};
    native::Length size = sizeof sender;
    const auto received = ::recvfrom(mHandle, reinterpret_cast<char*>(buffer.data()),
                                     static_cast<native::Size>(buffer.size()), 0,
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
