#pragma once

#include "bench/BareSocket.h"

#include <cstdint>
#include <thread>
#include <utility>
#include <vector>

/// The other end of control exchanges: a thread that answers each request with the reply that was
/// made for it beforehand, so that next to none of an exchange's time is the peer's.
class AnsweringPeer
{
public:
    using Frame = std::vector<std::uint8_t>;
    using Replies = std::vector<std::pair<Frame, Frame>>; ///< each behind its request

    explicit AnsweringPeer(Replies replies);
    ~AnsweringPeer();
    AnsweringPeer(const AnsweringPeer&) = delete;
    AnsweringPeer& operator=(const AnsweringPeer&) = delete;

    const sockaddr_in& address() const { return mSocket.address(); }
    std::uint16_t port() const { return mSocket.port(); }

private:
    void serve();

    const Replies mReplies;
    BareSocket mSocket;
    std::thread mThread;
};
