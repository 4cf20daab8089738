#pragma once

#include "orv_decoder/OrvMeasurementResult.h"

#include <cstdint>
#include <map>
#include <vector>

class QIODevice;

/// Which value of the samples of one time of flight a plot shows.
enum class EchoValue {
    Maximum,
    Mean,
};

/// The magnitude codes received at one time of flight and what drawing needs to know of them.
class EchoSeries
{
public:
    void add(std::uint16_t magnitude);

    /// In arrival order.
    const std::vector<std::uint16_t>& magnitudes() const { return mMagnitudes; }

    /// A fraction of full scale: the maximum or the mean of the amplitudes of the magnitudes.
    double amplitude(EchoValue value) const;

private:
    std::vector<std::uint16_t> mMagnitudes;
    double mMaximum = -1.0;
    double mSum = 0.0;
};

/// The echoes of one sensor, collected by time of flight. The cost of adding one does not depend
/// on how many are there.
class EchoSamples
{
public:
    using SeriesByTime = std::map<std::uint16_t, EchoSeries>;

    /// Keeps the echoes whose time of flight is not 0.
    void add(const std::vector<orv::OrvSensorEcho>& echoes);
    void clear() { mSeries.clear(); }

    /// By time of flight in microseconds.
    const SeriesByTime& series() const { return mSeries; }

private:
    SeriesByTime mSeries;
};

/// Writes one line a time of flight: the microseconds, then the magnitude codes, comma separated.
/// False when the device does not take everything.
bool writeCsv(const EchoSamples& samples, QIODevice& device);

/// The amplitude of a value in decibels of full scale, as a fraction of full scale.
float amplitudeOfDecibels(float decibels);
