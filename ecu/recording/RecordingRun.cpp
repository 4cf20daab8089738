#include "ecu/recording/RecordingRun.h"

#include "orv_decoder/OrvCtrlClient.h"

namespace {

constexpr int kWatchdogIntervalMs = 2000;

} // namespace

RecordingRun::RecordingRun(orv::OrvCtrlClient* client, QObject* parent,
                           std::uint32_t& tailResultsLeft)
    : QObject(parent), mClient(client), mSweep(tailResultsLeft)
{
    mWatchdog.setInterval(kWatchdogIntervalMs);
    connect(&mWatchdog, &QTimer::timeout, this, &RecordingRun::timeOut);
}

bool RecordingRun::isRecording() const
{
    return mState == State::Recording || mState == State::StopRequested;
}

void RecordingRun::start()
{
    mTime.invalidate();
    mWatchdog.start();
    setState(State::StartRequested);
}

void RecordingRun::requestStop()
{
    if (mState != State::Idle)
        setState(State::StopRequested);
}

void RecordingRun::discard()
{
    if (mState != State::Idle)
        end(Ending::Discarded);
}

void RecordingRun::timeOut()
{
    end(Ending::TimedOut);
}

void RecordingRun::take(const orv::OrvMeasurementResult& result, const RecordingSettings& settings)
{
    switch (mState) {
    case State::StartRequested:
        begin(settings.samplesPerStep);
        break;
    case State::StopRequested:
        end(Ending::Stopped);
        break;
    case State::Recording:
        record(result, settings);
        break;
    case State::Idle:
        break;
    }
}

void RecordingRun::begin(std::uint8_t samplesPerStep)
{
    mTime.start();
    mSweep.start(samplesPerStep);
    setState(State::Recording);
    emit started();
}

void RecordingRun::record(const orv::OrvMeasurementResult& result,
                          const RecordingSettings& settings)
{
    mWatchdog.start();
    const RecordingSweep::Step step = mSweep.take(result, settings);
    // Before anybody hears of the step, who may end the recording: nothing is written after the
    // end.
    if (step.threshold && mClient)
        mClient->writeThresholds(*step.threshold, false);
    if (step.echoes)
        emit heard(*step.echoes);
    if (step.threshold)
        emit windowMoved(*step.threshold, step.position);
    if (step.complete && mState == State::Recording)
        end(Ending::Completed);
}

void RecordingRun::setState(State state)
{
    mState = state;
    emit stateChanged();
}

void RecordingRun::end(Ending ending)
{
    mWatchdog.stop();
    mElapsedMs = mTime.isValid() ? mTime.elapsed() : 0;
    setState(State::Idle);
    emit ended(ending);
}
