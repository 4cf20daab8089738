#include "orv_decoder/ByteWriter.h"

namespace orv {

void ByteWriter::u16(std::uint16_t value)
{
    u8(static_cast<std::uint8_t>(value & 0xFF));
    u8(static_cast<std::uint8_t>(value >> 8));
}

void ByteWriter::u32(std::uint32_t value)
{
    u16(static_cast<std::uint16_t>(value & 0xFFFF));
    u16(static_cast<std::uint16_t>(value >> 16));
}

void ByteWriter::bytes(std::span<const std::uint8_t> block)
{
    mBytes.insert(mBytes.end(), block.begin(), block.end());
}

} // namespace orv
