#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace orv {

/// A source of live datagrams. Nothing throws; a failure leaves its reason in lastError().
class OrvSocketBase
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

    /// Reason of the last failure; successes leave it in place.
    std::string lastError() const { return mLastError; }

protected:
    /// Keeps the reason and returns false.
    bool fail(std::string reason)
    {
        mLastError = std::move(reason);
        return false;
    }

private:
    std::string mLastError;
};

} // namespace orv
