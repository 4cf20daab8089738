#pragma once

#include "ecu/recording/EchoSamples.h"
#include "orv_decoder/SensorThreshold.h"
#include "orv_decoder/constants.h"

#include <QPoint>
#include <QSize>

#include <array>
#include <cstdint>
#include <vector>

/// Maps times of flight and amplitudes to the pixels of a plot: time 0 at the left edge, amplitude
/// 0 at the bottom, full scale at the top. Coordinates are truncated, not rounded.
class PlotGeometry
{
public:
    using Vertices = std::array<QPoint, orv::kThresholdEntryCount>;

    explicit PlotGeometry(QSize size, std::int32_t timeRangeUs = orv::kMaxTimeOfFlightUs);

    /// Beyond the right edge for times above the time range.
    int x(std::int32_t timeUs) const;
    /// @param amplitude a fraction of full scale
    int y(double amplitude) const;
    /// @param levelIndex 0..31
    int levelY(std::uint8_t levelIndex) const;

    /// Where the upright lines of the time grid stand, from left to right.
    std::vector<int> gridColumns() const;

    /// Where the lines of the threshold levels lie, from the bottom up. Levels that share a row of
    /// pixels share their line.
    std::vector<int> gridRows() const;

    /// Where the twelve segments of a threshold curve end.
    Vertices thresholdVertices(const orv::ThresholdEntries& entries) const;

    /// The tops of the sticks from left to right, one for each pixel column that has echoes: the
    /// latest time of flight of a column counts.
    std::vector<QPoint> samplePoints(const EchoSamples& samples, EchoValue value) const;

private:
    QSize mSize;
    std::int32_t mTimeRangeUs;
};
