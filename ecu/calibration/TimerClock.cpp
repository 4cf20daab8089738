#include "ecu/calibration/TimerClock.h"

#include "ecu/calibration/calibration_step.h"

TimerClock::TimerClock(QObject* parent) : CalibrationClock(parent)
{
    mTimer.setTimerType(Qt::PreciseTimer);
    mTimer.setInterval(kCalibrationStepMs);
    connect(&mTimer, &QTimer::timeout, this, &TimerClock::ticked);
}

void TimerClock::start()
{
    mTime.start();
    mTimer.start();
}

void TimerClock::stop()
{
    mTimer.stop();
}

bool TimerClock::isRunning() const
{
    return mTimer.isActive();
}

qint64 TimerClock::elapsedMs() const
{
    return mTime.elapsed();
}
