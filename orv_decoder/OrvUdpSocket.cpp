#include "orv_decoder/OrvUdpSocket.h"

#include <utility>

namespace orv {

bool OrvUdpSocket::open()
{
    if (mOpen)
        return true;
    mOpen = createAndBind();
    if (!mOpen) {
        mSystemReason = DatagramSocket::systemError();
        mSocket.close();
    }
    return mOpen;
}

bool OrvUdpSocket::failToBind(std::string systemReason)
{
    mSystemReason = std::move(systemReason);
    return fail("Can't bind socket");
}

bool OrvUdpSocket::createAndBind()
{
    if (!mSocket.startUp())
        return fail("Can't start win sock");
    if (!mSocket.create())
        return fail("Can't create socket");
    // The same text as for the time-out, though it is the address option that failed.
    if (!mSocket.setReuseAddress())
        return fail("Can't set receive timeout");
    if (!mSocket.bindToAnyAddress(mPort))
        return fail("Can't bind socket");
    mTimeoutMs.reset();
    return true;
}

bool OrvUdpSocket::reopen(std::uint16_t port)
{
    if (port != 0)
        mPort = port;
    mSocket.close();
    mOpen = false;
    return open();
}

bool OrvUdpSocket::receive(std::vector<std::uint8_t>& datagram, std::uint32_t timeoutMs)
{
    if (!mOpen)
        return false;
    if (!setTimeout(timeoutMs))
        return fail("Can't set receive timeout option");
    const std::size_t received = mSocket.receive(mBuffer, &mLastSender).value_or(0);
    if (received < 1)
        return fail("receive error");
    datagram.assign(mBuffer.begin(), mBuffer.begin() + static_cast<std::ptrdiff_t>(received));
    return true;
}

// A poll asks with the same time-out again and again.
bool OrvUdpSocket::setTimeout(std::uint32_t timeoutMs)
{
    if (mTimeoutMs == timeoutMs)
        return true;
    mTimeoutMs.reset();
    if (mSocket.setReceiveTimeout(timeoutMs))
        mTimeoutMs = timeoutMs;
    return mTimeoutMs.has_value();
}

bool OrvUdpSocket::waitForDatagram(std::uint32_t timeoutMs) const
{
    return mOpen && mSocket.waitForDatagram(timeoutMs);
}

} // namespace orv
