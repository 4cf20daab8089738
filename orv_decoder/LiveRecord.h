#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace orv {

/// A record of a live stream: decodeInto() tells whether a datagram is one, and uses the memory of
/// the record that it is decoded into again. Other decoders return a record of their own.
template<typename T>
concept LiveRecord = requires(std::span<const std::uint8_t> datagram, T& record)
{
    decodeInto(datagram, record);
};

/// Decodes a datagram into a record of its own.
template<LiveRecord T>
std::optional<T> decodeDatagram(std::span<const std::uint8_t> datagram)
{
    T record;
    if (!decodeInto(datagram, record))
        return std::nullopt;
    return record;
}

} // namespace orv
