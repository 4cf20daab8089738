#include "views/freespace/OrvgFreespaceGraphicsView.h"

#include <QApplication>
#include <QImage>
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <memory>

namespace {

// All sensors round the vehicle; the obstacles come and go with the number of the package.
orv::OrvFreespacePackage package(int number)
{
    orv::OrvFreespacePackage package{.valid = true, .entries = {}};
    for (std::uint8_t id = 0; id < orv::kSensorCount; ++id) {
        const auto x = static_cast<std::int16_t>(id * 700 - 4000);
        const auto nearX = static_cast<std::int16_t>(x + 50 * (number % 10));
        orv::OrvFreespaceEntry entry;
        entry.sensorId = id;
        entry.position = {.leadingWord = 0, .x = x, .y = 0, .direction = 16384};
        entry.corners = {{{x, 0}, {x, 4000}, {nearX, 4000}, {nearX, 0}}};
        entry.arcEnds = {{{x, 4200}, {nearX, 4200}}};
        entry.distances[1] = {
            .mode = 1, .distanceMm = 2000, .firstPoint = {nearX, 2000}, .secondPoint = {x, 2000}};
        package.entries.push_back(entry);
    }
    return package;
}

std::array<orv::OrvFreespacePackage, 10> packages()
{
    std::array<orv::OrvFreespacePackage, 10> packages;
    for (std::size_t i = 0; i < packages.size(); ++i)
        packages[i] = package(static_cast<int>(i));
    return packages;
}

// The view after as many packages as the argument says; few and fixed iterations keep it so.
void packageWithRepaintAfter(benchmark::State& state)
{
    const auto all = packages();
    OrvgFreespaceGraphicsView view;
    view.resize(900, 600);
    view.show();
    std::size_t number = 0;
    const auto take = [&] { view.onNewFreespacePackage(all[number++ % all.size()]); };
    for (std::int64_t i = 0; i < state.range(0); ++i)
        take();
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        take();
        view.QWidget::render(&image);
    }
}
BENCHMARK(packageWithRepaintAfter)
    ->Arg(10)
    ->Arg(10'000)
    ->Iterations(50)
    ->Unit(benchmark::kMillisecond);

void packageAlone(benchmark::State& state)
{
    const auto all = packages();
    OrvgFreespaceGraphicsView view;
    std::size_t number = 0;
    for (auto _ : state)
        view.onNewFreespacePackage(all[number++ % all.size()]);
}
BENCHMARK(packageAlone)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
