#pragma once

#include "orv_decoder/OrvSocketBase.h"

#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

/// A live stream without a network: hands out the datagrams that a test queued, in their order,
/// and ends in "receive error" when none is left. Any thread may queue while another receives.
class ScriptedStreamSocket : public orv::OrvSocketBase
{
public:
    void queue(std::vector<std::uint8_t> datagram)
    {
        const std::scoped_lock lock(mMutex);
        mDatagrams.push_back(std::move(datagram));
    }

    int openCount() const { return mOpenCount; }

    /// The timeout of every receive so far.
    std::vector<std::uint32_t> timeouts() const
    {
        const std::scoped_lock lock(mMutex);
        return mTimeouts;
    }

    bool open() override
    {
        ++mOpenCount;
        return true;
    }

    bool receive(std::vector<std::uint8_t>& datagram, std::uint32_t timeoutMs) override
    {
        const std::scoped_lock lock(mMutex);
        mTimeouts.push_back(timeoutMs);
        if (mDatagrams.empty())
            return fail("receive error");
        datagram = std::move(mDatagrams.front());
        mDatagrams.pop_front();
        return true;
    }

private:
    mutable std::mutex mMutex;
    std::deque<std::vector<std::uint8_t>> mDatagrams;
    std::vector<std::uint32_t> mTimeouts;
    int mOpenCount = 0;
};
