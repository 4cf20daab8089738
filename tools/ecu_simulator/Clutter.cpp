#include "tools/ecu_simulator/Clutter.h"

#include "orv_decoder/tables.h"

#include <algorithm>
#include <cmath>

namespace ecusim {

namespace {

constexpr double kSilenceDb = -60;
constexpr double kRingDownEndUs = 1200;
constexpr double kGroundCentreUs = 3900;
constexpr double kGroundWidthUs = 1900;

// How far a calibrated curve keeps above the clutter; noise stays below it.
constexpr double kCalibrationMarginDb = 3;
constexpr std::uint8_t kLowestCalibratedLevel = 3;

constexpr std::array<std::uint8_t, 12> kSegmentTimes = {2, 1, 2, 3, 4, 4, 5, 5, 6, 6, 7, 7};

double ringDownDb(double timeUs)
{
    return timeUs < kRingDownEndUs ? -2 - 27 * timeUs / kRingDownEndUs : kSilenceDb;
}

double groundDb(std::uint8_t sensorId, double timeUs)
{
    const double mounting = 0.4 * (sensorId * 2 % 5 - 2);
    const double fromCentre = (timeUs - kGroundCentreUs) / kGroundWidthUs;
    return -22.5 + mounting - 4 * fromCentre * fromCentre;
}

double loudestClutterDb(std::uint8_t sensorId, double fromUs, double toUs)
{
    constexpr double kStepUs = 51.2;
    double loudest = kSilenceDb;
    const int stepCount = static_cast<int>(std::ceil((toUs - fromUs) / kStepUs));
    for (int step = 0; step < stepCount; ++step)
        loudest = std::max(loudest, clutterDb(sensorId, fromUs + step * kStepUs));
    return loudest;
}

std::uint8_t lowestLevelAbove(double decibels)
{
    const auto& levels = orv::kThresholdLevelsDb;
    const auto above = std::upper_bound(levels.begin() + kLowestCalibratedLevel, levels.end() - 1,
                                        static_cast<float>(decibels));
    return static_cast<std::uint8_t>(above - levels.begin());
}

} // namespace

double clutterDb(std::uint8_t sensorId, double timeOfFlightUs)
{
    return std::max(ringDownDb(timeOfFlightUs), groundDb(sensorId, timeOfFlightUs));
}

std::vector<double> clutterTimes(std::uint8_t sensorId)
{
    const double shift = 90.0 * (sensorId * 5 % 7);
    return {350, 750, 2400 + shift, 3300 + shift, 4250 - shift, 5500 - shift};
}

orv::ThresholdEntries curveWithLevels(const std::array<std::uint8_t, 12>& levelIndexes)
{
    orv::ThresholdEntries entries{};
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i] = orv::packThresholdEntry(kSegmentTimes[i], levelIndexes[i]);
    return entries;
}

orv::ThresholdEntries calibratedCurve(std::uint8_t sensorId, bool hasClutter)
{
    std::array<std::uint8_t, 12> levels{};
    double start = 0;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const double end = start + orv::kSegmentDurationsUs[kSegmentTimes[i]];
        const double clutter = hasClutter ? loudestClutterDb(sensorId, start, end) : kSilenceDb;
        levels[i] = lowestLevelAbove(clutter + kCalibrationMarginDb);
        start = end;
    }
    return curveWithLevels(levels);
}

} // namespace ecusim
