#include "ecu/recording/EchoSamples.h"

#include "orv_decoder/tables.h"

#include <QByteArray>
#include <QIODevice>

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>

namespace {

using Amplitudes = std::array<float, orv::kMagnitudesDb.size()>;

Amplitudes magnitudeAmplitudes()
{
    Amplitudes amplitudes;
    std::ranges::transform(orv::kMagnitudesDb, amplitudes.begin(), amplitudeOfDecibels);
    return amplitudes;
}

float amplitudeOfMagnitude(std::uint16_t magnitude)
{
    static const Amplitudes amplitudes = magnitudeAmplitudes();
    return amplitudes[orv::magnitudeIndex(magnitude)];
}

QByteArray csvLine(std::uint16_t timeOfFlight, const std::vector<std::uint16_t>& magnitudes)
{
    QByteArray line = QByteArray::number(timeOfFlight);
    for (const std::uint16_t magnitude : magnitudes)
        line.append(',').append(QByteArray::number(magnitude));
    return line.append('\n');
}

} // namespace

float amplitudeOfDecibels(float decibels)
{
    return std::pow(10.0F, decibels / 20.0F);
}

void EchoSeries::add(std::uint16_t magnitude, SampleStore store)
{
    const double amplitude = amplitudeOfMagnitude(magnitude);
    mMaximum = std::max(mMaximum, amplitude);
    mSum += amplitude;
    ++mCount;
    if (store == SampleStore::Everything)
        mMagnitudes.push_back(magnitude);
}

double EchoSeries::amplitude(EchoValue value) const
{
    if (value == EchoValue::Maximum || mCount == 0)
        return mMaximum;
    return mSum / static_cast<double>(mCount);
}

void EchoSamples::add(const std::vector<orv::OrvSensorEcho>& echoes)
{
    for (const orv::OrvSensorEcho& echo : echoes) {
        if (echo.timeOfFlight != 0)
            mSeries[echo.timeOfFlight].add(echo.magnitude, mStore);
    }
}

bool writeCsv(const EchoSamples& samples, QIODevice& device)
{
    assert(samples.store() == SampleStore::Everything);
    for (const auto& [timeOfFlight, series] : samples.series()) {
        const QByteArray line = csvLine(timeOfFlight, series.magnitudes());
        if (device.write(line) != line.size())
            return false;
    }
    return true;
}
