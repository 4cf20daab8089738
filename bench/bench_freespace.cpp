#include "tests/support/hand_painted_freespace.h"
#include "tools/ecu_simulator/Freespace.h"
#include "views/freespace/OrvgFreespaceGraphicsView.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

namespace {

constexpr QSize kPictureSize(900, 600);

// What all twelve sensors see while a pedestrian walks round the vehicle, over and over.
class Packages
{
public:
    Packages()
    {
        const ecusim::EcuState ecu = ecusim::defaultEcuState();
        const ecusim::Scene scene(ecusim::SceneKind::Car);
        for (std::size_t i = 0; i < mAll.size(); ++i)
            mAll[i] = ecusim::freespacePackage(ecu, scene, 0, 2.0 * static_cast<double>(i));
    }

    const orv::OrvFreespacePackage& next() { return mAll[mNumber++ % mAll.size()]; }

private:
    std::array<orv::OrvFreespacePackage, 10> mAll;
    std::size_t mNumber = 0;
};

class Picture : public OrvgFreespaceGraphicsView
{
public:
    Picture()
    {
        setFrameShape(QFrame::NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        resize(kPictureSize);
        show();
        QCoreApplication::processEvents();
    }

    int repaints() const { return mRepaints; }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        ++mRepaints;
        OrvgFreespaceGraphicsView::paintEvent(event);
    }

private:
    int mRepaints = 0;
};

// A view that has shown many packages.
class AgedPicture
{
public:
    explicit AgedPicture(int packages)
    {
        for (int i = 0; i < packages; ++i)
            mPicture.onNewFreespacePackage(mPackages.next());
        QCoreApplication::processEvents();
    }

    int repaints() const { return mPicture.repaints(); }

    // The event loop repaints it, as it does for the user.
    void takeAndPaint()
    {
        mPicture.onNewFreespacePackage(mPackages.next());
        QCoreApplication::processEvents();
    }

private:
    Packages mPackages;
    Picture mPicture;
};

void packageWithRepaintAfter(benchmark::State& state, AgedPicture& aged)
{
    const int before = aged.repaints();
    for (auto _ : state)
        aged.takeAndPaint();
    if (aged.repaints() != before + static_cast<int>(state.iterations()))
        state.SkipWithError("a package was not painted once");
}

void packagePaintedByHand(benchmark::State& state)
{
    Packages packages;
    Picture view;
    QImage image(kPictureSize, QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter painter(&image);
        painter.fillRect(image.rect(), view.scene()->backgroundBrush());
        painter.setTransform(view.viewportTransform());
        hand_painted::picture(painter, packages.next());
    }
}
BENCHMARK(packagePaintedByHand)->Iterations(50)->Unit(benchmark::kMillisecond);

void packageAlone(benchmark::State& state)
{
    Packages packages;
    OrvgFreespaceGraphicsView view;
    for (auto _ : state)
        view.onNewFreespacePackage(packages.next());
}
BENCHMARK(packageAlone)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    // Filled once: a million packages take their time. Few and fixed iterations keep the views as
    // old as the names say.
    AgedPicture young(1'000);
    AgedPicture old(1'000'000);
    for (const auto& [name, aged] : {std::pair("packageWithRepaintAfter/1000", &young),
                                     std::pair("packageWithRepaintAfter/1000000", &old)})
        benchmark::RegisterBenchmark(name, packageWithRepaintAfter, std::ref(*aged))
            ->Iterations(50)
            ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
}
