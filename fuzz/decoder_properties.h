#pragma once

#include <cstdint>
#include <span>

/// What holds of every decoder whatever bytes it is fed: it does not crash, and what it accepts is
/// within the limits of its record and survives a round trip. Each returns false where that breaks.

bool measurementDecoderHolds(std::span<const std::uint8_t> bytes);
bool freespaceDecoderHolds(std::span<const std::uint8_t> bytes);

/// The frame of a reply and, once the frame is accepted, every record that a reply can carry.
bool controlReplyDecoderHolds(std::span<const std::uint8_t> bytes);

bool controlRequestDecoderHolds(std::span<const std::uint8_t> bytes);
