#pragma once

#include "orv_decoder/ValidFlag.h"
#include "orv_decoder/constants.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orv {

/// The twelve packed segments of a threshold curve: time index in bits 5..7, level index in
/// bits 0..4 of each.
using ThresholdEntries = std::array<std::uint8_t, kThresholdEntryCount>;

/// The threshold settings of one sensor.
struct SensorThreshold
{
    static constexpr std::size_t kWireSize = 14; ///< bytes

    ValidFlag valid = false;    ///< set by a successful read
    std::uint8_t sensorId = 0;  ///< 0..11
    ThresholdEntries entries{}; ///< in the order of time
    std::uint8_t scale = 2;     ///< scale index of the passive mode, 0..4

    bool operator==(const SensorThreshold&) const = default;
};

/// The first scale index that the ECU does not have.
inline constexpr std::uint8_t kThresholdScaleLimit = 5;

/// The 14 bytes of one record.
std::vector<std::uint8_t> encodeThreshold(const SensorThreshold& threshold);

/// Nothing unless there are exactly 14 bytes. The scale is not checked here.
std::optional<SensorThreshold> decodeThreshold(std::span<const std::uint8_t> bytes);

/// A threshold record, or why there is none.
struct CheckedThreshold
{
    std::optional<SensorThreshold> record = {}; ///< nothing when a check failed
    std::string error = {};                     ///< which one
};

/// Decodes a record that was read for `sensorId` with the checks that every source of such a
/// record has to pass. Errors: "wrong data size", "wrong sensor id", "wrong scale value read from
/// sensor".
CheckedThreshold checkedThreshold(std::span<const std::uint8_t> bytes, std::uint8_t sensorId);

/// Packs one segment; only the low 3 and 5 bits of the indexes count.
constexpr std::uint8_t packThresholdEntry(unsigned timeIndex, unsigned levelIndex)
{
    return static_cast<std::uint8_t>((timeIndex & 0x07) << 5 | (levelIndex & 0x1F));
}

/// 0..7, an index into kSegmentDurationsUs.
constexpr std::uint8_t timeIndexOf(std::uint8_t entry)
{
    return static_cast<std::uint8_t>(entry >> 5);
}

/// 0..31, an index into kThresholdLevels.
constexpr std::uint8_t levelIndexOf(std::uint8_t entry)
{
    return static_cast<std::uint8_t>(entry & 0x1F);
}

} // namespace orv
