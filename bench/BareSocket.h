#pragma once

#include <cstdint>
#include <netinet/in.h>
#include <span>

/// The system's own calls on a UDP socket of 127.0.0.1 and nothing else: what the link library is
/// compared with. It blocks for ever; a failure of the system ends the program.
class BareSocket
{
public:
    BareSocket();
    ~BareSocket();
    BareSocket(const BareSocket&) = delete;
    BareSocket& operator=(const BareSocket&) = delete;

    std::uint16_t port() const { return ntohs(mAddress.sin_port); }
    const sockaddr_in& address() const { return mAddress; }

    /// The next datagram, cut to the buffer; its part of the buffer.
    std::span<const std::uint8_t> receive(std::span<std::uint8_t> buffer)
    {
        return receive(buffer, nullptr, nullptr);
    }

    std::span<const std::uint8_t> receiveFrom(sockaddr_in& sender, std::span<std::uint8_t> buffer)
    {
        socklen_t size = sizeof sender;
        return receive(buffer, reinterpret_cast<sockaddr*>(&sender), &size);
    }

    void send(std::span<const std::uint8_t> datagram, const sockaddr_in& destination);

private:
    std::span<const std::uint8_t> receive(std::span<std::uint8_t> buffer, sockaddr* sender,
                                          socklen_t* size);

    int mHandle;
    sockaddr_in mAddress{};
};

/// Where 127.0.0.1 listens on a port.
sockaddr_in loopbackAddress(std::uint16_t port);
