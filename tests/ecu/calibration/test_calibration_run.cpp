#include "ecu/calibration/CalibrationRun.h"
#include "ecu/calibration/TimerClock.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ScriptedControlSocket.h"

#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <memory>
#include <optional>

using Ending = CalibrationRun::Ending;

namespace {

constexpr std::uint8_t kSensor = 4;
constexpr qint64 kLongMs = 60'000;

// An ECU that is slow to answer when a test wants it so.
class SlowEcu : public ScriptedControlSocket
{
public:
    bool sendReceive(std::vector<std::uint8_t>& buffer) override
    {
        if (onRequest)
            onRequest();
        return ScriptedControlSocket::sendReceive(buffer);
    }

    std::function<void()> onRequest;
};

// A run, what it shows and how it ends.
struct Bench
{
    explicit Bench(const std::vector<std::int8_t>& states = {})
    {
        socket.queueReply(5, {});
        for (const std::int8_t state : states)
            socket.queueReply(5, {static_cast<std::uint8_t>(state)});
        QObject::connect(run.get(), &CalibrationRun::stepped, run.get(), [this](int value, bool) {
            values.append(value);
            timesMs.append(clock.elapsedMs());
        });
        QObject::connect(run.get(), &CalibrationRun::stepped, run.get(),
                         [this](int, bool isInverted) { inverted.append(isInverted); });
        QObject::connect(run.get(), &CalibrationRun::ended, run.get(), [this](Ending how) {
            ending = how;
            endMs = clock.elapsedMs();
            ++ends;
        });
    }

    bool start() { return run->start(client, kSensor); }

    std::size_t reads() const { return socket.requests().size() - 1; }

    /// What is shown at this time; -1 for nothing new.
    int valueAt(qint64 timeMs) const { return values.value(timesMs.indexOf(timeMs), -1); }
    bool invertedAt(qint64 timeMs) const { return inverted.value(timesMs.indexOf(timeMs)); }

    SlowEcu socket;
    orv::OrvCtrlClient client{&socket};
    ManualClock clock;
    std::unique_ptr<CalibrationRun> run = std::make_unique<CalibrationRun>(&clock);
    QVector<int> values;
    QVector<bool> inverted;
    QVector<qint64> timesMs;
    std::optional<Ending> ending;
    qint64 endMs = 0;
    int ends = 0;
};

std::vector<std::int8_t> stillRunning(std::size_t count)
{
    return std::vector<std::int8_t>(count, 1);
}

} // namespace

class CalibrationRunTest : public QObject
{
    Q_OBJECT

private slots:
    void startIsSentForTheSensor()
    {
        Bench bench;
        QVERIFY(bench.start());
        QVERIFY(bench.run->isRunning());
        QCOMPARE(bench.run->sensorId(), kSensor);
        QCOMPARE(bench.socket.requests().size(), 1U);
        QCOMPARE(bench.socket.requests()[0][0], std::uint8_t{5});
        QCOMPARE(bench.socket.requests()[0][1], std::uint8_t{0});
        QCOMPARE(bench.socket.requests()[0][2], kSensor);
    }

    void refusedStartIsNoRun()
    {
        ScriptedControlSocket socket;
        socket.queueReply(5, {}, 3);
        orv::OrvCtrlClient client(&socket);
        ManualClock clock;
        CalibrationRun run(&clock);
        QVERIFY(!run.start(client, kSensor));
        QVERIFY(!run.isRunning());
        QCOMPARE(client.lastError(), std::string("ECU error (3)"));
    }

    void secondStartChangesNothing()
    {
        Bench bench({0});
        QVERIFY(bench.start());
        bench.clock.runTo(900);
        QVERIFY(!bench.run->start(bench.client, 7));
        QCOMPARE(bench.socket.requests().size(), 1U);
        QCOMPARE(bench.run->sensorId(), kSensor);
        bench.clock.runTo(kLongMs);
        QCOMPARE(bench.endMs, 1500);
        QCOMPARE(bench.ends, 1);
    }

