#pragma once

#include <cstdint>

namespace cli {

/// Captures name it as the receiver, and playback sends nowhere else.
inline constexpr const char* kThisHost = "127.0.0.1";

/// The live streams of an ECU.
enum class StreamKind { Measurements, Freespaces };

/// A UDP port for each live stream.
struct StreamPorts
{
    std::uint16_t measurements = 0;
    std::uint16_t freespaces = 0; ///< 0 = none

    std::uint16_t of(StreamKind kind) const
    {
        return kind == StreamKind::Measurements ? measurements : freespaces;
    }
};

} // namespace cli
