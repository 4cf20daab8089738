#pragma once

#include "orv_decoder/FailureReason.h"

#include <cstdint>
#include <vector>

namespace orv {

/// Carries one control request to the ECU and its reply back. Nothing throws; a failure leaves
/// its reason in lastError().
class OrvCtrlSocketBase : public FailureReason
{
public:
    OrvCtrlSocketBase() = default;
    virtual ~OrvCtrlSocketBase() = default;
    OrvCtrlSocketBase(const OrvCtrlSocketBase&) = delete;
    OrvCtrlSocketBase& operator=(const OrvCtrlSocketBase&) = delete;

    /// Sends the request in `buffer` and replaces it by the reply.
    virtual bool sendReceive(std::vector<std::uint8_t>& buffer) = 0;

    /// Bounds the wait for the next replies until applyReceiveTimeout(); see ShortTimeout.
    virtual bool setReceiveTimeout(std::uint32_t timeoutMs) = 0;

    /// Goes back to the configured timeout.
    virtual bool applyReceiveTimeout() { return setReceiveTimeout(mReceiveTimeoutMs); }

    /// The configured timeout: the wait for a reply that nobody has shortened.
    std::uint32_t receiveTimeoutMs() const { return mReceiveTimeoutMs; }

    /// Replaces `buffer` by the next datagram that comes within what the last request has left of
    /// its timeout, when what came first cannot be the answer to it. A channel that knows of no
    /// other datagram says "receive timeout".
    virtual bool receiveAnother(std::vector<std::uint8_t>& buffer)
    {
        buffer.clear();
        return fail("receive timeout");
    }

private:
    const std::uint32_t mReceiveTimeoutMs = 500;
};

} // namespace orv
