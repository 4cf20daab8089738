#pragma once

#include <algorithm>
#include <optional>

namespace cli {

/// Says when the packets of a capture are due. A clock that was set back while it was made costs no
/// time, and nothing is due before what stands in front of it.
class ReplayPace
{
public:
    explicit ReplayPace(double speed) : mSpeed(speed) {}

    /// Seconds from the first packet's turn to that of the next one, in the order of the capture.
    double dueAt(double capturedSeconds)
    {
        mDue += std::max(capturedSeconds - mLast.value_or(capturedSeconds), 0.0) / mSpeed;
        mLast = capturedSeconds;
        return mDue;
    }

    /// The capture begins anew: its first packet is due this much later than its last one.
    void beginAgain(double pauseSeconds)
    {
        mDue += pauseSeconds;
        mLast.reset();
    }

private:
    double mSpeed;
    double mDue = 0;
    std::optional<double> mLast;
};

} // namespace cli
