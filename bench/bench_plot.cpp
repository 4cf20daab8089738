#include "views/plot/OrvgPlotWidget.h"

#include <QApplication>
#include <QImage>
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace {

constexpr int kEchoesOfResult = 10;
constexpr int kDistinctTimes = 200;

// Ten echoes whose times differ from those of the results before, up to kDistinctTimes.
std::vector<orv::OrvSensorEcho> result(int number)
{
    std::vector<orv::OrvSensorEcho> echoes;
    for (int i = 0; i < kEchoesOfResult; ++i) {
        const int time = (number * kEchoesOfResult + i) % kDistinctTimes;
        echoes.push_back({.magnitude = static_cast<std::uint8_t>(time % 16),
                          .timeOfFlight = static_cast<std::uint16_t>((time + 1) * 102)});
    }
    return echoes;
}

std::unique_ptr<OrvgPlotWidget> plotWithSamples(std::int64_t count)
{
    auto plot = std::make_unique<OrvgPlotWidget>();
    plot->resize(800, 300);
    std::vector<orv::OrvSensorEcho> echoes;
    for (int number = 0; number < count / kEchoesOfResult; ++number) {
        const auto more = result(number);
        echoes.insert(echoes.end(), more.begin(), more.end());
    }
    plot->addData(echoes);
    return plot;
}

// The iterations are few and fixed, so that the plots stay as full as their names say.
void addResult(benchmark::State& state)
{
    const auto plot = plotWithSamples(state.range(0));
    const auto echoes = result(0);
    for (auto _ : state)
        plot->addData(echoes);
}
BENCHMARK(addResult)->Arg(1'000)->Arg(1'000'000)->Iterations(500);

void repaint(benchmark::State& state)
{
    const auto plot = plotWithSamples(10'000);
    plot->resize(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    plot->setThresholds({0x5F, 0x5C, 0x56, 0x70, 0x6C, 0x8A, 0x88, 0x86, 0xA5, 0xA4, 0xA3, 0xC2});
    plot->setThresholdColor("orange");
    plot->setThresholdsShown(true);
    QImage image(plot->size(), QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state)
        plot->render(&image);
}
BENCHMARK(repaint)->Args({800, 300})->Args({1600, 600});

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
