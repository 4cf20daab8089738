#include "views/live/OrvgLiveView.h"

#include <QApplication>
#include <QImage>
#include <benchmark/benchmark.h>

namespace {

// All twelve sensors with five echoes each: a result of a busy scene.
orv::OrvMeasurementResult busyResult(unsigned number)
{
    orv::OrvMeasurementResult result;
    result.valid = true;
    result.hasMasks = true;
    result.sendMask = static_cast<std::uint16_t>(1U << number % orv::kSensorCount);
    result.receiveMask = 0x0fff;
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
        for (unsigned echo = 0; echo < 5; ++echo)
            result.echoes[sensor].push_back(
                {.magnitude = static_cast<std::uint8_t>(3 * echo),
                 .timeOfFlight = static_cast<std::uint16_t>(3000 + 4000 * echo + number % 1000)});
    return result;
}

// A view on the screen that has taken `results` results.
struct RunningView
{
    explicit RunningView(unsigned results)
    {
        view.resize(1037, 720);
        view.show();
        QCoreApplication::processEvents();
        for (unsigned number = 0; number < results; ++number)
            view.onNewMeasResult(busyResult(number));
        QCoreApplication::processEvents();
    }

    OrvgLiveView view;
};

void newResultAfter(benchmark::State& state)
{
    RunningView running(static_cast<unsigned>(state.range(0)));
    const orv::OrvMeasurementResult result = busyResult(0);
    for (auto _ : state)
        running.view.onNewMeasResult(result);
}
// A fixed number of iterations, so that the view is as old as the name says.
BENCHMARK(newResultAfter)->Arg(100)->Arg(10000)->Iterations(50);

void repaint(benchmark::State& state)
{
    RunningView running(100);
    QImage image(running.view.size(), QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state)
        running.view.render(&image);
}
BENCHMARK(repaint);

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
