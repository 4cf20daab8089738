#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/OrvFreespacePackage.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::OrvDistanceItem;
using orv::OrvFreespaceEntry;
using orv::OrvFreespacePackage;
using orv::OrvPoint;

Bytes joined(std::initializer_list<Bytes> parts)
{
    Bytes whole;
    for (const Bytes& part : parts)
        whole.insert(whole.end(), part.begin(), part.end());
    return whole;
}

// Sensor 5 with four corners, two end points of the arc and the second pair: 33 bytes.
const Bytes kPoints = {
    0x05,                                           // sensor
    0x64, 0x00, 0xC8, 0x00, 0x9C, 0xFF, 0xC8, 0x00, // C0 (100, 200), C1 (-100, 200)
    0x38, 0xFF, 0xD0, 0x07, 0xC8, 0x00, 0xD0, 0x07, // C2 (-200, 2000), C3 (200, 2000)
    0x38, 0xFF, 0xD0, 0x07, 0xC8, 0x00, 0xD0, 0x07, // E0 (-200, 2000), E1 (200, 2000)
    0x01, 0x00, 0x02, 0x00, 0x03, 0x00, 0x04, 0x00, // second pair (1, 2), (3, 4)
};
const Bytes kPosition = {0x0C, 0xFE, 0xF4, 0x01, 0x00, 0xC0}; // -500, 500, 270 degrees
const Bytes kLeft = {0x20, 0x03, 0x0A, 0x00, 0x20, 0x03, 0xF6, 0xFF, 0x20, 0x03};
const Bytes kMiddle = {0x84, 0x03, 0x0B, 0x00, 0x84, 0x03, 0xF5, 0xFF, 0x84, 0x03};
const Bytes kRight = {0xE8, 0x03, 0x0C, 0x00, 0xE8, 0x03, 0xF4, 0xFF, 0xE8, 0x03};

Bytes fullDatagram()
{
    return joined({{1}, kPoints, kPosition, {0x00}, kLeft, kMiddle, kRight});
}

Bytes shortDatagram()
{
    return joined({{1}, kPoints, kPosition, {0x07}});
}

OrvFreespaceEntry entryWithoutDistances()
{
    OrvFreespaceEntry entry;
    entry.valid = true;
    entry.sensorId = 5;
    entry.corners = {OrvPoint{100, 200}, {-100, 200}, {-200, 2000}, {200, 2000}};
    entry.arcEnds = {OrvPoint{-200, 2000}, {200, 2000}};
    entry.secondPair = {OrvPoint{1, 2}, {3, 4}};
    entry.position = {.leadingWord = 0, .x = -500, .y = 500, .direction = 0xC000};
    return entry;
}

OrvFreespaceEntry fullEntry()
{
    OrvFreespaceEntry entry = entryWithoutDistances();
    entry.distances = {OrvDistanceItem{1, 800, {10, 800}, {-10, 800}},
                       {1, 900, {11, 900}, {-11, 900}},
                       {1, 1000, {12, 1000}, {-12, 1000}}};
    return entry;
}

OrvFreespacePackage packageOf(std::vector<OrvFreespaceEntry> entries)
{
    return {.valid = true, .entries = std::move(entries)};
}

bool isRefused(std::span<const std::uint8_t> datagram)
{
    return !orv::decodeDatagram<OrvFreespacePackage>(datagram);
}

// Throws when there is none.
OrvFreespacePackage packageIn(std::span<const std::uint8_t> datagram)
{
    return orv::decodeDatagram<OrvFreespacePackage>(datagram).value();
}

TEST(FreespacePackage, decodesKnownBytes)
{
    const auto package = packageIn(fullDatagram());
    EXPECT_EQ(package, packageOf({fullEntry()}));
    EXPECT_TRUE(package.valid);
    EXPECT_TRUE(package.entries.front().valid);
}

TEST(FreespacePackage, encodesKnownBytes)
{
    EXPECT_EQ(orv::encodeFreespacePackage(packageOf({fullEntry()})), fullDatagram());
    EXPECT_EQ(orv::encodeFreespacePackage(packageOf({entryWithoutDistances()})), shortDatagram());
}

TEST(FreespacePackage, entryTakes40BytesWithoutAndSeventyWithThreeDistances)
{
    EXPECT_EQ(shortDatagram().size(), 1U + 40U);
    EXPECT_EQ(fullDatagram().size(), 1U + 70U);
    EXPECT_EQ(packageIn(shortDatagram()), packageOf({entryWithoutDistances()}));
}

