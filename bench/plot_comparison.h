#pragma once

#include "bench/PlotScene.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "orv_decoder/SensorThreshold.h"
#include "orv_decoder/tables.h"
#include "views/plot/OrvgPlotWidget.h"

#include <QApplication>
#include <QWidget>
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <vector>

/// Our plot against another one: a result comes in, and the plot, shown on the screen, is painted
/// anew at once. The other plot has a constructor from PlotScene and size, a `widget()`, a
/// `setStick(index, point)` and a `paint()`.
namespace plot_comparison {

inline constexpr int kStickCount = 586; // one for each time of flight that the ECU can report
inline constexpr int kEchoesOfResult = 10;
inline constexpr double kGridStepUs = 6172;
inline constexpr orv::ThresholdEntries kThresholds = {0x5F, 0x5C, 0x56, 0x70, 0x6C, 0x8A,
                                                      0x88, 0x86, 0xA5, 0xA4, 0xA3, 0xC2};

inline orv::OrvSensorEcho echo(int stick)
{
    return {.magnitude = static_cast<std::uint8_t>(7 + std::lround(7 * std::sin(stick / 40.0))),
            .timeOfFlight = static_cast<std::uint16_t>(std::lround((stick + 1) * 51.15))};
}

inline QPointF point(const orv::OrvSensorEcho& echo)
{
    return {static_cast<double>(echo.timeOfFlight), orv::kMagnitudeLevels[echo.magnitude]};
}

inline PlotScene scene()
{
    PlotScene scene;
    scene.timeRangeUs = orv::kMaxTimeOfFlightUs;
    for (double time = kGridStepUs; time < scene.timeRangeUs; time += kGridStepUs)
        scene.gridTimes << time;
    for (const float level : orv::kThresholdLevels)
        scene.gridLevels << static_cast<double>(level);
    double time = 0;
    for (const std::uint8_t entry : kThresholds) {
        time += orv::kSegmentDurationsUs[orv::timeIndexOf(entry)];
        scene.curve << QPointF(time, orv::kThresholdLevels[orv::levelIndexOf(entry)]);
    }
    for (int stick = 0; stick < kStickCount; ++stick)
        scene.sticks << point(echo(stick));
    scene.background = QColor(50, 55, 50);
    scene.curveColour = "orange";
    scene.stickColour = Qt::yellow;
    return scene;
}

/// Ten sticks, other ones in each result.
inline std::vector<int> sticksOfResult(int number)
{
    std::vector<int> sticks;
    for (int i = 0; i < kEchoesOfResult; ++i)
        sticks.push_back((number * kEchoesOfResult + i) % kStickCount);
    return sticks;
}

class OwnPlot
{
public:
    OwnPlot(const PlotScene& scene, QSize size)
    {
        mPlot.setThresholds(kThresholds);
        mPlot.setThresholdColor(scene.curveColour);
        mPlot.setThresholdsShown(true);
        for (int stick = 0; stick < kStickCount; ++stick)
            setStick(stick, {});
        mPlot.resize(size);
    }

    QWidget& widget() { return mPlot; }
    void setStick(int index, QPointF /*point*/) { mPlot.addData({echo(index)}); }
    void paint() { mPlot.repaint(); }

private:
    OrvgPlotWidget mPlot;
};

template<typename Plot>
void repaint(benchmark::State& state)
{
    const PlotScene drawn = scene();
    Plot plot(drawn, {static_cast<int>(state.range(0)), static_cast<int>(state.range(1))});
    plot.widget().show();
    QCoreApplication::processEvents();
    int number = 0;
    for (auto _ : state) {
        for (const int stick : sticksOfResult(number++))
            plot.setStick(stick, drawn.sticks[stick]);
        plot.paint();
    }
}

template<typename Plot>
void registerRepaint(const char* name)
{
    benchmark::RegisterBenchmark(name, repaint<Plot>)->Args({800, 300})->Args({1600, 600});
}

template<typename Plot>
bool savePicture(const QString& fileName)
{
    Plot plot(scene(), {800, 300});
    return plot.widget().grab().save(fileName);
}

/// Runs the benchmarks, or with `--pictures FOLDER` saves what the two plots look like.
template<typename OtherPlot>
int run(int argc, char** argv, const char* nameOfOther)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.value(1) == "--pictures") {
        const QString folder = arguments.value(2) + '/';
        return savePicture<OwnPlot>(folder + "own.png") &&
                       savePicture<OtherPlot>(folder + nameOfOther + ".png")
                   ? 0
                   : 1;
    }
    registerRepaint<OwnPlot>("own");
    registerRepaint<OtherPlot>(nameOfOther);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

} // namespace plot_comparison
