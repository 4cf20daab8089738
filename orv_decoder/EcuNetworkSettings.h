#pragma once

#include "orv_decoder/ValidFlag.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace orv {

/// The ECU's own network settings. An address keeps its first octet in the lowest byte.
struct EcuNetworkSettings
{
    static constexpr std::size_t kWireSize = 22; ///< bytes

    ValidFlag valid = false;         ///< set by a successful read
    std::uint32_t ecuIp = 0;         ///< the ECU itself
    std::uint32_t subnetMask = 0;    ///< of its subnet
    std::uint32_t gateway = 0;       ///< of its subnet
    std::uint16_t controlPort = 0;   ///< where the ECU takes requests
    std::uint32_t hostIp = 0;        ///< where the ECU sends its live streams
    std::uint16_t receivePort = 0;   ///< of the host, for measurement results
    std::uint16_t freespacePort = 0; ///< 0 = no freespace stream

    bool operator==(const EcuNetworkSettings&) const = default;
};

/// The 22 bytes of the record; the control port stands behind the receiving port there.
std::vector<std::uint8_t> encodeNetworkSettings(const EcuNetworkSettings& settings);

/// Nothing unless there are exactly 22 bytes.
std::optional<EcuNetworkSettings> decodeNetworkSettings(std::span<const std::uint8_t> bytes);

} // namespace orv
