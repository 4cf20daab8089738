#pragma once

#include "ecu/calibration/CalibrationClock.h"

/// The clock of a calibration whose time a test moves on.
class ManualClock : public CalibrationClock
{
public:
    using CalibrationClock::CalibrationClock;

    void start() override
    {
        mElapsedMs = 0;
        mIsRunning = true;
    }

    void stop() override { mIsRunning = false; }
    bool isRunning() const override { return mIsRunning; }
    qint64 elapsedMs() const override { return mElapsedMs; }

    /// Ticks every ten milliseconds up to this time, as long as the run goes on.
    void runTo(qint64 timeMs)
    {
        while (mIsRunning && mElapsedMs < timeMs)
            jumpTo(mElapsedMs + 10);
    }

    /// One tick, late if it is more than ten milliseconds.
    void jumpTo(qint64 timeMs)
    {
        mElapsedMs = timeMs;
        emit ticked();
    }

    /// Lets time pass without a tick, as while something blocks.
    void spend(qint64 durationMs) { mElapsedMs += durationMs; }

private:
    qint64 mElapsedMs = 0;
    bool mIsRunning = false;
};
