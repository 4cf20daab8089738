#include "ecu/calibration/CalibrationRun.h"

#include "ecu/calibration/TimerClock.h"
#include "ecu/calibration/calibration_step.h"
#include "orv_decoder/OrvCtrlClient.h"

namespace {

using Ending = CalibrationRun::Ending;

std::optional<Ending> endingOf(std::int8_t state)
{
    switch (state) {
    case orv::OrvCtrlClient::kCalibrationFinished:
        return Ending::Finished;
    case orv::OrvCtrlClient::kCalibrationAborted:
        return Ending::AbortedByEcu;
    case orv::OrvCtrlClient::kCalibrationPollFailed:
        return Ending::ExchangeFailed;
    default:
        return std::nullopt;
    }
}

} // namespace

CalibrationRun::CalibrationRun(CalibrationClock* clock, QObject* parent)
    : QObject(parent), mClock(clock ? clock : new TimerClock(this))
{
    connect(mClock, &CalibrationClock::ticked, this, &CalibrationRun::advance);
}

bool CalibrationRun::start(orv::OrvCtrlClient& client, std::uint8_t sensorId)
{
    if (isRunning() || !client.startAutoCalibration(sensorId))
        return false;
    mClient = &client;
    mSensorId = sensorId;
    mSweepsAskedAfter = 0;
    mClock->start();
    return true;
}

bool CalibrationRun::isRunning() const
{
    return mClock->isRunning();
}

void CalibrationRun::advance()
{
    if (const auto ending = askAfterSweep()) {
        mClock->stop();
        emit ended(*ending);
        return;
    }
    // The time after the exchange, which takes a while too.
    const CalibrationStep step = calibrationStepAt(mClock->elapsedMs());
    emit stepped(step.value, step.inverted);
}

// Once for all sweeps that were over since it last asked.
std::optional<CalibrationRun::Ending> CalibrationRun::askAfterSweep()
{
    const std::int64_t sweep = calibrationStepAt(mClock->elapsedMs()).sweep;
    if (sweep == mSweepsAskedAfter)
        return std::nullopt;
    mSweepsAskedAfter = sweep;
    const auto ending = endingOf(mClient->readAutoCalibrationState());
    if (ending || sweep < kCalibrationSweeps)
        return ending;
    return Ending::TimedOut;
}
