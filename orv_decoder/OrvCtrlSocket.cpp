#include "orv_decoder/OrvCtrlSocket.h"

#include "orv_decoder/constants.h"

#include <array>
#include <chrono>
#include <utility>

namespace orv {

namespace {

constexpr std::uint32_t kDrainTimeoutMs = 5;

// A flood on the control port must not hold the caller.
constexpr std::chrono::milliseconds kMaxDrainTime{50};

} // namespace

OrvCtrlSocket::OrvCtrlSocket(std::string address, std::uint16_t port)
    : mAddress(std::move(address)), mPort(port)
{
    open();
}

bool OrvCtrlSocket::open()
{
    mOpen = false;
    if (!mSocket.startUp())
        return fail("Can't start win sock API");
    if (!mSocket.create())
        return fail("Can't create socket");
    applyReceiveTimeout();
    mDestination = ipv4Endpoint(mAddress, mPort);
    mOpen = true;
    return true;
}

bool OrvCtrlSocket::reconnect(const std::string& address, std::uint16_t port)
{
    if (!address.empty())
        mAddress = address;
    if (port != 0)
        mPort = port;
    mSocket.close();
    return open();
}

bool OrvCtrlSocket::setReceiveTimeout(std::uint32_t timeoutMs)
{
    mCurrentTimeoutMs = timeoutMs;
    return mSocket.setReceiveTimeout(timeoutMs);
}

bool OrvCtrlSocket::sendReceive(std::vector<std::uint8_t>& buffer)
{
    discardStaleReplies();
    if (!mSocket.send(buffer, mDestination))
        return fail("send error");
    mReplyDeadline = Clock::now() + std::chrono::milliseconds(mCurrentTimeoutMs);
    return receive(buffer);
}

bool OrvCtrlSocket::receiveAnother(std::vector<std::uint8_t>& buffer)
{
    return mSocket.waitUntil(mReplyDeadline) ? receive(buffer) : endWait(buffer);
}

bool OrvCtrlSocket::receive(std::vector<std::uint8_t>& buffer)
{
    buffer.resize(kMaxDatagramSize);
    auto received = mSocket.receiveUntil(mReplyDeadline, buffer);
    // A datagram without a byte is none.
    while (received == 0 && mSocket.waitUntil(mReplyDeadline))
        received = mSocket.receiveUntil(mReplyDeadline, buffer);
    if (received.value_or(0) == 0)
        return endWait(buffer);
    buffer.resize(*received);
    return true;
}

bool OrvCtrlSocket::endWait(std::vector<std::uint8_t>& buffer)
{
    buffer.clear();
    mDrainBeforeNextSend = true;
    return fail("receive timeout");
}

void OrvCtrlSocket::discardStaleReplies()
{
    const auto end = Clock::now() + kMaxDrainTime;
    const std::uint32_t waitMs = std::exchange(mDrainBeforeNextSend, false) ? kDrainTimeoutMs : 0;
    std::array<std::uint8_t, 1> byte;
    while (mSocket.waitForDatagram(waitMs) && Clock::now() < end)
        mSocket.receive(byte);
}

} // namespace orv
