#include "tools/ecu_simulator/ThresholdCurve.h"

#include "orv_decoder/tables.h"

#include <algorithm>

namespace ecusim {

namespace {

constexpr std::array<double, 5> kPassiveScales = {0.5, 0.625, 0.8125, 1, 1};

double curveLevel(const orv::ThresholdEntries& entries, double timeOfFlightUs)
{
    double segmentEnd = 0;
    for (std::uint8_t entry : entries) {
        segmentEnd += orv::kSegmentDurationsUs[orv::timeIndexOf(entry)];
        if (timeOfFlightUs < segmentEnd)
            return orv::kThresholdLevels[orv::levelIndexOf(entry)];
    }
    return orv::kThresholdLevels[orv::levelIndexOf(entries.back())];
}

} // namespace

double thresholdLevel(const orv::SensorThreshold& threshold, double timeOfFlightUs, Hearing hearing)
{
    const double level = curveLevel(threshold.entries, timeOfFlightUs);
    return hearing == Hearing::Passive ? level * passiveScale(threshold.scale) : level;
}

double passiveScale(std::uint8_t scaleIndex)
{
    return kPassiveScales[std::min<std::size_t>(scaleIndex, kPassiveScales.size() - 1)];
}

} // namespace ecusim
