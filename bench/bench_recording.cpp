#include "ecu/recording/recording_pattern.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "tests/support/SimulatorProcess.h"
#include "views/recording/OrvgCurveRecordingDialog.h"

#include <QApplication>
#include <QMessageBox>
#include <benchmark/benchmark.h>

#include <chrono>
#include <optional>
#include <utility>
#include <vector>

namespace {

// With the dialog's defaults.
constexpr int kSamplesPerStep = 3;

constexpr int kRecordings = 100;

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// Adds up how long the exchanges take.
class TimedSocket : public orv::OrvCtrlSocketBase
{
public:
    explicit TimedSocket(std::uint16_t port) : mSocket("127.0.0.1", port) {}

    Seconds takeElapsed() { return std::exchange(mElapsed, Seconds::zero()); }

    bool sendReceive(std::vector<std::uint8_t>& buffer) override
    {
        const auto start = Clock::now();
        const bool answered = mSocket.sendReceive(buffer);
        mElapsed += Clock::now() - start;
        return answered;
    }

    bool setReceiveTimeout(std::uint32_t timeoutMs) override
    {
        return mSocket.setReceiveTimeout(timeoutMs);
    }

private:
    orv::OrvCtrlSocket mSocket;
    Seconds mElapsed{};
};

// The sensor hears two obstacles wherever the window stands, at times that change with it.
orv::OrvMeasurementResult resultAt(std::uint32_t position)
{
    const auto shift = static_cast<std::uint16_t>(51 * position);
    orv::OrvMeasurementResult result;
    result.valid = true;
    result.echoes[0] = {{.magnitude = 9, .timeOfFlight = static_cast<std::uint16_t>(5120 + shift)},
                        {.magnitude = 5, .timeOfFlight = static_cast<std::uint16_t>(9216 + shift)}};
    return result;
}

// All results of a recording but the one that completes it.
std::vector<orv::OrvMeasurementResult> recordedResults()
{
    std::vector<orv::OrvMeasurementResult> results = {resultAt(0)};
    for (std::uint32_t position = 0; position < kEndPosition; ++position)
        results.insert(results.end(), kSamplesPerStep, resultAt(position));
    results.insert(results.end(), kTailResults, resultAt(kEndPosition));
    return results;
}

// A dialog on the screen that records from the simulated ECU, a process that answers at once.
class Recorder
{
public:
    Recorder() { mDialog.show(); }

    struct Times
    {
        Seconds whole{};
        Seconds exchanges{};
    };

    /// A whole recording up to the box that waits for the user; nothing when it does not get there.
    std::optional<Times> record()
    {
        mSocket.takeElapsed();
        const auto start = Clock::now();
        mDialog.onRecordClicked();
        for (const orv::OrvMeasurementResult& result : mResults)
            mDialog.onNewMeasResult(result);
        const Times times{Clock::now() - start, mSocket.takeElapsed()};
        mDialog.onNewMeasResult(resultAt(kEndPosition));
        if (!answerBox() || !mClient.lastError().empty())
            return std::nullopt;
        return times;
    }

private:
    // False when none opened.
    bool answerBox()
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return false;
        box->accept();
        return true;
    }

    SimulatorProcess mEcu{{"--streams", "off"}};
    TimedSocket mSocket{mEcu.controlPort()};
    orv::OrvCtrlClient mClient{&mSocket};
    OrvgCurveRecordingDialog mDialog{&mClient, nullptr};
    std::vector<orv::OrvMeasurementResult> mResults = recordedResults();
};

// Both benchmarks show a part of the time of the same recordings: measured apart, the waiting for
// the other process would differ by more than what is compared.
const std::vector<Recorder::Times>& recordings()
{
    static const std::vector<Recorder::Times> times = [] {
        Recorder recorder;
        std::vector<Recorder::Times> complete;
        for (int i = 0; i < kRecordings; ++i) {
            if (const auto recorded = recorder.record())
                complete.push_back(*recorded);
        }
        return complete;
    }();
    return times;
}

void recording(benchmark::State& state, Seconds Recorder::Times::*part)
{
    if (recordings().size() != kRecordings)
        state.SkipWithError("a recording did not come to its end");
    for (std::size_t i = 0; state.KeepRunning(); ++i)
        state.SetIterationTime((recordings()[i % kRecordings].*part).count());
}
BENCHMARK_CAPTURE(recording, whole, &Recorder::Times::whole)
    ->Iterations(kRecordings)
    ->UseManualTime();
BENCHMARK_CAPTURE(recording, exchangesAlone, &Recorder::Times::exchanges)
    ->Iterations(kRecordings)
    ->UseManualTime();

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
