#include "tests/support/AllocationCounter.h"
#include "tests/support/MeasurementBuilder.h"
#include "views/live/OrvgLiveView.h"

#include <QtTest>

#include <memory>
#include <vector>

namespace {

// Each sensor hears every second result, and each time something else.
std::vector<orv::OrvMeasurementResult> variedResults()
{
    std::vector<orv::OrvMeasurementResult> results;
    for (unsigned number = 0; number < 60; ++number) {
        MeasurementBuilder result = aMeasurement().withSender(number % 12);
        for (std::uint8_t sensor = 0; sensor < 12; ++sensor)
            for (unsigned echo = 0; (sensor + number) % 2 == 0 && echo < 5; ++echo)
                result.withEcho(sensor, static_cast<std::uint16_t>(1000 + 5000 * echo + number),
                                static_cast<std::uint8_t>((number + echo) % 16));
        results.push_back(result);
    }
    return results;
}

} // namespace

class LiveViewAllocationsTest : public QObject
{
    Q_OBJECT

private slots:
    void allocationOfTheProgramIsCounted()
    {
        const AllocationCounter counter;
        const std::vector<char> memory(100);
        QCOMPARE(counter.count(), std::size_t{1});
        QCOMPARE(counter.bytes(), std::size_t{100});
        QCOMPARE(memory.size(), std::size_t{100});
    }

    void allocationOfTheLibrariesIsNot()
    {
        const AllocationCounter counter;
        QObject parent;
        parent.setObjectName(QStringLiteral("allocates its data"));
        QCOMPARE(counter.count(), std::size_t{0});
    }

    void resultAllocatesNothingOnceTheViewIsWarm()
    {
        const std::vector<orv::OrvMeasurementResult> results = variedResults();
        OrvgLiveView view;
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const auto takeAll = [&] {
            for (const orv::OrvMeasurementResult& result : results) {
                view.onNewMeasResult(result);
                QCoreApplication::processEvents();
            }
        };
        takeAll();
        takeAll();
        const AllocationCounter counter;
        takeAll();
        QCOMPARE(counter.count(), std::size_t{0});
    }
};

QTEST_MAIN(LiveViewAllocationsTest)
#include "test_live_view_allocations.moc"
