#include "orv_decoder/ByteReader.h"
#include "orv_decoder/ByteWriter.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(ByteReader, takesLittleEndianNumbersOffTheFront)
{
    const Bytes bytes = {0x11, 0x22, 0x33, 0xFE, 0xFF, 0x78, 0x56, 0x34, 0x92, 0x55};
    orv::ByteReader reader(bytes);
    EXPECT_EQ(reader.u8(), 0x11);
    EXPECT_EQ(reader.u16(), 0x3322);
    EXPECT_EQ(reader.i16(), -2);
    EXPECT_EQ(reader.u32(), 0x92345678U);
    EXPECT_EQ(reader.left(), 1U);
    EXPECT_TRUE(reader);
}

TEST(ByteReader, turnsFalseForGoodAtTheFirstReadPastTheEnd)
{
    const Bytes bytes = {0x11};
    orv::ByteReader reader(bytes);
    EXPECT_EQ(reader.u16(), 0);
    EXPECT_FALSE(reader);
    EXPECT_EQ(reader.left(), 0U);
    EXPECT_EQ(reader.u8(), 0);
    EXPECT_FALSE(reader);
}

TEST(ByteReader, isTrueWhenAllWasRead)
{
    const Bytes bytes = {0x11, 0x22};
    orv::ByteReader reader(bytes);
    reader.u16();
    EXPECT_TRUE(reader);
    EXPECT_EQ(reader.left(), 0U);
}

TEST(ByteReader, handsOutBytesAsTheyStand)
{
    const Bytes bytes = {0x11, 0x22, 0x33, 0x44};
    orv::ByteReader reader(bytes);
    const auto taken = reader.bytes(3);
    EXPECT_EQ(Bytes(taken.begin(), taken.end()), (Bytes{0x11, 0x22, 0x33}));
    EXPECT_TRUE(reader.bytes(0).empty());
    EXPECT_TRUE(reader);
    EXPECT_EQ(reader.left(), 1U);
    EXPECT_TRUE(reader.bytes(2).empty());
    EXPECT_FALSE(reader);
    EXPECT_EQ(reader.left(), 0U);
}

TEST(ByteWriter, appendsLittleEndianNumbers)
{
    orv::ByteWriter writer;
    writer.u8(0x11);
    writer.u16(0x3322);
    writer.i16(-2);
    writer.u32(0x92345678);
    writer.bytes(Bytes{0xAA, 0xBB});
    EXPECT_EQ(writer.take(),
              (Bytes{0x11, 0x22, 0x33, 0xFE, 0xFF, 0x78, 0x56, 0x34, 0x92, 0xAA, 0xBB}));
}

TEST(ByteWriter, isEmptyAfterHandingOut)
{
    orv::ByteWriter writer;
    writer.u8(1);
    writer.take();
    EXPECT_TRUE(writer.take().empty());
}

} // namespace
