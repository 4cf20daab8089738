#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace orv {

/// The ECU's firmware version, three bytes as received.
struct FirmwareVersion
{
    static constexpr std::size_t kWireSize = 3; ///< bytes

    std::array<std::uint8_t, kWireSize> numbers{}; ///< in the order of text()

    /// The numbers in decimal, joined by dots: "2.14.0".
    std::string text() const;

    bool operator==(const FirmwareVersion&) const = default;
};

/// Nothing unless there are exactly 3 bytes.
std::optional<FirmwareVersion> decodeFirmwareVersion(std::span<const std::uint8_t> bytes);

} // namespace orv
