#include "orv_decoder/Crc8.h"

namespace orv {

std::uint8_t crc8(std::span<const std::uint8_t> bytes)
{
    if (bytes.empty())
        return 0;
    unsigned crc = 0xFF;
    for (std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? (crc >> 1) ^ 0x64 : crc >> 1;
    }
    return static_cast<std::uint8_t>(crc ^ 0xFF);
}

} // namespace orv
