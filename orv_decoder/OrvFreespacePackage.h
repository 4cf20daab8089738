#pragma once

#include "orv_decoder/OrvSensorPosition.h"
#include "orv_decoder/ValidFlag.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace orv {

/// A point of the vehicle's plane in millimetres.
struct OrvPoint
{
    std::int16_t x = 0; ///< of the vehicle
    std::int16_t y = 0; ///< of the vehicle

    bool operator==(const OrvPoint&) const = default;
};

/// The nearest obstacle in one wedge of a sensor's field of view.
struct OrvDistanceItem
{
    std::uint8_t mode = 0;        ///< 1 when the datagram held the item, 0 when it is absent
    std::uint16_t distanceMm = 0; ///< from the sensor
    OrvPoint firstPoint;          ///< one end of what the display draws
    OrvPoint secondPoint;         ///< the other end

    bool isPresent() const { return mode != 0; } ///< whether the datagram held it

    bool operator==(const OrvDistanceItem&) const = default;
};

/// The free area in front of one sensor.
struct OrvFreespaceEntry
{
    ValidFlag valid = false;                  ///< complete
    std::uint8_t sensorId = 0;                ///< 0..11
    std::array<OrvPoint, 4> corners;          ///< of the field of view
    std::array<OrvPoint, 2> arcEnds;          ///< end points of its arc
    std::array<OrvPoint, 2> secondPair;       ///< carried through, not drawn
    OrvSensorPosition position;               ///< of the sensor, leading word 0
    std::array<OrvDistanceItem, 3> distances; ///< left, middle, right

    bool operator==(const OrvFreespaceEntry&) const = default;
};

/// One live freespace datagram.
struct OrvFreespacePackage
{
    ValidFlag valid = false;                ///< every entry is complete
    std::vector<OrvFreespaceEntry> entries; ///< datagram order, at most 255

    bool operator==(const OrvFreespacePackage&) const = default;
};

/// Decodes a freespace datagram into `package`, whose memory is used again. False unless every
/// announced entry is complete; decoding stops at the first one that is not, and the entries before
/// it are kept.
bool decodeInto(std::span<const std::uint8_t> datagram, OrvFreespacePackage& package);

/// The datagram that decodes to `package`; entries past the 255th are left out.
std::vector<std::uint8_t> encodeFreespacePackage(const OrvFreespacePackage& package);

} // namespace orv
