#include "ecu/calibration/CalibrationRun.h"

#include <QtTest>

#include <algorithm>
#include <deque>
#include <numeric>
#include <vector>

using Ending = CalibrationRun::Ending;

namespace {

// Runs a calibration whose state reads give `states`, then "still running".
struct Watch
{
    explicit Watch(std::deque<std::int8_t> states, int lastShown = 1'000'000)
        : ending(CalibrationRun({
                                    .wait = [this](int ms) { waits.push_back(ms); },
                                    .show =
                                        [this, lastShown](int value, bool isInverted) {
                                            values.push_back(value);
                                            inverted.push_back(isInverted);
                                            return static_cast<int>(values.size()) < lastShown;
                                        },
                                    .readState = [this, states]() mutable -> std::int8_t {
                                        ++reads;
                                        if (states.empty())
                                            return 1;
                                        const std::int8_t state = states.front();
                                        states.pop_front();
                                        return state;
                                    },
                                })
                     .run())
    {}

    int waitedMs() const { return std::accumulate(waits.begin(), waits.end(), 0); }

    std::vector<int> waits;
    std::vector<int> values;
    std::vector<bool> inverted;
    int reads = 0;
    Ending ending;
};

} // namespace

class CalibrationRunTest : public QObject
{
    Q_OBJECT

private slots:
    void statesOfTheEcuEndTheRun_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<int>("ending");
        QTest::newRow("finished") << 0 << static_cast<int>(Ending::Finished);
        QTest::newRow("aborted") << -1 << static_cast<int>(Ending::AbortedByEcu);
        QTest::newRow("exchange failed") << 2 << static_cast<int>(Ending::ExchangeFailed);
    }

    void statesOfTheEcuEndTheRun()
    {
        QFETCH(int, state);
        const Watch watch({static_cast<std::int8_t>(state)});
        QTEST(static_cast<int>(watch.ending), "ending");
        QCOMPARE(watch.reads, 1);
    }

    void anyOtherStateIsStillRunning()
    {
        const Watch watch({1, 3, -2, 127, -128, 0});
        QCOMPARE(watch.ending, Ending::Finished);
        QCOMPARE(watch.reads, 6);
    }

    void firstSweepStartsAfterHalfASecondAndTakesOne()
    {
        const Watch watch({0});
        QCOMPARE(watch.waits.front(), 500);
        QCOMPARE(watch.waits.size(), 101U);
        QVERIFY(std::all_of(watch.waits.begin() + 1, watch.waits.end(),
                            [](int ms) { return ms == 10; }));
    }

    void evenSweepsRiseFromZero()
    {
        const Watch watch({0});
        QCOMPARE(watch.values.size(), 100U);
        QCOMPARE(watch.values[0], 0);
        QCOMPARE(watch.values[1], 1);
        QCOMPARE(watch.values[99], 99);
        QVERIFY(!watch.inverted[0] && !watch.inverted[99]);
    }

    void oddSweepsFallFromAHundredInverted()
    {
        const Watch watch({1, 1, 0});
        QCOMPARE(watch.values[100], 100);
        QCOMPARE(watch.values[101], 99);
        QCOMPARE(watch.values[199], 1);
        QVERIFY(watch.inverted[100] && watch.inverted[199]);
        QCOMPARE(watch.values[200], 0);
        QVERIFY(!watch.inverted[200]);
    }

    void givesUpAfterTheTwentyFirstSweep()
    {
        const Watch watch({});
        QCOMPARE(watch.ending, Ending::TimedOut);
        QCOMPARE(watch.reads, 21);
        QCOMPARE(watch.waitedMs(), 21500);
    }

    void endOnTheTwentyFirstSweepStillCounts()
    {
        std::deque<std::int8_t> states(20, 1);
        states.push_back(0);
        QCOMPARE(Watch(states).ending, Ending::Finished);
    }

    void runThatNobodyWatchesAsksNothingMore()
    {
        const Watch watch({1, 0}, 150);
        QCOMPARE(watch.ending, Ending::Abandoned);
        QCOMPARE(watch.reads, 1);
        QCOMPARE(watch.values.size(), 150U);
    }
};

QTEST_MAIN(CalibrationRunTest)
#include "test_calibration_run.moc"
