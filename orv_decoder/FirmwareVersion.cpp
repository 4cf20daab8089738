#include "orv_decoder/FirmwareVersion.h"

#include <algorithm>

namespace orv {

std::string FirmwareVersion::text() const
{
    return std::to_string(numbers[0]) + '.' + std::to_string(numbers[1]) + '.' +
           std::to_string(numbers[2]);
}

std::optional<FirmwareVersion> decodeFirmwareVersion(std::span<const std::uint8_t> bytes)
{
    if (bytes.size() != FirmwareVersion::kWireSize)
        return std::nullopt;
    FirmwareVersion version;
    std::ranges::copy(bytes, version.numbers.begin());
    return version;
}

} // namespace orv
