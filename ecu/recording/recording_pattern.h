#pragma once

#include "orv_decoder/SensorThreshold.h"

#include <cstdint>
#include <span>

/// The last position of a sweep: its window opens 29.7 ms after the start.
inline constexpr std::uint32_t kEndPosition = 145;

/// Positions that one fully blocked segment of 6144 microseconds spans.
inline constexpr std::uint32_t kPositionsOfLead = 30;

/// The time indexes of the segments that together last `row` x 204.8 microseconds, in the order of
/// the curve. At most three; none for row 0 and for rows from kPositionsOfLead on.
std::span<const std::uint8_t> delaySegments(std::uint32_t row);

/// The threshold curve that lets the echoes of one receive window pass and blocks all others.
///
/// The window opens `position` x 204.8 microseconds after the start and is followed by a
/// half-height and a high segment. Segments beyond the twelfth are left out.
/// @param windowLeft, windowRight time indexes 0..7: how long the window stays open and how long
///        the high segment lasts
orv::ThresholdEntries recordingPattern(std::uint32_t position, std::uint8_t windowLeft,
                                       std::uint8_t windowRight);
