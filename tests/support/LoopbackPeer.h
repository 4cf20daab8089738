#pragma once

#include "tests/support/native_sockets.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// A plain UDP socket on 127.0.0.1 with a port of its own: what stands at the other end of the
/// sockets under test.
class LoopbackPeer
{
public:
    /// @param port 0 for one that is free
    explicit LoopbackPeer(std::uint16_t port = 0);
    ~LoopbackPeer();
    LoopbackPeer(const LoopbackPeer&) = delete;
    LoopbackPeer& operator=(const LoopbackPeer&) = delete;

    std::uint16_t port() const { return mPort; }

    /// Where the last received datagram came from.
    std::uint16_t lastSenderPort() const { return mLastSenderPort; }

    /// Sends to a port of 127.0.0.1.
    void sendTo(std::uint16_t port, const std::vector<std::uint8_t>& datagram);

    /// Sends to whoever the last received datagram came from.
    void reply(const std::vector<std::uint8_t>& datagram);

    /// The next datagram, or nothing when none came within `timeoutMs`.
    std::optional<std::vector<std::uint8_t>> receive(int timeoutMs);

private:
    native::Socket mHandle;
    std::uint16_t mPort = 0;
    std::uint16_t mLastSenderPort = 0;
};

/// A UDP port of 127.0.0.1 that was free a moment ago.
std::uint16_t freeUdpPort();
