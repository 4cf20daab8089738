#pragma once

#include <QString>

#include <chrono>
#include <cstdint>

namespace tarvioctl {

/// Counts what arrived on one live stream.
class StreamTally
{
public:
    using Time = std::chrono::system_clock::time_point;

    void addRecord(Time arrival);
    void addUndecodable() { ++mUndecodable; }

    std::uint64_t records() const { return mRecords; }
    std::uint64_t undecodable() const { return mUndecodable; }

    /// Records and rate, "40 records, 20.0 a second", and how many datagrams were no record.
    QString summary() const;

private:
    double ratePerSecond() const;

    std::uint64_t mRecords = 0;
    std::uint64_t mUndecodable = 0;
    Time mFirst;
    Time mLast;
};

} // namespace tarvioctl
