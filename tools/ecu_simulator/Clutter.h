#pragma once

#include "orv_decoder/SensorThreshold.h"

#include <cstdint>
#include <vector>

namespace ecusim {

/// What a sensor hears although nothing is there: its own membrane ringing down and the ground in
/// front of it. In decibels of full scale; the mounting makes the sensors differ a little.
double clutterDb(std::uint8_t sensorId, double timeOfFlightUs);

/// Times of flight in microseconds at which a sensor's clutter shows up as single echoes.
std::vector<double> clutterTimes(std::uint8_t sensorId);

/// The segment times that the ECU uses for its own curves, with these levels from short to long.
orv::ThresholdEntries curveWithLevels(const std::array<std::uint8_t, 12>& levelIndexes);

/// The curve that the automatic calibration finds: as low as possible, but above the clutter.
orv::ThresholdEntries calibratedCurve(std::uint8_t sensorId, bool hasClutter);

} // namespace ecusim
