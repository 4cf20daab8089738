#pragma once

#include "orv_decoder/DatagramSocket.h"
#include "orv_decoder/OrvSocketBase.h"
#include "orv_decoder/constants.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orv {

/// Receives the datagrams of one live stream on a local port. Used by one thread at a time.
class OrvUdpSocket : public OrvSocketBase
{
public:
    /// Opens nothing yet.
    explicit OrvUdpSocket(std::uint16_t port) : mPort(port) {}

    std::uint16_t port() const { return mPort; } ///< the local one
    bool isOpen() const { return mOpen; }        ///< whether the port is bound

    /// Binds the port on every local address. Errors: "Can't start win sock",
    /// "Can't create socket", "Can't set receive timeout" (address reuse), "Can't bind socket".
    bool open() override;

    /// What the system said when open() failed last.
    const std::string& systemReason() const { return mSystemReason; }

    /// Closes and opens again, which discards what the system had buffered.
    /// @param port the new local port; 0 keeps the current one
    bool reopen(std::uint16_t port);

    /// Receives at most kMaxDatagramSize bytes from any sender. Errors:
    /// "Can't set receive timeout option", "receive error" (timeout included). On a closed socket
    /// it fails without a reason.
    bool receive(std::vector<std::uint8_t>& datagram, std::uint32_t timeoutMs) override;

    /// Where the last datagram came from.
    const Ipv4Endpoint& lastSender() const { return mLastSender; }

    /// For an event loop to wait on; -1 on a closed socket.
    std::intptr_t handle() const { return mSocket.handle(); }

    /// True as soon as a datagram waits, an empty one included; false when none came within
    /// `timeoutMs`, where 0 only looks, and at once on a closed socket.
    bool waitForDatagram(std::uint32_t timeoutMs) const;

protected:
    /// Notes that the port cannot be had and why; returns false.
    bool failToBind(std::string systemReason);

private:
    bool createAndBind();
    bool setTimeout(std::uint32_t timeoutMs);

    std::uint16_t mPort;
    bool mOpen = false;
    std::string mSystemReason;
    std::optional<std::uint32_t> mTimeoutMs; // as it is set
    std::array<std::uint8_t, kMaxDatagramSize> mBuffer;
    Ipv4Endpoint mLastSender;
    DatagramSocket mSocket;
};

} // namespace orv
