#include "bench/BareSocket.h"
#include "bench/full_datagrams.h"
#include "orv_decoder/OrvDecoder.h"
#include "orv_decoder/OrvUdpSocket.h"
#include "orv_decoder/constants.h"
#include "tests/support/LoopbackPeer.h"

#include <benchmark/benchmark.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstring>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr std::uint32_t kPatienceMs = 1000;

// What a socket's buffer surely holds.
constexpr int kWaitingDatagrams = 64;

constexpr int kRecordsAtFullRate = 20000;

using Buffer = std::array<std::uint8_t, orv::kMaxDatagramSize>;

// Receives into a buffer that is used again and copies the datagram out of it.
class BareReceiver
{
public:
    std::uint16_t port() const { return mSocket.port(); }

    bool receive()
    {
        const auto datagram = mSocket.receive(mBuffer);
        std::memcpy(mCopy.data(), datagram.data(), datagram.size());
        benchmark::DoNotOptimize(mCopy.data());
        benchmark::ClobberMemory();
        return !datagram.empty();
    }

private:
    BareSocket mSocket;
    Buffer mBuffer;
    Buffer mCopy;
};

template<orv::OrvDecoderMode mode>
class Taker
{
public:
    std::uint16_t port() const { return mSocket.port(); }

    bool receive()
    {
        const bool isTaken = mDecoder.take(mRecord, kPatienceMs);
        benchmark::DoNotOptimize(mRecord);
        return isTaken;
    }

private:
    orv::OrvUdpSocket mSocket{freeUdpPort()};
    orv::OrvDecoder<orv::OrvMeasurementResult> mDecoder{&mSocket, mode};
    orv::OrvMeasurementResult mRecord;
};

using SynchronousTaker = Taker<orv::OrvDecoderMode::Synchronous>;
using ThreadedTaker = Taker<orv::OrvDecoderMode::Threaded>;

// The datagrams wait when the clock starts: the sender's time does not count.
template<typename Receiver>
void receiveWaiting(benchmark::State& state)
{
    Receiver receiver;
    BareSocket ecu;
    const auto datagram = fullMeasurementDatagram();
    const sockaddr_in destination = loopbackAddress(receiver.port());
    for (auto _ : state) {
        for (int i = 0; i < kWaitingDatagrams; ++i)
            ecu.send(datagram, destination);
        bool isReceived = true;
        const auto start = Clock::now();
        for (int i = 0; i < kWaitingDatagrams; ++i)
            isReceived = receiver.receive() && isReceived;
        state.SetIterationTime(Seconds(Clock::now() - start).count());
        if (!isReceived)
            state.SkipWithError("a datagram was lost");
    }
    state.SetItemsProcessed(kWaitingDatagrams * state.iterations());
}
// Many short repetitions: the fastest one is the one that nothing else disturbed.
BENCHMARK_TEMPLATE(receiveWaiting, BareReceiver)
    ->Iterations(100)
    ->Repetitions(50)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(receiveWaiting, SynchronousTaker)
    ->Iterations(100)
    ->Repetitions(50)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

// Sends the same datagram as fast as the system takes it; what the receiver is too slow for is
// lost.
class FullRateSender
{
public:
    explicit FullRateSender(std::uint16_t port)
        : mThread([this, destination = loopbackAddress(port)] {
            const auto datagram = fullMeasurementDatagram();
            for (; !mStop; ++mSent)
                mSocket.send(datagram, destination);
        })
    {}
    ~FullRateSender()
    {
        mStop = true;
        mThread.join();
    }
    FullRateSender(const FullRateSender&) = delete;
    FullRateSender& operator=(const FullRateSender&) = delete;

    int sent() const { return mSent; }

private:
    BareSocket mSocket;
    std::atomic<bool> mStop = false;
    std::atomic<int> mSent = 0;
    std::thread mThread;
};

// On a thread of its own, as what it is compared with: from the first received record to the last.
template<typename Receiver>
void receiveAtFullRate(benchmark::State& state)
{
    Receiver receiver;
    const FullRateSender sender(receiver.port());
    int sent = 0;
    for (auto _ : state) {
        bool isReceived = receiver.receive();
        const int sentBefore = sender.sent();
        const auto start = Clock::now();
        for (int i = 0; i < kRecordsAtFullRate; ++i)
            isReceived = receiver.receive() && isReceived;
        state.SetIterationTime(Seconds(Clock::now() - start).count());
        sent += sender.sent() - sentBefore;
        if (!isReceived)
            state.SkipWithError("no record came");
    }
    const auto received = static_cast<double>(kRecordsAtFullRate * state.iterations());
    state.SetItemsProcessed(static_cast<std::int64_t>(received));
    state.counters["share_of_sent"] = received / sent;
}
BENCHMARK_TEMPLATE(receiveAtFullRate, BareReceiver)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(receiveAtFullRate, ThreadedTaker)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
