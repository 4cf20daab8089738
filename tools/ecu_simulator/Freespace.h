#pragma once

#include "orv_decoder/OrvFreespacePackage.h"
#include "tools/ecu_simulator/EcuState.h"
#include "tools/ecu_simulator/Scene.h"

namespace ecusim {

/// Sight of the freespace evaluation in millimetres; what is farther away is no obstacle.
inline constexpr double kFreespaceRangeMm = 4000;

/// The free area in front of one sensor in vehicle coordinates.
///
/// The field of view is 60 degrees wide. Corners, seen along the direction: C0 near left, C1 far
/// left, C2 far right, C3 near right; the near ones lie on the rim of the drawn sensor, the far
/// edge touches the range. The arc at the range has its thirds at E0 (left) and E1 (right). The
/// distance items are the thirds from left to right: distance of the nearest obstacle in it, first
/// point on its left edge and second point on its right edge, both at that distance. A third
/// without an obstacle is present too, with the range and both points (0, 0): free to the end of
/// the field.
orv::OrvFreespaceEntry freespaceEntry(std::uint8_t sensorId, const orv::SensorMountPosition& mount,
                                      const Surroundings& surroundings);

/// The entries of all sensors that send in some step of the sequence and are not missing.
orv::OrvFreespacePackage freespacePackage(const EcuState& state, const Scene& scene,
                                          std::uint16_t missingMask, double seconds);

} // namespace ecusim
