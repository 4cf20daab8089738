#include "orv_decoder/ControlFrame.h"
#include "tools/ecu_simulator/FaultInjector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>

namespace {

using namespace ecusim;

const Datagram kReply = {2, 2, 14, 0, 0, 0x55};

Datagram numbered(std::uint8_t number)
{
    return {number, number, number, number};
}

std::vector<Datagram> streamed(const StreamFaultShares& shares, std::uint64_t seed, int count)
{
    StreamFaults faults(shares, seed, 0);
    std::vector<Datagram> sent;
    for (int i = 0; i < count; ++i) {
        for (Datagram& datagram : faults.apply(numbered(static_cast<std::uint8_t>(i))))
            sent.push_back(std::move(datagram));
    }
    return sent;
}

TEST(SeededRandom, numbersAreTheSameOnEveryPlatform)
{
    SeededRandom random(1);
    const std::uint64_t first = random.below(1000000);
    const std::uint64_t second = random.below(1000000);
    EXPECT_EQ(first, 497542U);
    EXPECT_EQ(second, 387058U);
}

TEST(SeededRandom, streamsOfASeedDiffer)
{
    EXPECT_NE(SeededRandom(1, 0).below(1000000), SeededRandom(1, 1).below(1000000));
}

TEST(SeededRandom, chanceMeetsItsShare)
{
    SeededRandom random(3);
    int hits = 0;
    for (int i = 0; i < 10000; ++i)
        hits += random.chance(0.25);
    EXPECT_NEAR(hits, 2500, 150);
}

TEST(SeededRandom, neverAndAlwaysAreExact)
{
    SeededRandom random(3);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_FALSE(random.chance(0));
        EXPECT_TRUE(random.chance(1));
    }
}

TEST(ReplyFaults, withoutSharesTheReplyGoesOutUnchanged)
{
    const FaultyReply faulty = ReplyFaults({}, 1).apply(kReply);
    EXPECT_EQ(faulty.copies, (std::vector<Datagram>{kReply}));
    EXPECT_EQ(faulty.delayMs, 0);
}

TEST(ReplyFaults, droppedReplyIsNotSent)
{
    EXPECT_TRUE(ReplyFaults({.drop = 1}, 1).apply(kReply).copies.empty());
}

TEST(ReplyFaults, delayedReplyTellsItsDelay)
{
    EXPECT_EQ(ReplyFaults({.delay = 1, .delayMs = 900}, 1).apply(kReply).delayMs, 900);
}

TEST(ReplyFaults, doubledReplyGoesOutTwice)
{
    EXPECT_EQ(ReplyFaults({.duplicate = 1}, 1).apply(kReply).copies,
              (std::vector<Datagram>{kReply, kReply}));
}

TEST(ReplyFaults, corruptReplyDiffersInOneBit)
{
    const Datagram corrupt = ReplyFaults({.corrupt = 1}, 1).apply(kReply).copies.at(0);
    ASSERT_EQ(corrupt.size(), kReply.size());
    int bits = 0;
    for (std::size_t i = 0; i < kReply.size(); ++i)
        bits += std::popcount(static_cast<unsigned>(corrupt[i] ^ kReply[i]));
    EXPECT_EQ(bits, 1);
}

TEST(ReplyFaults, delayStaysWithinItsSpread)
{
    ReplyFaults faults({.delay = 1, .delayMs = 500, .delaySpreadMs = 60}, 1);
    int shortest = 1000;
    int longest = 0;
    for (int i = 0; i < 500; ++i) {
        const int delayMs = faults.apply(kReply).delayMs;
        shortest = std::min(shortest, delayMs);
        longest = std::max(longest, delayMs);
    }
    EXPECT_GE(shortest, 440);
    EXPECT_LT(shortest, 460);
    EXPECT_LE(longest, 560);
    EXPECT_GT(longest, 540);
}

