#include "ecu/calibration/CalibrationRun.h"

#include "orv_decoder/OrvCtrlClient.h"

#include <optional>
#include <utility>

namespace {

using Ending = CalibrationRun::Ending;

constexpr int kStartDelayMs = 500;
constexpr int kStepMs = 10;
constexpr int kStepsOfSweep = 100;
constexpr int kMaxSweeps = 21;

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

CalibrationRun::CalibrationRun(Hooks hooks) : mHooks(std::move(hooks)) {}

Ending CalibrationRun::run()
{
    mHooks.wait(kStartDelayMs);
    for (int i = 0; i < kMaxSweeps; ++i) {
        if (!sweep(i % 2 != 0))
            return Ending::Abandoned;
        if (const auto ending = endingOf(mHooks.readState()))
            return *ending;
    }
    return Ending::TimedOut;
}

bool CalibrationRun::sweep(bool inverted)
{
    for (int step = 0; step < kStepsOfSweep; ++step) {
        if (!mHooks.show(inverted ? kStepsOfSweep - step : step, inverted))
            return false;
        mHooks.wait(kStepMs);
    }
    return true;
}
