#include "ecu/recording/RecordingSweep.h"

#include "ecu/recording/recording_pattern.h"

namespace {

orv::SensorThreshold windowAt(std::uint32_t position, const RecordingSettings& settings)
{
    orv::SensorThreshold threshold;
    threshold.sensorId = settings.sensor;
    threshold.entries = recordingPattern(position, settings.windowLeft, settings.windowRight);
    threshold.scale = 0;
    return threshold;
}

} // namespace

RecordingSweep::RecordingSweep(std::uint32_t& tailResultsLeft) : mTailResultsLeft(tailResultsLeft)
{}

void RecordingSweep::start(std::uint8_t samplesPerStep)
{
    mPosition = 0;
    mSamplesLeft = samplesPerStep;
}

RecordingSweep::Step RecordingSweep::take(const orv::OrvMeasurementResult& result,
                                          const RecordingSettings& settings)
{
    Step step;
    if (const auto& echoes = result.echoesOf(settings.sensor); !echoes.empty())
        step.echoes = &echoes;
    step.position = mPosition;
    if (mSamplesLeft == settings.samplesPerStep)
        step.threshold = windowAt(mPosition, settings);
    step.complete = advance(settings);
    return step;
}

bool RecordingSweep::advance(const RecordingSettings& settings)
{
    --mSamplesLeft;
    if (mPosition < kEndPosition) {
        if (mSamplesLeft < 1) {
            mSamplesLeft = settings.samplesPerStep;
            mPosition += settings.positionStep;
        }
        return false;
    }
    if (mTailResultsLeft > 0) {
        --mTailResultsLeft;
        return false;
    }
    start(settings.samplesPerStep);
    mTailResultsLeft = kTailResults;
    return true;
}

std::uint32_t& RecordingSweep::processTailResultsLeft()
{
    static std::uint32_t left = kTailResults;
    return left;
}
