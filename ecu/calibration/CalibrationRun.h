#pragma once

#include <cstdint>
#include <functional>

/// Waits for the end of an automatic calibration that the ECU has started: swings a busy indicator
/// back and forth and asks the ECU after each sweep.
class CalibrationRun
{
public:
    enum class Ending {
        Finished,
        AbortedByEcu,
        ExchangeFailed,
        TimedOut,
        Abandoned, ///< nobody watches any more
    };

    struct Hooks
    {
        std::function<void(int milliseconds)> wait;

        /// Shows the indicator at 0..100, `inverted` on the way back. False abandons the run.
        std::function<bool(int value, bool inverted)> show;

        /// The calibration state as OrvCtrlClient reads it.
        std::function<std::int8_t()> readState;
    };

    explicit CalibrationRun(Hooks hooks);

    /// Returns within 21.5 seconds of waiting and 21 reads of the state.
    Ending run();

private:
    bool sweep(bool inverted);

    Hooks mHooks;
};
