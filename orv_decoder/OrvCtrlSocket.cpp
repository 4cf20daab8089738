#include "orv_decoder/OrvCtrlSocket.h"

#include "orv_decoder/constants.h"

#include <array>
#include <chrono>

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
    mOpen = false;
    return open();
}

bool OrvCtrlSocket::setReceiveTimeout(std::uint32_t timeoutMs)
{
    mCurrentTimeoutMs = timeoutMs;
    return mSocket.setReceiveTimeout(timeoutMs);
}

bool OrvCtrlSocket::sendReceive(std::vector<std::uint8_t>& buffer)
{
    if (mDrainBeforeNextSend) {
        mDrainBeforeNextSend = false;
        discardStaleReplies();
    }
    if (!mSocket.send(buffer, mDestination))
        return fail("send error");
    buffer.resize(kMaxDatagramSize);
    const std::size_t received = mSocket.receive(buffer);
    buffer.resize(received);
    if (received < 1) {
        mDrainBeforeNextSend = true;
        return fail("receive timeout");
    }
    return true;
}

// Afterwards the timeout is again the one that the caller had set: a probe's short one must
// survive its own drain.
void OrvCtrlSocket::discardStaleReplies()
{
    const auto end = std::chrono::steady_clock::now() + kMaxDrainTime;
    std::array<std::uint8_t, 1> byte;
    mSocket.setReceiveTimeout(kDrainTimeoutMs);
    while (mSocket.receive(byte) == byte.size() && std::chrono::steady_clock::now() < end) {
    }
    mSocket.setReceiveTimeout(mCurrentTimeoutMs);
}

} // namespace orv
