#include "tests/support/AllocationCounter.h"
#include "views/live/OrvgLiveView.h"
#include "views/live/OrvgSignalLineWidget.h"
#include "views/live/OrvgSignalWidget.h"
#include "views/live/signal_geometry.h"

#include <QApplication>
#include <QDockWidget>
#include <QImage>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPainter>
#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <vector>

namespace {

constexpr unsigned kEchoesOfSensor = 5;
constexpr QSize kDefaultSize(1037, 388);

// All twelve sensors with five echoes each, and other numbers in each result: a busy scene.
orv::OrvMeasurementResult busyResult(unsigned number)
{
    orv::OrvMeasurementResult result;
    result.valid = true;
    result.hasMasks = true;
    result.sendMask = static_cast<std::uint16_t>(1U << number % orv::kSensorCount);
    result.receiveMask = 0x0fff;
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
        for (unsigned echo = 0; echo < kEchoesOfSensor; ++echo)
            result.echoes[sensor].push_back(
                {.magnitude = static_cast<std::uint8_t>(1 + (3 * echo + number) % 15),
                 .timeOfFlight =
                     static_cast<std::uint16_t>(3000 + 5000 * echo + 51 * number % 1000)});
    return result;
}

// Results in turn, so that the table and the large picture change with each.
class BusyResults
{
public:
    BusyResults()
    {
        for (unsigned number = 0; number < 60; ++number)
            mResults.push_back(busyResult(number));
    }

    const orv::OrvMeasurementResult& next() { return mResults[mNext++ % mResults.size()]; }

private:
    std::vector<orv::OrvMeasurementResult> mResults;
    std::size_t mNext = 0;
};

// A live view on the screen whose timelines are full.
class ShownView
{
public:
    ShownView() = default;
    explicit ShownView(QSize size)
    {
        mView.resize(size);
        mView.show();
        age(100);
    }

    OrvgLiveView& view() { return mView; }

    void age(int results)
    {
        QCoreApplication::processEvents();
        for (int count = 0; count < results; ++count)
            mView.onNewMeasResult(mResults.next());
        QCoreApplication::processEvents();
    }

    // As the event loop of the program does it: through the window's backing store.
    void takeAndPaint()
    {
        mView.onNewMeasResult(mResults.next());
        QCoreApplication::processEvents();
    }

private:
    BusyResults mResults;
    OrvgLiveView mView;
};

// The view where the main window has it: in the area above a dock.
class ViewInWindow
{
public:
    ViewInWindow()
    {
        auto* dock = new QDockWidget(&mWindow);
        dock->setWidget(new QWidget(dock));
        mWindow.addDockWidget(Qt::BottomDockWidgetArea, dock);
        auto* area = new QMdiArea(&mWindow);
        area->setViewMode(QMdiArea::TabbedView);
        mWindow.setCentralWidget(area);
        area->addSubWindow(&mShown.view())->showMaximized();
        mWindow.resize(1074, 707);
        mWindow.resizeDocks({dock}, {300}, Qt::Vertical);
        mWindow.show();
        mShown.age(100);
    }
    ~ViewInWindow() { mShown.view().setParent(nullptr); }

