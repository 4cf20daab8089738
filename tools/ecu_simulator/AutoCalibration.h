#pragma once

#include <cstdint>

namespace ecusim {

/// How a calibration run ends.
enum class CalibrationOutcome {
    Finish, ///< thresholds are set
    Abort,  ///< the ECU gives up and keeps the old thresholds
    Never,  ///< it runs for ever
    Fail,   ///< asking for its state fails
};

/// Where a calibration run is, as the ECU tells it.
enum class CalibrationState : std::uint8_t {
    Finished = 0, ///< also before the first run
    Running = 1,
    Aborted = 0xFF,
};

/// The clockwork of the automatic calibration; times in milliseconds on any steady clock.
class AutoCalibration
{
public:
    explicit AutoCalibration(std::int64_t durationMs) : mDurationMs(durationMs) {}

    void start(CalibrationOutcome outcome, std::int64_t nowMs)
    {
        mOutcome = outcome;
        mEndMs = nowMs + mDurationMs;
        mState = CalibrationState::Running;
    }

    /// True when a run ended successfully with this call.
    bool advance(std::int64_t nowMs)
    {
        if (mState != CalibrationState::Running || nowMs < mEndMs ||
            mOutcome == CalibrationOutcome::Never)
            return false;
        const bool isFinished = mOutcome != CalibrationOutcome::Abort;
        mState = isFinished ? CalibrationState::Finished : CalibrationState::Aborted;
        return isFinished;
    }

    CalibrationState state() const { return mState; }

private:
    std::int64_t mDurationMs;
    std::int64_t mEndMs = 0;
    CalibrationOutcome mOutcome = CalibrationOutcome::Finish;
    CalibrationState mState = CalibrationState::Finished;
};

} // namespace ecusim
