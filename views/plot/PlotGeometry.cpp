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

std::vector<QLine> PlotGeometry::gridLines() const
{
    std::vector<QLine> lines;
    for (std::int32_t timeUs = kGridStepUs; timeUs < mTimeRangeUs; timeUs += kGridStepUs)
        lines.emplace_back(x(timeUs), 0, x(timeUs), mSize.height());
    for (std::size_t level = 0; level < orv::kThresholdLevelsDb.size(); ++level) {
        const int levelLine = levelY(static_cast<std::uint8_t>(level));
        lines.emplace_back(0, levelLine, mSize.width(), levelLine);
    }
    return lines;
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
