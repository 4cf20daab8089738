#pragma once

// Not Kaitai Struct's C++ runtime, which no package registry has, but a stand-in of our own: what
// the code generated for orv_measurement.ksy needs of it and no more. Generated code finds it by
// this name. It reads numbers off an std::istream, as generated code expects, and in the header, so
// that the compiler may inline them.

#include <bit>
#include <cstdint>
#include <istream>

#define KAITAI_STRUCT_VERSION 11000L

static_assert(std::endian::native == std::endian::little, "numbers are read as they lie in memory");

namespace kaitai {

/// Throws when the stream has too little left.
class kstream
{
public:
    /// The stream is borrowed.
    explicit kstream(std::istream* stream) : mStream(stream)
    {
        mStream->exceptions(std::ios::badbit | std::ios::failbit | std::ios::eofbit);
    }

    std::uint8_t read_u1() { return read<std::uint8_t>(); }
    std::uint16_t read_u2le() { return read<std::uint16_t>(); }
    std::uint32_t read_u4le() { return read<std::uint32_t>(); }

private:
    template<typename Number>
    Number read()
    {
        Number number;
        mStream->read(reinterpret_cast<char*>(&number), sizeof number);
        return number;
    }

    std::istream* mStream;
};

class kstruct
{
public:
    explicit kstruct(kstream* io) : m__io(io) {}
    virtual ~kstruct() = default;

protected:
    kstream* m__io;
};

} // namespace kaitai
