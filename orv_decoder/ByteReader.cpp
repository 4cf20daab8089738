#include "orv_decoder/ByteReader.h"

namespace orv {

std::uint8_t ByteReader::u8()
{
    return static_cast<std::uint8_t>(take(1));
}

std::uint16_t ByteReader::u16()
{
    return static_cast<std::uint16_t>(take(2));
}

std::uint32_t ByteReader::u32()
{
    return take(4);
}

std::uint32_t ByteReader::take(std::size_t width)
{
    if (!mOk || mBytes.size() < width) {
        mOk = false;
        mBytes = {};
        return 0;
    }
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < width; ++i)
        value |= std::uint32_t{mBytes[i]} << (8 * i);
    mBytes = mBytes.subspan(width);
    return value;
}

} // namespace orv
