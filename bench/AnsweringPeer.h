#pragma once

#include "bench/BareSocket.h"

#include <cstdint>
#include <map>
#include <thread>
#include <vector>

/// The other end of control exchanges: a thread that answers each request with the reply that was
/// made for it beforehand, so that next to none of an exchange's time is the peer's.
class AnsweringPeer
{
public:
    using Frame = std::vector<std::uint8_t>;

    explicit AnsweringPeer(std::map<Frame, Frame> replies);
    ~AnsweringPeer();
    AnsweringPeer(const AnsweringPeer&) = delete;
    AnsweringPeer& operator=(const AnsweringPeer&) = delete;

    const sockaddr_in& address() const { return mSocket.address(); }
    std::uint16_t port() const { return mSocket.port(); }

private:
    void serve();

    const std::map<Frame, Frame> mReplies; // by request
    BareSocket mSocket;
    std::thread mThread;
};
