#pragma once

#include "orv_decoder/ValidFlag.h"

#include <cstdint>
#include <map>
#include <span>
#include <vector>

namespace orv {

/// One echo seen by one sensor.
struct OrvSensorEcho
{
    std::uint8_t magnitude = 0;     ///< code, 0..15 in practice; an index into kMagnitudeLevels
    std::uint8_t secondValue = 0;   ///< carried through unchanged
    std::uint16_t timeOfFlight = 0; ///< microseconds

    bool operator==(const OrvSensorEcho&) const = default;
};

/// What one sensor did in the measurement that produced a result.
enum class OrvSensorRole : std::uint8_t {
    NotInvolved = 0,
    Sending = 1,
    ReceivingOnly = 2,
};

/// One live measurement: who sent, who listened and what was heard.
struct OrvMeasurementResult
{
    ValidFlag valid = false;                                   ///< what decodeInto() said
    std::uint32_t measurementWord = 0;                         ///< carried through unchanged
    bool hasMasks = false;                                     ///< the datagram held the two masks
    std::uint16_t sendMask = 0;                                ///< bit n = sensor n
    std::uint16_t receiveMask = 0;                             ///< bit n = sensor n
    std::map<std::uint8_t, std::vector<OrvSensorEcho>> echoes; ///< by sensor id, datagram order

    /// The role of a sensor; a sensor that the masks cannot name is not involved.
    OrvSensorRole role(std::uint8_t sensorId) const;

    /// What a sensor heard; empty when it heard nothing.
    const std::vector<OrvSensorEcho>& echoesOf(std::uint8_t sensorId) const;

    bool operator==(const OrvMeasurementResult&) const = default;
};

/// Decodes a measurement datagram into `result`, whose memory is used again: nothing is allocated
/// for a sensor that reported before with as many echoes.
///
/// False, and `result` is a fresh one, when fewer than 8 bytes are there or 13 or more sensor
/// blocks are announced. A block that runs past the end is dropped and ends the decoding; the
/// blocks before it stay and the result is valid, as is one of eight bytes without a block count.
bool decodeInto(std::span<const std::uint8_t> datagram, OrvMeasurementResult& result);

/// The datagram that decodes to `result`. Sensors without echoes are left out; the first twelve of
/// the others are kept, and of each the first 255 echoes. A time between two raw steps becomes the
/// later one; the longest is 65484 us.
std::vector<std::uint8_t> encodeMeasurementResult(const OrvMeasurementResult& result);

} // namespace orv