    ShownView& shown() { return mShown; }

private:
    QMainWindow mWindow;
    ShownView mShown;
};

void paintFrame(QPainter& painter, const QRect& slot, orv::OrvSensorRole role)
{
    const QColor color =
        role == orv::OrvSensorRole::Sending ? QColor(250, 220, 180) : QColor(200, 200, 250);
    painter.fillRect(slot.left(), slot.top(), slot.width(), 2, color);
    painter.fillRect(slot.left(), slot.bottom() - 1, slot.width(), 2, color);
    painter.fillRect(slot.left(), slot.top() + 2, 2, slot.height() - 4, color);
    painter.fillRect(slot.right() - 1, slot.top() + 2, 2, slot.height() - 4, color);
}

void paintEchoes(QPainter& painter, const QRect& slot,
                 const std::vector<orv::OrvSensorEcho>& echoes)
{
    using namespace signal_geometry;
    for (const orv::OrvSensorEcho& echo : echoes) {
        const int end = echoLineEnd(echo.magnitude, slot.width());
        const int y = slot.top() + echoLineY(echo.timeOfFlight, slot.height());
        if (end > 0)
            painter.fillRect(slot.left() + kEchoLineStart, y, end - kEchoLineStart + 1, 1,
                             Qt::yellow);
    }
}

// What the timelines in sight show, at the least that it can cost.
class Primitives
{
public:
    explicit Primitives(OrvgLiveView& view) : mImage(view.size(), QImage::Format_RGB32)
    {
        mImage.fill(Qt::lightGray);
        for (const OrvgSignalLineWidget* line : view.findChildren<OrvgSignalLineWidget*>()) {
            if (line->visibleRegion().isEmpty())
                continue;
            for (const OrvgSignalWidget* item : line->items())
                mSlots.push_back({QRect(item->mapTo(&view, QPoint()), item->size()), item->role(),
                                  item->echoes()});
        }
    }

    void paint()
    {
        QPainter painter(&mImage);
        painter.setPen(Qt::DotLine);
        for (const Slot& slot : mSlots) {
            if (slot.echoes.empty()) {
                painter.drawLine(slot.rect.topLeft(), slot.rect.bottomLeft());
                continue;
            }
            painter.fillRect(slot.rect, QColor(50, 55, 50, 127));
            if (slot.role != orv::OrvSensorRole::NotInvolved)
                paintFrame(painter, slot.rect, slot.role);
            paintEchoes(painter, slot.rect, slot.echoes);
        }
    }

private:
    struct Slot
    {
        QRect rect;
        orv::OrvSensorRole role;
        std::vector<orv::OrvSensorEcho> echoes;
    };

    QImage mImage;
    std::vector<Slot> mSlots;
};

QSize sizeOf(const benchmark::State& state)
{
    return {static_cast<int>(state.range(0)), static_cast<int>(state.range(1))};
}

void resultOnScreen(benchmark::State& state)
{
    ShownView shown(sizeOf(state));
    for (auto _ : state)
        shown.takeAndPaint();
}
BENCHMARK(resultOnScreen)->Args({1037, 388})->Args({1920, 1080});

void primitivesAlone(benchmark::State& state)
{
    ShownView shown(sizeOf(state));
    Primitives primitives(shown.view());
    for (auto _ : state)
        primitives.paint();
}
BENCHMARK(primitivesAlone)->Args({1037, 388})->Args({1920, 1080});

void resultInWindow(benchmark::State& state)
{
    ViewInWindow window;
    for (auto _ : state)
        window.shown().takeAndPaint();
}
BENCHMARK(resultInWindow);

void primitivesOfWindow(benchmark::State& state)
{
    ViewInWindow window;
    Primitives primitives(window.shown().view());
    for (auto _ : state)
        primitives.paint();
}
BENCHMARK(primitivesOfWindow);

// What our own code asks operator new for, the paint included. What Qt allocates on its own
// account, among it the texts of the table, is not counted.
void allocationsOfResult(benchmark::State& state)
{
    ShownView shown(kDefaultSize);
    shown.age(1'000);
    const AllocationCounter counter;
    for (auto _ : state)
        shown.takeAndPaint();
    state.counters["perResult"] =
        static_cast<double>(counter.count()) / static_cast<double>(state.iterations());
}
BENCHMARK(allocationsOfResult)->Iterations(300);

void resultAfter(benchmark::State& state, ShownView& aged)
{
    for (auto _ : state)
        aged.takeAndPaint();
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    // Filled once: a million results take their time. Few and fixed iterations keep the views as
    // old as the names say.
    ShownView young(kDefaultSize);
    ShownView old(kDefaultSize);
    young.age(1'000);
    old.age(1'000'000);
    benchmark::RegisterBenchmark("resultAfter/1000", resultAfter, std::ref(young))->Iterations(100);
    benchmark::RegisterBenchmark("resultAfter/1000000", resultAfter, std::ref(old))
        ->Iterations(100);
    benchmark::RunSpecifiedBenchmarks();
}
