#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace orv {

/// Takes little-endian numbers off the front of a datagram or payload.
///
/// Reading past the end yields 0 and turns the reader false for good, so a decoder reads a whole
/// record and asks once. The bytes are borrowed and must outlive the reader.
class ByteReader
{
public:
    explicit ByteReader(std::span<const std::uint8_t> bytes) : mBytes(bytes) {}

    std::uint8_t u8();
    std::uint16_t u16();
    std::int16_t i16() { return static_cast<std::int16_t>(u16()); }
    std::uint32_t u32();

    /// Bytes not yet read.
    std::size_t left() const { return mBytes.size(); }

    /// False once a read asked for more than was left.
    explicit operator bool() const { return mOk; }

private:
    std::uint32_t take(std::size_t width);

    std::span<const std::uint8_t> mBytes;
    bool mOk = true;
};

} // namespace orv
