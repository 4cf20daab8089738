#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace orv {

/// One end of a datagram's way.
struct Ipv4Endpoint
{
    std::uint32_t address = 0xFFFFFFFF; ///< in network byte order, as the system converts it
    std::uint16_t port = 0;             ///< in the order of the host
};

/// Converts dotted text; text that is no address yields 255.255.255.255, which no socket of this
/// library may send to.
Ipv4Endpoint ipv4Endpoint(const std::string& address, std::uint16_t port);

/// One IPv4 UDP socket of the operating system. Its descriptor is released when the object ends.
class DatagramSocket
{
public:
    using Clock = std::chrono::steady_clock; ///< of the deadlines

    DatagramSocket() = default;
    ~DatagramSocket();
    DatagramSocket(const DatagramSocket&) = delete;
    DatagramSocket& operator=(const DatagramSocket&) = delete;

    /// Starts the socket system; cannot fail where the platform has no start-up.
    bool startUp();

    bool create();          ///< anew; false when the system refuses
    void close();           ///< without a socket it does nothing
    bool setReuseAddress(); ///< to be set before the bind

    /// Fails while somebody else has the port, unless both have asked for address reuse.
    bool bindToAnyAddress(std::uint16_t port);

    /// What the system says about a call that has just failed.
    static std::string systemError();

    /// Bounds every later receive; 0 counts as 1 ms because both platforms read 0 as "for ever".
    bool setReceiveTimeout(std::uint32_t timeoutMs);

    /// Receives one datagram, cut to the buffer; returns its bytes, which may be none, and nothing
    /// on error or timeout.
    /// @param sender takes where it came from, unless it is null
    std::optional<std::size_t> receive(std::span<std::uint8_t> buffer,
                                       Ipv4Endpoint* sender = nullptr);

    /// As receive(), but goes on waiting until `deadline` when something that is neither a datagram
    /// nor the time-out ends the wait: a signal, or word that nobody holds the port that an earlier
    /// datagram went to.
    std::optional<std::size_t> receiveUntil(Clock::time_point deadline,
                                            std::span<std::uint8_t> buffer);

    /// True as soon as a datagram waits; false when none came within `timeoutMs`, where 0 only
    /// looks, and without a socket.
    bool waitForDatagram(std::uint32_t timeoutMs) const;
    bool waitUntil(Clock::time_point deadline) const; ///< the same, until then

    /// False unless the whole datagram went out.
    bool send(std::span<const std::uint8_t> datagram, const Ipv4Endpoint& destination);

    /// The system's name of the socket, for an event loop to wait on; -1 without a socket.
    std::intptr_t handle() const { return mHandle; }

private:
    // Wide enough for a SOCKET as well as for a file descriptor.
    static constexpr std::intptr_t kNoSocket = -1;

    std::optional<std::size_t> receiveOnce(std::span<std::uint8_t> buffer, Ipv4Endpoint* sender);

    std::intptr_t mHandle = kNoSocket;
    bool mStarted = false;
    bool mSharesAddress = false;
};

} // namespace orv
