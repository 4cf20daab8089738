#pragma once

#include "orv_decoder/FailureReason.h"

#include <cstdint>
#include <vector>

namespace orv {

/// A source of live datagrams. Nothing throws; a failure leaves its reason in lastError().
class OrvSocketBase : public FailureReason
{
public:
    OrvSocketBase() = default;
    virtual ~OrvSocketBase() = default;
    OrvSocketBase(const OrvSocketBase&) = delete;
    OrvSocketBase& operator=(const OrvSocketBase&) = delete;

    /// True when the socket is open afterwards.
    virtual bool open() = 0;

    /// Replaces `datagram` by the next one that arrives within `timeoutMs`.
    virtual bool receive(std::vector<std::uint8_t>& datagram, std::uint32_t timeoutMs) = 0;
};

} // namespace orv
