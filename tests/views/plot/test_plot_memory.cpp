#include "tests/support/AllocationCounter.h"
#include "views/plot/OrvgPlotWidget.h"
#include "views/thresholds/OrvgThresholdView.h"

#include <QTableView>
#include <QtTest>

namespace {

// Twenty echoes at times of flight that come again.
std::vector<orv::OrvSensorEcho> echoes()
{
    std::vector<orv::OrvSensorEcho> echoes;
    for (int index = 0; index < 20; ++index)
        echoes.push_back({.magnitude = static_cast<std::uint8_t>(index % 16),
                          .timeOfFlight = static_cast<std::uint16_t>(1000 + 500 * index)});
    return echoes;
}

} // namespace

class PlotMemoryTest : public QObject
{
    Q_OBJECT

private slots:
    void thresholdViewDoesNotGrowWithItsResults()
    {
        OrvgThresholdView view;
        view.resize(900, 700);
        view.show();
        auto* table = view.findChild<QTableView*>("mTableView");
        table->setCurrentIndex(table->model()->index(2, 0));
        orv::OrvMeasurementResult result;
        result.echoes[2] = echoes();
        const auto takeResults = [&](int count) {
            for (int number = 0; number < count; ++number)
                view.onNewMeasResult(result);
            QCoreApplication::processEvents();
        };
        takeResults(1);
        const AllocationCounter counter;
        takeResults(10'000);
        QVERIFY2(counter.heldBytes() < 10'000, qPrintable(QString::number(counter.heldBytes())));
    }

    void plotShowsTheSameWhateverItKeeps()
    {
        OrvgPlotWidget everything;
        OrvgPlotWidget drawnValues;
        drawnValues.setSampleStore(SampleStore::DrawnValues);
        for (OrvgPlotWidget* plot : {&everything, &drawnValues}) {
            plot->addData(echoes());
            plot->addData({{.magnitude = 15, .timeOfFlight = 1000}});
        }
        QCOMPARE(drawnValues.grab().toImage(), everything.grab().toImage());
        everything.setMaximumMode(false);
        drawnValues.setMaximumMode(false);
        QCOMPARE(drawnValues.grab().toImage(), everything.grab().toImage());
    }
};

QTEST_MAIN(PlotMemoryTest)
#include "test_plot_memory.moc"
