#pragma once

#include "orv_decoder/OrvCtrlSocketBase.h"

#include <cstdint>
#include <deque>
#include <vector>

/// A control channel without a network: hands out the replies that a test queued and keeps every
/// request. Without a queued reply the exchange ends in "receive timeout".
class ScriptedControlSocket : public orv::OrvCtrlSocketBase
{
public:
    /// Queues the correct reply frame of one exchange.
    void queueReply(std::uint8_t code, const std::vector<std::uint8_t>& payload,
                    std::uint8_t status = 0);
    /// Queues bytes as they are for one exchange.
    void queueRaw(std::vector<std::uint8_t> frame);
    /// Queues one exchange that fails.
    void queueTimeout();

    /// Lets this correct reply come too, in the exchange that was queued last.
    void alsoReply(std::uint8_t code, const std::vector<std::uint8_t>& payload,
                   std::uint8_t status = 0);
    /// The same for bytes as they are.
    void alsoRaw(std::vector<std::uint8_t> frame);

    /// Every request frame so far, checksum included.
    const std::vector<std::vector<std::uint8_t>>& requests() const { return mRequests; }

    /// The timeouts that were set, in order.
    const std::vector<std::uint32_t>& timeouts() const { return mTimeouts; }

    bool sendReceive(std::vector<std::uint8_t>& buffer) override;
    bool setReceiveTimeout(std::uint32_t timeoutMs) override;
    bool receiveAnother(std::vector<std::uint8_t>& buffer) override;

private:
    using Datagrams = std::deque<std::vector<std::uint8_t>>;

    std::deque<Datagrams> mExchanges;
    Datagrams mArrived; // in the present exchange, not handed out yet
    std::vector<std::vector<std::uint8_t>> mRequests;
    std::vector<std::uint32_t> mTimeouts;
};
