#pragma once

#include <cstdint>
#include <span>

namespace orv {

/// Checksum of the control protocol: reflected CRC-8, constant 0x64, start and final XOR 0xFF.
/// No bytes at all give 0.
std::uint8_t crc8(std::span<const std::uint8_t> bytes);

} // namespace orv
