#include "orv_decoder/DatagramSocket.h"

#include "orv_decoder/native_socket.h"

#include <algorithm>

namespace orv {

namespace {

sockaddr_in socketAddress(std::uint32_t address, std::uint16_t port)
{
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    result.sin_addr.s_addr = address;
    return result;
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
        native::stopSocketSystem();
}

bool DatagramSocket::startUp()
{
    if (!mStarted)
        mStarted = native::startSocketSystem();
    return mStarted;
}

bool DatagramSocket::create()
{
    close();
    mSharesAddress = false;
    mHandle = static_cast<std::intptr_t>(native::createSocket());
    return mHandle != kNoSocket;
}

void DatagramSocket::close()
{
    if (mHandle == kNoSocket)
        return;
    native::closeSocket(static_cast<native::Socket>(mHandle));
    mHandle = kNoSocket;
}

bool DatagramSocket::setReuseAddress()
{
    mSharesAddress =
        native::setSocketOption(static_cast<native::Socket>(mHandle), SO_REUSEADDR, int{1});
    return mSharesAddress;
}

bool DatagramSocket::bindToAnyAddress(std::uint16_t port)
{
    const auto handle = static_cast<native::Socket>(mHandle);
    if (!mSharesAddress && !native::refuseToShareAddress(handle))
        return false;
    const sockaddr_in address = socketAddress(htonl(INADDR_ANY), port);
    return ::bind(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

bool DatagramSocket::setReceiveTimeout(std::uint32_t timeoutMs)
{
    return native::setReceiveTimeout(static_cast<native::Socket>(mHandle), std::max(timeoutMs, 1U));
}

std::string DatagramSocket::systemError()
{
    return native::lastErrorText();
}

bool DatagramSocket::waitForDatagram(std::uint32_t timeoutMs) const
{
    return mHandle != kNoSocket &&
           native::isReadable(static_cast<native::Socket>(mHandle), timeoutMs);
}

bool DatagramSocket::waitUntil(Clock::time_point deadline) const
{
    using std::chrono::milliseconds;
    auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    while (left > milliseconds::zero()) {
        if (waitForDatagram(static_cast<std::uint32_t>(left.count())))
            return true;
        if (mHandle == kNoSocket)
            return false;
        left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    }
    return false;
}

std::optional<std::size_t> DatagramSocket::receive(std::span<std::uint8_t> buffer,
                                                   Ipv4Endpoint* sender)
{
    auto received = receiveOnce(buffer, sender);
    while (!received && native::wasInterrupted())
        received = receiveOnce(buffer, sender);
    return received;
}

std::optional<std::size_t> DatagramSocket::receiveUntil(Clock::time_point deadline,
                                                        std::span<std::uint8_t> buffer)
{
    auto received = receiveOnce(buffer, nullptr);
    while (!received && native::wasDisturbed() && waitUntil(deadline))
        received = receiveOnce(buffer, nullptr);
    return received;
}

std::optional<std::size_t> DatagramSocket::receiveOnce(std::span<std::uint8_t> buffer,
                                                       Ipv4Endpoint* sender)
{
    sockaddr_in from{};
    native::Length fromSize = sizeof from;
    // An address that nobody asks for is not copied.
    auto* address = sender ? reinterpret_cast<sockaddr*>(&from) : nullptr;
    const auto count = ::recvfrom(
        static_cast<native::Socket>(mHandle), reinterpret_cast<char*>(buffer.data()),
        static_cast<native::Size>(buffer.size()), 0, address, sender ? &fromSize : nullptr);
    if (sender)
        *sender = {.address = from.sin_addr.s_addr, .port = ntohs(from.sin_port)};
    if (count < 0 && native::wasCut())
        return buffer.size();
    if (count < 0)
        return std::nullopt;
    return static_cast<std::size_t>(count);
}

bool DatagramSocket::send(std::span<const std::uint8_t> datagram, const Ipv4Endpoint& destination)
{
    const sockaddr_in address = socketAddress(destination.address, destination.port);
    const auto count = ::sendto(static_cast<native::Socket>(mHandle),
                                reinterpret_cast<const char*>(datagram.data()),
                                static_cast<native::Size>(datagram.size()), 0,
                                reinterpret_cast<const sockaddr*>(&address), sizeof address);
    return count >= 0 && static_cast<std::size_t>(count) == datagram.size();
}

} // namespace orv
