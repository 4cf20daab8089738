#include "orv_decoder/OrvDecoder.h"

#include "orv_decoder/OrvSocketBase.h"

#include <chrono>
#include <stdexcept>
#include <utility>

namespace orv {

namespace {

using Clock = std::chrono::high_resolution_clock;

constexpr std::uint32_t kReceiverTimeoutMs = 40;
constexpr std::chrono::milliseconds kPollPause{1};

} // namespace

template<LiveRecord T>
OrvDecoder<T>::OrvDecoder(OrvSocketBase* socket, OrvDecoderMode mode) : mSocket(socket), mMode(mode)
{
    if (!mSocket)
        throw std::runtime_error("Invalid socket pointer");
    mSocket->open();
    if (mMode == OrvDecoderMode::Threaded)
        mReceiver = std::thread(&OrvDecoder::receiverLoop, this);
}

template<LiveRecord T>
OrvDecoder<T>::~OrvDecoder()
{
    mStop = true;
    if (mReceiver.joinable())
        mReceiver.join();
}

template<LiveRecord T>
bool OrvDecoder<T>::take(T& out, std::uint32_t timeoutMs)
{
    if (mMode == OrvDecoderMode::Threaded)
        return waitForRecord(timeoutMs) && takeFront(out);
    return receiveAndDecode(out, timeoutMs);
}

template<LiveRecord T>
std::string OrvDecoder<T>::lastError() const
{
    const std::scoped_lock lock(mMutex);
    return mLastError;
}

template<LiveRecord T>
bool OrvDecoder<T>::receiveAndDecode(T& record, std::uint32_t timeoutMs)
{
    if (!mSocket->receive(mDatagram, timeoutMs))
        return fail(mSocket->lastError());
    return decodeInto(mDatagram, record) || fail("wrong datagram format");
}

template<LiveRecord T>
void OrvDecoder<T>::receiverLoop()
{
    do {
        T record;
        if (receiveAndDecode(record, kReceiverTimeoutMs)) {
            const std::scoped_lock lock(mMutex);
            mRecords.push_back(std::move(record));
        } else {
            // A socket that could not be opened fails without waiting: the core stays free.
            std::this_thread::sleep_for(kPollPause);
        }
    } while (!mStop);
}

template<LiveRecord T>
bool OrvDecoder<T>::waitForRecord(std::uint32_t timeoutMs)
{
    const auto start = Clock::now();
    while (!hasRecord()) {
        const auto elapsed =
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
        if (elapsed.count() > std::int64_t{timeoutMs})
            return fail("timeout");
        std::this_thread::sleep_for(kPollPause);
    }
    return true;
}

template<LiveRecord T>
bool OrvDecoder<T>::hasRecord() const
{
    const std::scoped_lock lock(mMutex);
    return !mRecords.empty();
}

template<LiveRecord T>
bool OrvDecoder<T>::takeFront(T& out)
{
    const std::scoped_lock lock(mMutex);
    if (mRecords.empty())
        return false;
    out = std::move(mRecords.front());
    mRecords.pop_front();
    return true;
}

template<LiveRecord T>
bool OrvDecoder<T>::fail(std::string reason)
{
    const std::scoped_lock lock(mMutex);
    mLastError = std::move(reason);
    return false;
}

template class OrvDecoder<OrvMeasurementResult>;
template class OrvDecoder<OrvFreespacePackage>;

} // namespace orv
