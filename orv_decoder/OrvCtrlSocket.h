#pragma once

#include "orv_decoder/DatagramSocket.h"
#include "orv_decoder/OrvCtrlSocketBase.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace orv {

/// The control channel to one ECU over UDP. It is never bound: the system picks its local port.
/// Used on one thread only.
class OrvCtrlSocket : public OrvCtrlSocketBase
{
public:
    /// Opens at once; a failure ("Can't start win sock API", "Can't create socket") shows only in
    /// lastError().
    /// @param address dotted IPv4 text of the ECU
    OrvCtrlSocket(std::string address, std::uint16_t port);

    bool isOpen() const { return mOpen; }                   ///< whether open() succeeded last
    const std::string& address() const { return mAddress; } ///< of the ECU, as given
    std::uint16_t port() const { return mPort; }            ///< of the ECU

    bool open(); ///< anew; the constructor has opened it once

    /// Points the channel at another ECU; an empty address or a port of 0 keeps the current one.
    bool reconnect(const std::string& address, std::uint16_t port);

    /// Discards what waits before it sends: what was there before the question is not the answer.
    /// A datagram without a byte is passed over. Errors: "send error"; "receive timeout", which
    /// also empties the buffer.
    bool sendReceive(std::vector<std::uint8_t>& buffer) override;

    /// Error: "receive timeout", which also empties the buffer.
    bool receiveAnother(std::vector<std::uint8_t>& buffer) override;

    bool setReceiveTimeout(std::uint32_t timeoutMs) override;

private:
    using Clock = std::chrono::steady_clock;

    void discardStaleReplies();
    bool receive(std::vector<std::uint8_t>& buffer);
    bool endWait(std::vector<std::uint8_t>& buffer);

    bool mOpen = false;
    // Set when a reply may still be on its way: it must not be taken for the next one's.
    bool mDrainBeforeNextSend = true;
    Clock::time_point mReplyDeadline; // of the request that was sent last
    std::uint32_t mCurrentTimeoutMs = receiveTimeoutMs();
    std::string mAddress;
    std::uint16_t mPort;
    DatagramSocket mSocket;
    Ipv4Endpoint mDestination;
};

} // namespace orv
