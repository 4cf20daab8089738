#pragma once

#include "orv_decoder/OrvCtrlSocketBase.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

/// A control channel without a network: hands out the replies that a test queued and keeps every
/// request. Without a queued reply the exchange ends in "receive timeout".
class ScriptedControlSocket : public orv::OrvCtrlSocketBase
{
public:
    /// Queues a correct reply frame.
    void queueReply(std::uint8_t code, const std::vector<std::uint8_t>& payload,
                    std::uint8_t status = 0);
    /// Queues bytes as they are.
    void queueRaw(std::vector<std::uint8_t> frame);
    /// Queues one exchange that fails.
    void queueTimeout();

    /// Every request frame so far, checksum included.
    const std::vector<std::vector<std::uint8_t>>& requests() const { return mRequests; }

    /// The timeouts that were set, in order.
    const std::vector<std::uint32_t>& timeouts() const { return mTimeouts; }

    bool sendReceive(std::vector<std::uint8_t>& buffer) override;
    bool setReceiveTimeout(std::uint32_t timeoutMs) override;

private:
    std::deque<std::optional<std::vector<std::uint8_t>>> mReplies;
    std::vector<std::vector<std::uint8_t>> mRequests;
    std::vector<std::uint32_t> mTimeouts;
};
