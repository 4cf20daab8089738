#pragma once

#include "orv_decoder/ControlFrame.h"
#include "tests/support/LoopbackPeer.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

/// Answers control requests on 127.0.0.1: from a thread of its own, so that a test may block in an
/// exchange, or whenever it is asked to. Silent until a handler is set.
class LoopbackEcu
{
public:
    enum class Serving { FromItsThread, OnDemand };

    using Frame = std::vector<std::uint8_t>;
    /// Returns the reply frame to send, or nothing to stay silent. Runs on the ECU's thread if it
    /// has one.
    using Handler = std::function<std::optional<Frame>(const orv::ControlRequest&)>;

    explicit LoopbackEcu(Serving serving = Serving::FromItsThread);
    ~LoopbackEcu();

    std::uint16_t port() const { return mPeer.port(); }

    void setHandler(Handler handler);

    /// Answers every request with this payload and status.
    void answerAll(const Frame& payload, std::uint8_t status = 0);

    void beSilent() { setHandler({}); }

    /// Answers every request that has come by now; for one that serves on demand.
    void serveWaiting();

    /// Sends a frame to whoever asked last: once more, or too late. For one that serves on demand.
    void replyAgain(const Frame& frame) { mPeer.reply(frame); }

    /// Every request so far whose checksum was right.
    std::vector<orv::ControlRequest> requests() const;
    void forgetRequests();

    /// Sends a live datagram to a port of 127.0.0.1.
    void stream(std::uint16_t port, const Frame& datagram);

private:
    void serve();
    void answer(const Frame& frame);

    LoopbackPeer mPeer;
    LoopbackPeer mStreamPeer;
    mutable std::mutex mMutex;
    Handler mHandler;
    std::vector<orv::ControlRequest> mRequests;
    std::atomic<bool> mStop = false;
    std::thread mThread;
};
