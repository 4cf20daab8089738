#include "tools/ecu_simulator/FaultInjector.h"

#include "orv_decoder/ControlFrame.h"

#include <algorithm>
#include <utility>

namespace ecusim {

namespace {

// Numbers of the random sequences that share the run's seed; measurements have the lower ones.
constexpr std::uint64_t kReplyDecisions = std::uint64_t{1} << 40;
constexpr std::uint64_t kReplyBytes = kReplyDecisions + 1;
constexpr std::uint64_t kReplyDelays = kReplyDecisions + 2;
constexpr std::uint64_t kReplyForerunners = kReplyDecisions + 3;
constexpr std::uint64_t kStreamDecisions = std::uint64_t{1} << 41;
constexpr std::uint64_t kStreamBytes = std::uint64_t{1} << 42;

constexpr std::uint64_t kMaxGarbageSize = 200;

std::uint8_t randomByte(SeededRandom& random)
{
    return static_cast<std::uint8_t>(random.below(256));
}

void flipOneBit(Datagram& datagram, SeededRandom& random)
{
    if (!datagram.empty())
        datagram[random.below(datagram.size())] ^= static_cast<std::uint8_t>(1U << random.below(8));
}

// Half of the damaged datagrams lose their tail, the others a byte.
void damage(Datagram& datagram, SeededRandom& random)
{
    if (datagram.empty())
        return;
    const std::uint64_t position = random.below(datagram.size());
    if (random.chance(0.5))
        datagram.resize(position);
    else
        datagram[position] = randomByte(random);
}

constexpr int kCommandCount = 6;

// A success without a payload.
Datagram replyToAnotherCommand(const Datagram& reply)
{
    const int code = reply.empty() ? 0 : (reply.front() + 1) % kCommandCount;
    return orv::encodeReply(static_cast<std::uint8_t>(code), {}, 0);
}

Datagram garbage(SeededRandom& random)
{
    Datagram bytes(1 + random.below(kMaxGarbageSize));
    for (std::uint8_t& byte : bytes)
        byte = randomByte(random);
    return bytes;
}

} // namespace

ReplyFaults::ReplyFaults(const ReplyFaultShares& shares, std::uint64_t seed)
    : mShares(shares)
    , mDecisions(seed, kReplyDecisions)
    , mBytes(seed, kReplyBytes)
    , mDelays(seed, kReplyDelays)
    , mForerunners(seed, kReplyForerunners)
{}

FaultyReply ReplyFaults::apply(Datagram reply)
{
    // Each fault draws every time, so that the decisions of one do not depend on another's share.
    const bool isDropped = mDecisions.chance(mShares.drop);
    const bool isDelayed = mDecisions.chance(mShares.delay);
    const bool isDoubled = mDecisions.chance(mShares.duplicate);
    const bool isCorrupt = mDecisions.chance(mShares.corrupt);
    const bool hasGarbage = mForerunners.chance(mShares.garbage);
    const bool hasStray = mForerunners.chance(mShares.stray);
    FaultyReply faulty;
    if (isDropped)
        return faulty;
    if (hasGarbage)
        faulty.copies.push_back(garbage(mForerunners));
    if (hasStray)
        faulty.copies.push_back(replyToAnotherCommand(reply));
    if (isCorrupt)
        flipOneBit(reply, mBytes);
    faulty.copies.insert(faulty.copies.end(), isDoubled ? 2 : 1, reply);
    faulty.delayMs = isDelayed ? delayMs() : 0;
    return faulty;
}

int ReplyFaults::delayMs()
{
    const int spreadMs = mShares.delaySpreadMs;
    const double delay = mShares.delayMs + mDelays.uniform(-spreadMs, spreadMs);
    return std::max(1, static_cast<int>(delay));
}

StreamFaults::StreamFaults(const StreamFaultShares& shares, std::uint64_t seed,
                           std::uint64_t stream)
    : mShares(shares)
    , mDecisions(seed, kStreamDecisions + stream)
    , mBytes(seed, kStreamBytes + stream)
{}

std::vector<Datagram> StreamFaults::apply(Datagram datagram)
{
    const bool isDropped = mDecisions.chance(mShares.drop);
    const bool isDoubled = mDecisions.chance(mShares.duplicate);
    const bool isLate = mDecisions.chance(mShares.reorder);
    const bool isCorrupt = mDecisions.chance(mShares.corrupt);
    const bool hasGarbage = mDecisions.chance(mShares.garbage);

    std::vector<Datagram> sent;
    if (hasGarbage)
        sent.push_back(garbage(mBytes));
    if (isCorrupt)
        damage(datagram, mBytes);
    auto overdue = std::exchange(mHeldBack, std::nullopt);
    if (isLate && !isDropped && !overdue) {
        mHeldBack = std::move(datagram);
        return sent;
    }
    if (!isDropped) {
        if (isDoubled)
            sent.push_back(datagram);
        sent.push_back(std::move(datagram));
    }
    if (overdue)
        sent.push_back(std::move(*overdue));
    return sent;
}

} // namespace ecusim
