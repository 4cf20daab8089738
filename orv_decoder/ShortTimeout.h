#pragma once

#include "orv_decoder/OrvCtrlSocketBase.h"

#include <cstdint>

namespace orv {

/// Shortens a control channel's wait for replies for as long as it lives; the configured wait is
/// back at its end, whatever ends it. The channel is borrowed.
class ShortTimeout
{
public:
    /// Whether it can be set is not asked: a socket that refuses it refuses to send as well.
    [[nodiscard]] ShortTimeout(OrvCtrlSocketBase& socket, std::uint32_t timeoutMs) : mSocket(socket)
    {
        mSocket.setReceiveTimeout(timeoutMs);
    }
    ~ShortTimeout() { mSocket.applyReceiveTimeout(); }
    ShortTimeout(const ShortTimeout&) = delete;
    ShortTimeout& operator=(const ShortTimeout&) = delete;

private:
    OrvCtrlSocketBase& mSocket;
};

} // namespace orv
