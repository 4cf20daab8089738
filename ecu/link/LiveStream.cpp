#include "ecu/link/LiveStream.h"

#include <chrono>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// A datagram that waits is received at once.
constexpr std::uint32_t kAtOnceMs = 1;
constexpr std::uint32_t kDrainWaitMs = 1;

// A sender that is faster than we are must not hold the caller.
constexpr milliseconds kMaxTakeTime{5};
constexpr milliseconds kMaxDrainTime{50};

} // namespace

template<orv::LiveRecord T>
LiveStream<T>::LiveStream(std::uint16_t port)
    : mPort(port), mDecoder(&mPort, orv::OrvDecoderMode::Synchronous)
{}

template<orv::LiveRecord T>
const T* LiveStream<T>::take(std::uint32_t waitMs)
{
    if (!waitForDatagram(waitMs))
        return nullptr;
    const auto end = Clock::now() + kMaxTakeTime;
    do {
        if (mDecoder.take(mRecord, kAtOnceMs))
            return &mRecord;
    } while (Clock::now() < end && mPort.waitForDatagram(0));
    return nullptr;
}

template<orv::LiveRecord T>
bool LiveStream<T>::drain()
{
    const auto end = Clock::now() + kMaxDrainTime;
    bool received = false;
    while (mPort.waitForDatagram(kDrainWaitMs) && Clock::now() < end)
        received |= mDecoder.take(mRecord, kAtOnceMs);
    return received;
}

template<orv::LiveRecord T>
void LiveStream<T>::reopen(std::uint16_t port)
{
    mPort.reopen(port);
}

template<orv::LiveRecord T>
std::optional<PortProblem> LiveStream<T>::problem() const
{
    if (isOpen())
        return std::nullopt;
    return PortProblem{.port = mPort.port(), .reason = mPort.systemReason()};
}

// A caller that waits in turns must not spin where the port is closed.
template<orv::LiveRecord T>
bool LiveStream<T>::waitForDatagram(std::uint32_t waitMs) const
{
    if (isOpen())
        return mPort.waitForDatagram(waitMs);
    std::this_thread::sleep_for(milliseconds(waitMs));
    return false;
}

template class LiveStream<orv::OrvMeasurementResult>;
template class LiveStream<orv::OrvFreespacePackage>;
