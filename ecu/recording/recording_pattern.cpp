#include "ecu/recording/recording_pattern.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint8_t kEnd = 255;
constexpr std::size_t kMaxDelaySegments = 3;

using DelayRow = std::array<std::uint8_t, kMaxDelaySegments>;

// Row r lasts r x 204.8 us.
constexpr std::array<DelayRow, kPositionsOfLead> kDelayTable = {{
    {kEnd, kEnd, kEnd}, {0, kEnd, kEnd}, {1, kEnd, kEnd}, {0, 1, kEnd},    {2, kEnd, kEnd},
    {2, 0, kEnd},       {3, kEnd, kEnd}, {3, 0, kEnd},    {4, kEnd, kEnd}, {4, 0, kEnd},
    {4, 1, kEnd},       {4, 1, 0},       {4, 2, kEnd},    {5, kEnd, kEnd}, {5, 0, kEnd},
    {5, 1, kEnd},       {4, 4, kEnd},    {5, 2, kEnd},    {3, 3, 3},       {5, 3, kEnd},
    {6, kEnd, kEnd},    {6, 0, kEnd},    {6, 1, kEnd},    {6, 1, 0},       {6, 1, 1},
    {6, 2, 0},          {6, 3, kEnd},    {6, 3, 0},       {6, 4, kEnd},    {6, 4, 0},
}};

constexpr unsigned kOpenLevel = 0;
constexpr unsigned kBlockedLevel = 31;
constexpr unsigned kHighLevel = 27;
constexpr std::uint8_t kBlockedSegment = orv::packThresholdEntry(7, kBlockedLevel);
constexpr std::uint8_t kHalfHeightSegment = orv::packThresholdEntry(4, 15);

} // namespace

std::span<const std::uint8_t> delaySegments(std::uint32_t row)
{
    if (row >= kDelayTable.size())
        return {};
    const DelayRow& segments = kDelayTable[row];
    return {segments.begin(), std::find(segments.begin(), segments.end(), kEnd)};
}

orv::ThresholdEntries recordingPattern(std::uint32_t position, std::uint8_t windowLeft,
                                       std::uint8_t windowRight)
{
    orv::ThresholdEntries entries;
    entries.fill(kBlockedSegment);
    std::size_t next = position / kPositionsOfLead;
    const auto append = [&](std::uint8_t entry) {
        if (next < entries.size())
            entries[next++] = entry;
    };
    for (const std::uint8_t timeIndex : delaySegments(position % kPositionsOfLead))
        append(orv::packThresholdEntry(timeIndex, kBlockedLevel));
    append(orv::packThresholdEntry(windowLeft, kOpenLevel));
    append(kHalfHeightSegment);
    append(orv::packThresholdEntry(windowRight, kHighLevel));
    return entries;
}
