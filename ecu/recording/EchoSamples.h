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

/// What is kept of the samples of a time of flight.
enum class SampleStore {
    Everything,  ///< each magnitude code in its turn, for a file
    DrawnValues, ///< what drawing needs alone: takes no more room however many samples come
};

/// The magnitude codes received at one time of flight and what drawing needs to know of them.
class EchoSeries
{
public:
    void add(std::uint16_t magnitude, SampleStore store = SampleStore::Everything);

    /// In arrival order; empty when only the drawn values are kept.
    const std::vector<std::uint16_t>& magnitudes() const { return mMagnitudes; }

    /// A fraction of full scale: the maximum or the mean of the amplitudes of the magnitudes.
    double amplitude(EchoValue value) const;

private:
    std::vector<std::uint16_t> mMagnitudes;
    double mMaximum = -1.0;
    double mSum = 0.0;
    std::uint64_t mCount = 0;
};

/// The echoes of one sensor, collected by time of flight. The cost of adding one does not depend
/// on how many are there.
class EchoSamples
{
public:
    using SeriesByTime = std::map<std::uint16_t, EchoSeries>;

    explicit EchoSamples(SampleStore store = SampleStore::Everything) : mStore(store) {}

    /// Keeps the echoes whose time of flight is not 0.
    void add(const std::vector<orv::OrvSensorEcho>& echoes);
    void clear() { mSeries.clear(); }

    SampleStore store() const { return mStore; }

    /// By time of flight in microseconds.
    const SeriesByTime& series() const { return mSeries; }

private:
    SampleStore mStore;
    SeriesByTime mSeries;
};

/// Writes one line a time of flight: the microseconds, then the magnitude codes, comma separated.
/// False when the device does not take everything.
/// @param samples a store of everything
bool writeCsv(const EchoSamples& samples, QIODevice& device);

/// The amplitude of a value in decibels of full scale, as a fraction of full scale.
float amplitudeOfDecibels(float decibels);
