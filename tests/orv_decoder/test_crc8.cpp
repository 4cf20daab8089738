#include "orv_decoder/Crc8.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Row
{
    const char* name;
    Bytes bytes;
    std::uint8_t checksum;
};

class Crc8 : public testing::TestWithParam<Row>
{};

TEST_P(Crc8, isTheKnownByte)
{
    EXPECT_EQ(orv::crc8(GetParam().bytes), GetParam().checksum);
}

INSTANTIATE_TEST_SUITE_P(
    Known, Crc8,
    testing::Values(Row{"noBytesAtAll", {}, 0x00}, Row{"zero", {0x00}, 0x99},
                    Row{"one", {0x01}, 0xFB}, Row{"allBitsSet", {0xFF}, 0xFF},
                    Row{"fourTimesAllBitsSet", {0xFF, 0xFF, 0xFF, 0xFF}, 0xFA},
                    Row{"digits", {'1', '2', '3', '4', '5', '6', '7', '8', '9'}, 0xD0},
                    Row{"readThresholdsOfSensor2", {0x01, 0x01, 0x02}, 0x85}),
    [](const auto& row) { return row.param.name; });

// As docs/protocol.md tells it, bit by bit.
std::uint8_t shiftedEightTimes(unsigned value)
{
    for (int bit = 0; bit < 8; ++bit)
        value = (value & 1) ? (value >> 1) ^ 0x64 : value >> 1;
    return static_cast<std::uint8_t>(value);
}

TEST(Crc8Property, everyByteIsShiftedEightTimes)
{
    for (unsigned byte = 0; byte < 256; ++byte)
        EXPECT_EQ(orv::crc8(Bytes{static_cast<std::uint8_t>(byte)}),
                  shiftedEightTimes(0xFF ^ byte) ^ 0xFF)
            << byte;
}

TEST(Crc8Property, everySingleBitErrorIsSeen)
{
    const Bytes frame = {0x01, 0x02, 0x0A, 0x2B, 0x4C, 0x6D, 0x8E, 0xAF};
    for (std::size_t bit = 0; bit < frame.size() * 8; ++bit) {
        Bytes damaged = frame;
        damaged[bit / 8] = static_cast<std::uint8_t>(damaged[bit / 8] ^ (1U << bit % 8));
        EXPECT_NE(orv::crc8(damaged), orv::crc8(frame)) << "bit " << bit;
    }
}

TEST(Crc8Property, swappedBytesAreSeen)
{
    EXPECT_NE(orv::crc8(Bytes{0x12, 0x34}), orv::crc8(Bytes{0x34, 0x12}));
}

} // namespace
