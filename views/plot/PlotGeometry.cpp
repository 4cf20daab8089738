#include "views/plot/PlotGeometry.h"

#include "orv_decoder/tables.h"

namespace {

// Deliberately not the longest segment duration, which is 6144.
constexpr std::int32_t kGridStepUs = 6172;

} // namespace

PlotGeometry::PlotGeometry(QSize size, std::int32_t timeRangeUs)
    : mSize(size), mTimeRangeUs(timeRangeUs)
{}

int PlotGeometry::x(std::int32_t timeUs) const
{
    return static_cast<int>(std::int64_t{mSize.width()} * timeUs / mTimeRangeUs);
}

int PlotGeometry::y(double amplitude) const
{
    return mSize.height() - static_cast<int>(mSize.height() * amplitude);
}

int PlotGeometry::levelY(std::uint8_t levelIndex) const
{
    return y(amplitudeOfDecibels(orv::kThresholdLevelsDb.at(levelIndex)));
}

std::vector<int> PlotGeometry::gridColumns() const
{
    std::vector<int> columns;
    for (std::int32_t timeUs = kGridStepUs; timeUs < mTimeRangeUs; timeUs += kGridStepUs)
        columns.push_back(x(timeUs));
    return columns;
}

std::vector<int> PlotGeometry::gridRows() const
{
    std::vector<int> rows;
    for (std::size_t level = 0; level < orv::kThresholdLevelsDb.size(); ++level) {
        const int row = levelY(static_cast<std::uint8_t>(level));
        if (rows.empty() || rows.back() != row)
            rows.push_back(row);
    }
    return rows;
}

PlotGeometry::Vertices PlotGeometry::thresholdVertices(const orv::ThresholdEntries& entries) const
{
    Vertices vertices;
    double segmentEnd = 0.0;
    for (std::size_t k = 0; k < entries.size(); ++k) {
        segmentEnd +=
            mSize.width() * orv::kSegmentDurationsUs[orv::timeIndexOf(entries[k])] / mTimeRangeUs;
        vertices[k] = {static_cast<int>(segmentEnd), levelY(orv::levelIndexOf(entries[k]))};
    }
    return vertices;
}

std::vector<QPoint> PlotGeometry::samplePoints(const EchoSamples& samples, EchoValue value) const
{
    std::vector<QPoint> points;
    for (const auto& [timeOfFlight, series] : samples.series()) {
        const QPoint point(x(timeOfFlight), y(series.amplitude(value)));
        if (!points.empty() && points.back().x() == point.x())
            points.back() = point;
        else
            points.push_back(point);
    }
    return points;
}
