#pragma once

#include "orv_decoder/SensorThreshold.h"

namespace ecusim {

/// How a sensor takes part in a measurement, as far as its threshold is concerned.
enum class Hearing {
    Active,  ///< it sends itself: the curve holds as it is
    Passive, ///< it only listens: the curve is scaled down
};

/// The level (fraction of full scale) that an echo at this time of flight must exceed. The curve
/// goes in straight steps; the last segment's level holds after its end.
double thresholdLevel(const orv::SensorThreshold& threshold, double timeOfFlightUs,
                      Hearing hearing);

/// The factor of a scale index in passive mode; the ECU treats 4 as 3.
double passiveScale(std::uint8_t scaleIndex);

} // namespace ecusim
