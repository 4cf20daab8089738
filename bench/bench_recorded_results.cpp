#include "ecu/link/EcuLink.h"
#include "ecu/link/LinkSettings.h"
#include "ecu/link/LinkSupervisor.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/SimulatorProcess.h"
#include "views/recording/OrvgCurveRecordingDialog.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QMessageBox>
#include <benchmark/benchmark.h>

namespace {

// As many a second as the program takes.
constexpr int kRate = 90;
constexpr int kPatienceMs = 60'000;

// What a sweep takes with the dialog's defaults, when it is handed one result after the other.
std::uint32_t resultsOfASweep()
{
    std::uint32_t tailResultsLeft = kTailResults;
    RecordingSweep sweep(tailResultsLeft);
    const RecordingSettings settings;
    sweep.start(settings.samplesPerStep);
    std::uint32_t count = 1;
    while (!sweep.take({}, settings).complete)
        ++count;
    return count;
}

// A recording in the dialog from the stream of the simulated ECU, which numbers its results, over
// the link of the program.
class RecordedStream
{
public:
    RecordedStream()
    {
        mDialog.show();
        QObject::connect(&mSupervisor, &LinkSupervisor::measurementReceived, &mDialog,
                         &OrvgCurveRecordingDialog::onNewMeasResult);
        QObject::connect(&mSupervisor, &LinkSupervisor::measurementReceived, &mDialog,
                         [this](const orv::OrvMeasurementResult& result) { follow(result); });
        mSupervisor.setCapture(true);
    }

    /// What the ECU sent from the first result of the sweep to the one that completed it; 0 when
    /// none did.
    std::uint32_t record()
    {
        const QDeadlineTimer deadline(kPatienceMs);
        while (mLast == 0 && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return mLast == 0 ? 0 : mLast - mStarting;
    }

    bool hasFailedExchange() { return !mLink.client().lastError().empty(); }

private:
    // After the dialog has had the result. The first one after the click starts the recording and
    // is no part of the sweep.
    void follow(const orv::OrvMeasurementResult& result)
    {
        ++mCount;
        if (mCount == 1)
            mDialog.onRecordClicked();
        else if (mCount == 2)
            mStarting = result.measurementWord;
        else if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            mLast = result.measurementWord;
            box->accept();
        }
    }

    const std::uint16_t mPort = freeUdpPort();
    SimulatorProcess mEcu{{QStringLiteral("--rate"), QString::number(kRate),
                           QStringLiteral("--receive-port"), QString::number(mPort),
                           QStringLiteral("--fsp-port"), QStringLiteral("0")}};
    EcuLink mLink{LinkSettings{.ecuIp = QStringLiteral("127.0.0.1"),
                               .controlPort = mEcu.controlPort(),
                               .receivePort = mPort}};
    LinkSupervisor mSupervisor{mLink};
    OrvgCurveRecordingDialog mDialog{&mLink.client(), nullptr};
    std::uint32_t mCount = 0;
    std::uint32_t mStarting = 0;
    std::uint32_t mLast = 0;
};

// It takes five seconds, so it is done once for all repetitions.
std::uint32_t resultsOfTheEcu()
{
    static const std::uint32_t results = [] {
        RecordedStream stream;
        const std::uint32_t sent = stream.record();
        return stream.hasFailedExchange() ? 0 : sent;
    }();
    return results;
}

void recordingOfAStream(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(resultsOfTheEcu());
    if (resultsOfTheEcu() < resultsOfASweep())
        state.SkipWithError("the recording did not come to its end");
    state.counters["results_of_the_ecu"] = resultsOfTheEcu();
    state.counters["results_of_the_sweep"] = resultsOfASweep();
}
BENCHMARK(recordingOfAStream)->Iterations(1);

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
