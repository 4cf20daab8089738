#include "orv_decoder/OrvDecoder.h"
#include "orv_decoder/OrvUdpSocket.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/ScriptedStreamSocket.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::OrvDecoder;
using orv::OrvDecoderMode;
using orv::OrvFreespacePackage;
using orv::OrvMeasurementResult;
using MeasurementDecoder = OrvDecoder<OrvMeasurementResult>;

constexpr std::uint32_t kLongMs = 10000;

Bytes measurement(std::uint16_t number)
{
    return {static_cast<std::uint8_t>(number & 0xFF),
            static_cast<std::uint8_t>(number >> 8),
            0,
            0,
            0,
            0,
            0,
            0,
            0};
}

// Nothing ever arrives and no receive ends before the test lets it.
class HeldSocket : public orv::OrvSocketBase
{
public:
    bool open() override { return true; }

    bool receive(Bytes&, std::uint32_t) override
    {
        std::unique_lock lock(mMutex);
        mReleased.wait(lock, [this] { return mIsReleased; });
        return fail("receive error");
    }

    void release()
    {
        const std::scoped_lock lock(mMutex);
        mIsReleased = true;
        mReleased.notify_all();
    }

private:
    std::mutex mMutex;
    std::condition_variable mReleased;
    bool mIsReleased = false;
};

// Numbered datagrams as fast as they are taken. Without a lock of its own, which would order the
// two threads and hide a race between them.
class CountingSocket : public orv::OrvSocketBase
{
public:
    explicit CountingSocket(std::uint16_t count) : mCount(count) {}

    bool open() override { return true; }

    bool receive(Bytes& datagram, std::uint32_t) override
    {
        if (mNext == mCount)
            return fail("receive error");
        datagram = measurement(mNext++);
        return true;
    }

private:
    std::uint16_t mNext = 0;
    std::uint16_t mCount;
};

// Waits until the receiver thread has brought it about.
bool comesTrue(const std::function<bool()>& condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kLongMs);
    while (!condition() && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    return condition();
}

TEST(ThreadedDecoder, receivesWithFortyMilliseconds)
{
    ScriptedStreamSocket socket;
    const MeasurementDecoder decoder(&socket, OrvDecoderMode::Threaded);
    EXPECT_TRUE(comesTrue([&socket] { return socket.timeouts().size() > 2; }));
    for (const std::uint32_t timeoutMs : socket.timeouts())
        EXPECT_EQ(timeoutMs, 40U);
}

TEST(ThreadedDecoder, endsInTimeoutWhenNothingArrives)
{
    HeldSocket socket;
    {
        MeasurementDecoder decoder(&socket, OrvDecoderMode::Threaded);
        OrvMeasurementResult result;
        for (const std::uint32_t timeoutMs : {3U, 0U}) {
            EXPECT_FALSE(decoder.take(result, timeoutMs));
            EXPECT_EQ(decoder.lastError(), "timeout");
        }
        socket.release();
    }
}

TEST(ThreadedDecoder, keepsTheSocketsReasonAsItsOwn)
{
    ScriptedStreamSocket socket;
    const MeasurementDecoder decoder(&socket, OrvDecoderMode::Threaded);
    EXPECT_TRUE(comesTrue([&decoder] { return decoder.lastError() == "receive error"; }));
}

TEST(ThreadedDecoder, goesOnBehindADatagramThatIsNone)
{
    ScriptedStreamSocket socket;
    socket.queue({1, 2, 3});
    socket.queue(measurement(5));
    MeasurementDecoder decoder(&socket, OrvDecoderMode::Threaded);
    OrvMeasurementResult result;
    EXPECT_TRUE(decoder.take(result, kLongMs));
    EXPECT_EQ(result.measurementWord, 5U);
}

TEST(ThreadedDecoder, handsOutRecordsInArrivalOrderWhileMoreArrive)
{
    constexpr std::uint16_t kCount = 20000;
    CountingSocket socket(kCount);
    MeasurementDecoder decoder(&socket, OrvDecoderMode::Threaded);
    for (std::uint16_t number = 0; number < kCount; ++number) {
        OrvMeasurementResult result;
        ASSERT_TRUE(decoder.take(result, kLongMs));
        ASSERT_EQ(result.measurementWord, number);
    }
}

TEST(ThreadedDecoder, keepsEveryRecordUntilItIsTaken)
{
    ScriptedStreamSocket socket;
    for (std::uint16_t number = 0; number < 500; ++number)
        socket.queue(measurement(number));
    MeasurementDecoder decoder(&socket, OrvDecoderMode::Threaded);
    // The receive after the last datagram is under way or over: all of them are decoded.
    ASSERT_TRUE(comesTrue([&socket] { return socket.timeouts().size() > 500; }));
    OrvMeasurementResult result;
    for (std::uint16_t number = 0; number < 500; ++number) {
        ASSERT_TRUE(decoder.take(result, 0));
        ASSERT_EQ(result.measurementWord, number);
    }
}

TEST(ThreadedDecoder, readsARealPort)
{
    const std::uint16_t port = freeUdpPort();
    orv::OrvUdpSocket socket(port);
    OrvDecoder<OrvFreespacePackage> decoder(&socket, OrvDecoderMode::Threaded);
    LoopbackPeer().sendTo(port, {0});
    OrvFreespacePackage package;
    EXPECT_TRUE(decoder.take(package, kLongMs));
    EXPECT_TRUE(package.valid);
}

TEST(ThreadedDecoder, endsWhileItsSocketIsQuietBusyOrClosed)
{
    const LoopbackPeer other;
    orv::OrvUdpSocket quiet(freeUdpPort());
    orv::OrvUdpSocket closed(other.port());
    ScriptedStreamSocket busy;
    for (int i = 0; i < 10000; ++i)
        busy.queue(measurement(1));
    for (orv::OrvSocketBase* socket : std::vector<orv::OrvSocketBase*>{&quiet, &closed, &busy}) {
        for (int i = 0; i < 3; ++i)
            const MeasurementDecoder decoder(socket, OrvDecoderMode::Threaded);
    }
    EXPECT_EQ(closed.lastError(), "Can't bind socket");
    EXPECT_EQ(busy.openCount(), 3);
}

TEST(ThreadedDecoder, leavesItsSocketToTheNextOne)
{
    const std::uint16_t port = freeUdpPort();
    orv::OrvUdpSocket socket(port);
    {
        const MeasurementDecoder first(&socket, OrvDecoderMode::Threaded);
    }
    MeasurementDecoder second(&socket, OrvDecoderMode::Synchronous);
    LoopbackPeer().sendTo(port, measurement(9));
    OrvMeasurementResult result;
    EXPECT_TRUE(second.take(result, kLongMs));
    EXPECT_EQ(result.measurementWord, 9U);
}

} // namespace
