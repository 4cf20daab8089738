#include "orv_decoder/Crc8.h"

#include <array>

namespace orv {

namespace {

// What eight shifts make of each value of the register.
constexpr std::array<std::uint8_t, 256> shiftedRegisters()
{
    std::array<std::uint8_t, 256> shifted{};
    for (unsigned value = 0; value < shifted.size(); ++value) {
        unsigned crc = value;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? (crc >> 1) ^ 0x64 : crc >> 1;
        shifted[value] = static_cast<std::uint8_t>(crc);
    }
    return shifted;
}

constexpr auto kShiftedRegisters = shiftedRegisters();

} // namespace

std::uint8_t crc8(std::span<const std::uint8_t> bytes)
{
    if (bytes.empty())
        return 0;
    std::uint8_t crc = 0xFF;
    for (const std::uint8_t byte : bytes)
        crc = kShiftedRegisters[crc ^ byte];
    return static_cast<std::uint8_t>(crc ^ 0xFF);
}

} // namespace orv