TEST(ReplyFaults, garbageAndStraysComeBeforeTheReply)
{
    const auto garbage = ReplyFaults({.garbage = 1}, 1).apply(kReply).copies;
    ASSERT_EQ(garbage.size(), 2U);
    EXPECT_NE(garbage[0], kReply);
    EXPECT_EQ(garbage[1], kReply);

    const auto stray = ReplyFaults({.stray = 1}, 1).apply(kReply).copies;
    EXPECT_EQ(stray, (std::vector<Datagram>{orv::encodeReply(3, {}, 0), kReply}));
}

TEST(ReplyFaults, shareOfOneFaultDoesNotMoveAnother)
{
    ReplyFaults dropping({.drop = 0.5}, 9);
    ReplyFaults both({.drop = 0.5, .duplicate = 0.5, .corrupt = 0.5, .garbage = 0.5, .stray = 0.5},
                     9);
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(dropping.apply(kReply).copies.empty(), both.apply(kReply).copies.empty()) << i;
}

TEST(StreamFaults, withoutSharesTheStreamIsUnchanged)
{
    EXPECT_EQ(streamed({}, 1, 3), (std::vector<Datagram>{numbered(0), numbered(1), numbered(2)}));
}

TEST(StreamFaults, droppedDatagramsAreNotSent)
{
    EXPECT_TRUE(streamed({.drop = 1}, 1, 5).empty());
}

TEST(StreamFaults, doubledDatagramsComeTwiceInARow)
{
    EXPECT_EQ(streamed({.duplicate = 1}, 1, 2),
              (std::vector<Datagram>{numbered(0), numbered(0), numbered(1), numbered(1)}));
}

TEST(StreamFaults, reorderedDatagramFollowsItsSuccessor)
{
    EXPECT_EQ(streamed({.reorder = 1}, 1, 4),
              (std::vector<Datagram>{numbered(1), numbered(0), numbered(3), numbered(2)}));
}

TEST(StreamFaults, heldDatagramOutlivesADroppedSuccessor)
{
    const auto sent = streamed({.drop = 0.5, .reorder = 1}, 1, 400);
    std::vector<int> seen(256);
    for (const Datagram& datagram : sent)
        ++seen[datagram.front()];
    const auto kept = streamed({.drop = 0.5}, 1, 400).size();
    EXPECT_GE(sent.size() + 1, kept);
    EXPECT_LE(sent.size(), kept);
}

TEST(StreamFaults, garbageComesBeforeTheGoodDatagram)
{
    const auto sent = streamed({.garbage = 1}, 1, 2);
    ASSERT_EQ(sent.size(), 4U);
    EXPECT_GE(sent[0].size(), 1U);
    EXPECT_LE(sent[0].size(), 200U);
    EXPECT_EQ(sent[1], numbered(0));
    EXPECT_EQ(sent[3], numbered(1));
}

TEST(StreamFaults, damagedDatagramsAreCutOrChanged)
{
    int cut = 0;
    for (const Datagram& datagram : streamed({.corrupt = 1}, 1, 200)) {
        EXPECT_LE(datagram.size(), 4U);
        cut += datagram.size() < 4;
    }
    EXPECT_NEAR(cut, 100, 30);
}

TEST(StreamFaults, sameSeedGivesTheSameFaults)
{
    const StreamFaultShares shares{
        .drop = 0.2, .duplicate = 0.2, .reorder = 0.2, .corrupt = 0.2, .garbage = 0.2};
    EXPECT_EQ(streamed(shares, 5, 200), streamed(shares, 5, 200));
    EXPECT_NE(streamed(shares, 5, 200), streamed(shares, 6, 200));
}

TEST(StreamFaults, emptyDatagramSurvivesEveryFault)
{
    StreamFaults faults({.duplicate = 1, .corrupt = 1, .garbage = 1}, 1, 0);
    EXPECT_EQ(faults.apply({}).size(), 3U);
}

} // namespace
