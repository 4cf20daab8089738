#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace orv {

/// Appends little-endian numbers to a growing block of bytes.
class ByteWriter
{
public:
    void u8(std::uint8_t value) { mBytes.push_back(value); }                 ///< 1 byte
    void u16(std::uint16_t value);                                           ///< 2 bytes
    void i16(std::int16_t value) { u16(static_cast<std::uint16_t>(value)); } ///< 2 bytes
    void u32(std::uint32_t value);                                           ///< 4 bytes
    void bytes(std::span<const std::uint8_t> block);                         ///< as they stand

    /// Hands out what was written; the writer is empty afterwards.
    std::vector<std::uint8_t> take() { return std::exchange(mBytes, {}); }

private:
    std::vector<std::uint8_t> mBytes;
};

} // namespace orv