TEST(FreespacePackage, cutAtAnyLengthIsInvalid)
{
    for (const Bytes& whole : {fullDatagram(), shortDatagram()}) {
        for (std::size_t length = 0; length < whole.size(); ++length) {
            // Cut by 1 to 5 of the position's bytes, the next one counts as the flag byte.
            const bool isWithoutPosition =
                length > kPoints.size() + 1 && length <= kPoints.size() + kPosition.size();
            EXPECT_TRUE(isWithoutPosition || isRefused(std::span(whole).first(length))) << length;
        }
    }
}

TEST(FreespacePackage, withoutEntriesIsValid)
{
    EXPECT_EQ(packageIn(Bytes{0}), packageOf({}));
}

TEST(FreespacePackage, withoutAByteIsInvalid)
{
    EXPECT_TRUE(isRefused({}));
}

TEST(FreespacePackage, keepsItsEntriesInDatagramOrder)
{
    OrvFreespaceEntry other = fullEntry();
    other.sensorId = 2;
    const auto package = packageOf({fullEntry(), other, entryWithoutDistances()});
    EXPECT_EQ(packageIn(orv::encodeFreespacePackage(package)), package);
}

TEST(FreespacePackage, stopsAtTheFirstEntryThatIsCut)
{
    Bytes datagram = orv::encodeFreespacePackage(packageOf({fullEntry(), fullEntry()}));
    datagram.pop_back();
    OrvFreespacePackage package;
    EXPECT_FALSE(orv::decodeInto(datagram, package));
    EXPECT_FALSE(package.valid);
    EXPECT_EQ(package.entries, std::vector{fullEntry()});
}

TEST(FreespacePackage, announcedEntriesThatAreMissingMakeItInvalid)
{
    Bytes datagram = fullDatagram();
    datagram[0] = 255;
    EXPECT_TRUE(isRefused(datagram));
}

TEST(FreespacePackage, ignoresBytesBehindTheLastEntry)
{
    const auto package = packageIn(joined({fullDatagram(), {1, 2, 3}}));
    EXPECT_EQ(package, packageOf({fullEntry()}));
}

TEST(FreespacePackage, positionThatIsLeftOutStaysZero)
{
    const auto package = packageIn(joined({{1}, kPoints, {0x07}}));
    ASSERT_EQ(package.entries.size(), 1U);
    EXPECT_EQ(package.entries[0].position, orv::OrvSensorPosition{});
    EXPECT_EQ(package.entries[0].secondPair[1], (OrvPoint{3, 4}));
}

TEST(FreespacePackage, entryWithoutAByteBehindThePointsIsInvalid)
{
    EXPECT_TRUE(isRefused(joined({{1}, kPoints})));
}

TEST(FreespacePackage, entryWithoutAFlagByteIsInvalid)
{
    EXPECT_TRUE(isRefused(joined({{1}, kPoints, kPosition})));
}

TEST(FreespacePackage, sixBytesBehindThePointsAreThePositionAndNoFlagByte)
{
    const Bytes startsAsFlags = {0x07, 0x00, 0x00, 0x00, 0x00, 0x00};
    EXPECT_TRUE(isRefused(joined({{1}, kPoints, startsAsFlags})));
}

TEST(FreespacePackage, distanceOfSixBytesIsShort)
{
    const Bytes six(kRight.begin(), kRight.begin() + 6);
    EXPECT_TRUE(isRefused(joined({{1}, kPoints, kPosition, {0x03}, six})));
}

TEST(FreespacePackage, encodesAtMost255Entries)
{
    const auto package = packageOf(std::vector(300, entryWithoutDistances()));
    const auto decoded = packageIn(orv::encodeFreespacePackage(package));
    EXPECT_TRUE(decoded.valid);
    EXPECT_EQ(decoded.entries.size(), 255U);
}

class AbsenceFlags : public testing::TestWithParam<unsigned>
{};

TEST_P(AbsenceFlags, aClearBitBringsADistance)
{
    const unsigned flags = GetParam();
    const std::array<Bytes, 3> items = {kLeft, kMiddle, kRight};
    Bytes datagram = joined({{1}, kPoints, kPosition, {static_cast<std::uint8_t>(flags)}});
    OrvFreespaceEntry expected = fullEntry();
    for (unsigned i = 0; i < 3; ++i) {
        if (flags & 1U << i)
            expected.distances[i] = {};
        else
            datagram = joined({datagram, items[i]});
    }
    EXPECT_EQ(packageIn(datagram), packageOf({expected}));
    EXPECT_EQ(expected.distances[0].isPresent(), !(flags & 1));
}

INSTANTIATE_TEST_SUITE_P(All, AbsenceFlags, testing::Range(0U, 8U),
                         [](const auto& row) { return "flags" + std::to_string(row.param); });

TEST(AbsenceFlags, upperBitsMeanNothing)
{
    const auto package = packageIn(joined({{1}, kPoints, kPosition, {0xFF}}));
    EXPECT_EQ(package, packageOf({entryWithoutDistances()}));
}

} // namespace
