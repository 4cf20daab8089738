#pragma once

#include "tools/ecu_simulator/SeededRandom.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace ecusim {

using Datagram = std::vector<std::uint8_t>;

/// Shares (0..1) of the replies that go wrong.
struct ReplyFaultShares
{
    double drop = 0;
    double delay = 0;
    double duplicate = 0;
    double corrupt = 0;
    double garbage = 0; ///< of the replies that follow a datagram of random bytes
    double stray = 0;   ///< of the replies that follow one to another command
    int delayMs = 700;
    int delaySpreadMs = 0; ///< a delay is up to this much shorter or longer
};

/// Shares (0..1) of the datagrams of a stream that go wrong.
struct StreamFaultShares
{
    double drop = 0;
    double duplicate = 0;
    double reorder = 0;
    double corrupt = 0;
    double garbage = 0; ///< of the good datagrams that follow one of random bytes
};

/// What is sent instead of one reply: nothing, or several datagrams after a delay.
struct FaultyReply
{
    std::vector<Datagram> copies;
    int delayMs = 0;
};

/// Spoils control replies. The same seed and the same replies give the same faults; the share of
/// one fault does not move the others.
class ReplyFaults
{
public:
    ReplyFaults(const ReplyFaultShares& shares, std::uint64_t seed);

    FaultyReply apply(Datagram reply);

private:
    int delayMs();

    ReplyFaultShares mShares;
    SeededRandom mDecisions;
    SeededRandom mBytes;
    SeededRandom mDelays;
    SeededRandom mForerunners; // of datagrams that come before the reply
};

/// Spoils one live stream.
class StreamFaults
{
public:
    /// `stream` tells the streams of one seed apart.
    StreamFaults(const StreamFaultShares& shares, std::uint64_t seed, std::uint64_t stream);

    /// What is sent in place of the next datagram of the stream, in this order; a datagram that is
    /// held back leaves behind its successor.
    std::vector<Datagram> apply(Datagram datagram);

private:
    StreamFaultShares mShares;
    SeededRandom mDecisions;
    SeededRandom mBytes;
    std::optional<Datagram> mHeldBack;
};

} // namespace ecusim
