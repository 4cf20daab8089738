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
    explicit ByteReader(std::span<const std::uint8_t> bytes) : mBytes(bytes) {} ///< borrows them

    std::uint8_t u8() { return static_cast<std::uint8_t>(take<1>()); }    ///< the next byte
    std::uint16_t u16() { return static_cast<std::uint16_t>(take<2>()); } ///< of the next 2 bytes
    std::int16_t i16() { return static_cast<std::int16_t>(u16()); }       ///< of the next 2 bytes
    std::uint32_t u32() { return take<4>(); }                             ///< of the next 4 bytes

    /// The next `count` bytes as they stand; none when fewer are left.
    std::span<const std::uint8_t> bytes(std::size_t count)
    {
        const auto taken = mBytes.first(ensure(count) ? count : 0);
        mBytes = mBytes.subspan(taken.size());
        return taken;
    }

    /// Bytes not yet read.
    std::size_t left() const { return mBytes.size(); }

    /// False once a read asked for more than was left.
    explicit operator bool() const { return mOk; }

private:
    template<std::size_t Width>
    std::uint32_t take()
    {
        if (!ensure(Width))
            return 0;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < Width; ++i)
            value |= std::uint32_t{mBytes[i]} << (8 * i);
        mBytes = mBytes.subspan(Width);
        return value;
    }

    // Nothing is left after a read that failed, so that the next one fails as well.
    bool ensure(std::size_t count)
    {
        if (mBytes.size() >= count)
            return true;
        mOk = false;
        mBytes = {};
        return false;
    }

    std::span<const std::uint8_t> mBytes;
    bool mOk = true;
};

} // namespace orv