    void statesOfTheEcuEndTheRun_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<int>("ending");
        QTest::newRow("finished") << 0 << static_cast<int>(Ending::Finished);
        QTest::newRow("aborted") << -1 << static_cast<int>(Ending::AbortedByEcu);
        QTest::newRow("end of polling") << 2 << static_cast<int>(Ending::ExchangeFailed);
    }

    void statesOfTheEcuEndTheRun()
    {
        QFETCH(int, state);
        Bench bench({static_cast<std::int8_t>(state)});
        bench.start();
        bench.clock.runTo(kLongMs);
        QVERIFY(bench.ending);
        QTEST(static_cast<int>(*bench.ending), "ending");
        QCOMPARE(bench.reads(), 1U);
        QCOMPARE(bench.endMs, 1500);
        QVERIFY(!bench.run->isRunning());
        QCOMPARE(bench.valueAt(1500), -1);
    }

    void silentEcuEndsTheRun()
    {
        Bench bench;
        bench.start();
        bench.clock.runTo(kLongMs);
        QCOMPARE(bench.ending, std::optional(Ending::ExchangeFailed));
        QCOMPARE(bench.client.lastError(), std::string("socket: receive timeout"));
    }

    void anyOtherStateIsStillRunning()
    {
        Bench bench({1, 3, -2, 127, -128, 0});
        bench.start();
        bench.clock.runTo(kLongMs);
        QCOMPARE(bench.ending, std::optional(Ending::Finished));
        QCOMPARE(bench.reads(), 6U);
        QCOMPARE(bench.endMs, 6500);
    }

    void indicatorRestsForHalfASecond()
    {
        Bench bench({0});
        bench.start();
        bench.clock.runTo(500);
        QCOMPARE(bench.values, QVector<int>(50, 0));
        bench.clock.runTo(510);
        QCOMPARE(bench.valueAt(510), 1);
    }

    void evenSweepsRiseFromZeroTo99()
    {
        Bench bench({0});
        bench.start();
        bench.clock.runTo(kLongMs);
        for (int step = 0; step < 100; ++step) {
            QCOMPARE(bench.valueAt(500 + 10 * step), step);
            QVERIFY(!bench.invertedAt(500 + 10 * step));
        }
        QCOMPARE(bench.values.size(), 149);
    }

    void oddSweepsFallFrom100To1Inverted()
    {
        Bench bench({1, 1, 0});
        bench.start();
        bench.clock.runTo(kLongMs);
        for (int step = 0; step < 100; ++step) {
            QCOMPARE(bench.valueAt(1500 + 10 * step), 100 - step);
            QVERIFY(bench.invertedAt(1500 + 10 * step));
        }
        QCOMPARE(bench.valueAt(2500), 0);
        QVERIFY(!bench.invertedAt(2500));
    }

    void ecuIsAskedAtTheEndOfEachSweep()
    {
        Bench bench(stillRunning(30));
        bench.start();
        for (qint64 sweep = 0; sweep < 20; ++sweep) {
            bench.clock.runTo(1490 + 1000 * sweep);
            QCOMPARE(bench.reads(), static_cast<std::size_t>(sweep));
            bench.clock.runTo(1500 + 1000 * sweep);
            QCOMPARE(bench.reads(), static_cast<std::size_t>(sweep + 1));
        }
    }

    void givesUpAfterTheTwentyFirstSweep()
    {
        Bench bench(stillRunning(30));
        bench.start();
        bench.clock.runTo(kLongMs);
        QCOMPARE(bench.ending, std::optional(Ending::TimedOut));
        QCOMPARE(bench.reads(), 21U);
        QCOMPARE(bench.endMs, 21500);
    }

    void endOnTheTwentyFirstSweepStillCounts()
    {
        std::vector<std::int8_t> states = stillRunning(20);
        states.push_back(0);
        Bench bench(states);
        bench.start();
        bench.clock.runTo(kLongMs);
        QCOMPARE(bench.ending, std::optional(Ending::Finished));
    }

    void lateTicksSkipValuesAndNoTime()
    {
        Bench bench(stillRunning(30));
        bench.start();
        qint64 timeMs = 0;
        while (bench.clock.isRunning() && timeMs < kLongMs)
            bench.clock.jumpTo(timeMs += 37);
        QCOMPARE(bench.ending, std::optional(Ending::TimedOut));
        QCOMPARE(bench.reads(), 21U);
        QVERIFY(bench.endMs >= 21500 && bench.endMs < 21500 + 37);
        QCOMPARE(bench.valueAt(37 * 30), (37 * 30 - 500) / 10);
    }

    void slowAnswersStretchNothing()
    {
        Bench bench(stillRunning(30));
        bench.socket.onRequest = [&bench] { bench.clock.spend(400); };
        bench.start();
        bench.clock.runTo(kLongMs);
        QCOMPARE(bench.reads(), 21U);
        QCOMPARE(bench.endMs, 21500 + 400);
        QCOMPARE(bench.valueAt(1900), 60);
    }

    // As after the sleep of a laptop.
    void longPauseIsFollowedByOneQuestion()
    {
        Bench bench({1, 1, 0});
        bench.start();
        bench.clock.runTo(2000);
        bench.clock.jumpTo(8200);
        QCOMPARE(bench.reads(), 2U);
        QCOMPARE(bench.valueAt(8200), 30);
        bench.clock.jumpTo(8210);
        QCOMPARE(bench.reads(), 2U);
        bench.clock.jumpTo(kLongMs);
        QCOMPARE(bench.reads(), 3U);
        QCOMPARE(bench.ending, std::optional(Ending::Finished));
    }

    void anotherRunStartsFromTheBeginning()
    {
        Bench bench({1, 0});
        bench.start();
        bench.clock.runTo(kLongMs);
        bench.socket.queueReply(5, {});
        bench.socket.queueReply(5, {0});
        QVERIFY(bench.start());
        bench.clock.runTo(kLongMs);
        QCOMPARE(bench.endMs, 1500);
        QCOMPARE(bench.ends, 2);
    }

    void destroyedRunAsksNothingMore()
    {
        Bench bench(stillRunning(30));
        bench.start();
        bench.clock.runTo(700);
        bench.run.reset();
        bench.clock.runTo(3000);
        QCOMPARE(bench.reads(), 0U);
    }

    void runMayBeDestroyedByItsEnd()
    {
        Bench bench({0});
        QObject::connect(bench.run.get(), &CalibrationRun::ended, &bench.clock,
                         [&bench] { bench.run.reset(); });
        bench.start();
        bench.clock.runTo(kLongMs);
        QVERIFY(!bench.run);
        QCOMPARE(bench.ends, 1);
    }

    void realClockTicksUntilItIsStopped()
    {
        TimerClock clock;
        QVERIFY(!clock.isRunning());
        QSignalSpy ticks(&clock, &CalibrationClock::ticked);
        clock.start();
        QVERIFY(clock.isRunning());
        QTRY_VERIFY(ticks.size() >= 3);
        QVERIFY(clock.elapsedMs() > 0);
        const qint64 before = clock.elapsedMs();
        QTRY_VERIFY(clock.elapsedMs() > before);
        clock.stop();
        QVERIFY(!clock.isRunning());
        ticks.clear();
        QCoreApplication::processEvents();
        QVERIFY(ticks.isEmpty());
    }

    void runHasAClockOfItsOwn()
    {
        Bench bench({0});
        CalibrationRun run;
        QSignalSpy steps(&run, &CalibrationRun::stepped);
        QVERIFY(run.start(bench.client, kSensor));
        QTRY_VERIFY(!steps.isEmpty());
        QCOMPARE(steps.first().first().toInt(), 0);
    }
};

QTEST_GUILESS_MAIN(CalibrationRunTest)
#include "test_calibration_run.moc"
