#include "orv_decoder/OrvUdpSocket.h"

#include "orv_decoder/constants.h"

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

bool OrvUdpSocket::createAndBind()
{
    if (!mSocket.startUp())
        return fail("Can't start win sock");
    if (!mSocket.create())
        return fail("Can't create socket");
    // The ECU's engineers know this message for the address option too.
    if (!mSocket.setReuseAddress())
        return fail("Can't set receive timeout");
    if (!mSocket.bindToAnyAddress(mPort))
        return fail("Can't bind socket");
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
    if (!mSocket.setReceiveTimeout(timeoutMs))
        return fail("Can't set receive timeout option");
    std::vector<std::uint8_t> buffer(kMaxDatagramSize);
    const std::size_t received = mSocket.receive(buffer).value_or(0);
    if (received < 1)
        return fail("receive error");
    buffer.resize(received);
    datagram = std::move(buffer);
    return true;
}

bool OrvUdpSocket::waitForDatagram(std::uint32_t timeoutMs) const
{
    return mOpen && mSocket.waitForDatagram(timeoutMs);
}

} // namespace orv
