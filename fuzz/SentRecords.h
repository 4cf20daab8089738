#pragma once

#include "orv_decoder/LiveRecord.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <span>

/// What was streamed and decodes, until it is handed on: some may be lost, none may be made up or
/// come out of its turn.
template<orv::LiveRecord T>
class SentRecords
{
public:
    void send(std::span<const std::uint8_t> datagram)
    {
        if (const auto record = orv::decodeDatagram<T>(datagram))
            mSent.push_back(*record);
    }

    bool takes(const T& record)
    {
        const auto found = std::ranges::find(mSent, record);
        if (found == mSent.end())
            return false;
        mSent.erase(mSent.begin(), found + 1);
        return true;
    }

private:
    std::deque<T> mSent;
};
