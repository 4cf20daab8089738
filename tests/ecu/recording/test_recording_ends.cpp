#include "orv_decoder/OrvCtrlSocket.h"
#include "tests/ecu/recording/RecordingBench.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/patience.h"

#include <QtTest>

using Ending = RecordingRun::Ending;
using State = RecordingRun::State;

namespace {

// Brings the run from idle to a state.
void bringTo(RecordingBench& bench, State state)
{
    if (state == State::Idle)
        return;
    bench.run->start();
    if (state != State::StartRequested)
        bench.take(1 + 10);
    if (state == State::StopRequested)
        bench.run->requestStop();
}

// Brings a recording to its end in one of the four ways.
void bringToItsEnd(RecordingBench& bench, Ending ending)
{
    switch (ending) {
    case Ending::Completed:
        bench.take(kResultsOfRecording);
        break;
    case Ending::Stopped:
        bench.run->requestStop();
        bench.take(1);
        break;
    case Ending::TimedOut:
        bench.pass(2200);
        break;
    case Ending::Discarded:
        bench.run->discard();
        break;
    }
}

void addEndings()
{
    QTest::addColumn<Ending>("ending");
    QTest::newRow("completed") << Ending::Completed;
    QTest::newRow("stopped") << Ending::Stopped;
    QTest::newRow("timed out") << Ending::TimedOut;
    QTest::newRow("discarded") << Ending::Discarded;
}

} // namespace

class RecordingEndsTest : public QObject
{
    Q_OBJECT

private slots:
    void silenceOfTwoSecondsTimesOut_data()
    {
        QTest::addColumn<State>("state");
        QTest::newRow("before the first result") << State::StartRequested;
        QTest::newRow("while recording") << State::Recording;
        QTest::newRow("after a request to stop") << State::StopRequested;
    }
    // Some tenths apart: the system may run the timer a little earlier or later.
    void silenceOfTwoSecondsTimesOut()
    {
        QFETCH(State, state);
        RecordingBench bench;
        bringTo(bench, state);
        const int writes = bench.writes();
        bench.pass(1800);
        QCOMPARE(bench.run->state(), state);
        bench.pass(400);
        QCOMPARE(bench.endings, QVector<Ending>({Ending::TimedOut}));
        QCOMPARE(bench.run->state(), State::Idle);
        bench.take(2);
        QCOMPARE(bench.writes(), writes);
    }

    void everyRecordedResultBuysTwoSeconds()
    {
        RecordingBench bench;
        bench.record(0);
        for (int result = 0; result < 10; ++result) {
            bench.pass(1800);
            bench.take(1);
        }
        QCOMPARE(bench.run->state(), State::Recording);
        bench.pass(1800);
        QVERIFY(bench.endings.isEmpty());
        bench.pass(400);
        QCOMPARE(bench.endings, QVector<Ending>({Ending::TimedOut}));
    }

    void resultThatStartsTheRecordingBuysNoTime()
    {
        RecordingBench bench;
        bench.run->start();
        bench.pass(1500);
        bench.take(1);
        bench.pass(700);
        QCOMPARE(bench.endings, QVector<Ending>({Ending::TimedOut}));
    }

    void startBuysTwoSeconds()
    {
        RecordingBench bench;
        bench.record(10);
        bench.run->requestStop();
        bench.pass(1500);
        bench.run->start();
        bench.pass(1500);
        QVERIFY(bench.endings.isEmpty());
    }

    void watchdogRestsAfterEachEnd_data() { addEndings(); }
    void watchdogRestsAfterEachEnd()
    {
        QFETCH(Ending, ending);
        RecordingBench bench;
        bench.record(10);
        bringToItsEnd(bench, ending);
        QCOMPARE(bench.endings, QVector<Ending>({ending}));
        bench.pass(10'000);
        QCOMPARE(bench.endings.size(), 1);
    }

    void resultsWhileIdleWakeNoWatchdog()
    {
        RecordingBench bench;
        bench.take(5);
        bench.pass(10'000);
        QVERIFY(bench.endings.isEmpty());
    }

    void timeOutByHandIsToldWhateverTheState()
    {
        RecordingBench bench;
        bench.record(10);
        bench.run->timeOut();
        QCOMPARE(bench.run->state(), State::Idle);
        bench.run->timeOut();
        QCOMPARE(bench.endings, QVector<Ending>({Ending::TimedOut, Ending::TimedOut}));
    }

    void stateSaysWhetherThereIsSomethingToLose_data()
    {
        QTest::addColumn<State>("state");
        QTest::addColumn<bool>("isRecording");
        QTest::newRow("idle") << State::Idle << false;
        QTest::newRow("before the first result") << State::StartRequested << false;
        QTest::newRow("recording") << State::Recording << true;
        QTest::newRow("stop requested") << State::StopRequested << true;
    }
    void stateSaysWhetherThereIsSomethingToLose()
    {
        QFETCH(State, state);
        RecordingBench bench;
        bringTo(bench, state);
        QCOMPARE(bench.run->state(), state);
        QTEST(bench.run->isRecording(), "isRecording");
    }

    void stopBeforeTheFirstResultCountsAsRecording()
    {
        RecordingBench bench;
        bench.run->start();
        bench.run->requestStop();
        QVERIFY(bench.run->isRecording());
        bench.take(1);
        QCOMPARE(bench.starts, 0);
        QCOMPARE(bench.endings, QVector<Ending>({Ending::Stopped}));
        QVERIFY(!bench.run->isRecording());
    }

    void discardEndsAtOnce_data()
    {
        QTest::addColumn<State>("state");
        QTest::newRow("before the first result") << State::StartRequested;
        QTest::newRow("recording") << State::Recording;
        QTest::newRow("stop requested") << State::StopRequested;
    }
    void discardEndsAtOnce()
    {
        QFETCH(State, state);
        RecordingBench bench;
        bringTo(bench, state);
        bench.run->discard();
        QCOMPARE(bench.run->state(), State::Idle);
        QCOMPARE(bench.states.last(), State::Idle);
        QCOMPARE(bench.endings, QVector<Ending>({Ending::Discarded}));
    }

    void discardWhileIdleTellsNothing()
    {
        RecordingBench bench;
        bench.run->discard();
        QVERIFY(bench.states.isEmpty());
        QVERIFY(bench.endings.isEmpty());
    }

    void eachEndIsToldOnceAndWritesNothingMore_data() { addEndings(); }
    void eachEndIsToldOnceAndWritesNothingMore()
    {
        QFETCH(Ending, ending);
        RecordingBench bench;
        bench.record(10);
        bringToItsEnd(bench, ending);
        const int writes = bench.writes();
        bench.run->requestStop();
        bench.run->discard();
        bench.take(10);
        QCOMPARE(bench.endings, QVector<Ending>({ending}));
        QCOMPARE(bench.writes(), writes);
    }

    // As when an interrupted program gives up.
    void listenerMayDiscardWhenItHearsEchoes()
    {
        RecordingBench bench;
        QObject::connect(bench.run.get(), &RecordingRun::heard, bench.run.get(),
                         &RecordingRun::discard);
        int writesAtTheEnd = -1;
        QObject::connect(bench.run.get(), &RecordingRun::ended, &bench.context,
                         [&] { writesAtTheEnd = bench.writes(); });
        bench.record(0);
        bench.take(5, aMeasurement().withEcho(0, 1200, 7));
        QCOMPARE(bench.endings, QVector<Ending>({Ending::Discarded}));
        QCOMPARE(writesAtTheEnd, 1);
        QCOMPARE(bench.writes(), 1);
    }

    void listenerMayDiscardWhatWouldBeComplete()
    {
        RecordingBench bench;
        bench.run->start();
        bench.take(kResultsOfRecording - 1);
        QObject::connect(bench.run.get(), &RecordingRun::heard, bench.run.get(),
                         &RecordingRun::discard);
        bench.take(1, aMeasurement().withEcho(0, 1200, 7));
        QCOMPARE(bench.endings, QVector<Ending>({Ending::Discarded}));
    }

    void anotherRecordingMayStartAtTheEnd()
    {
        RecordingBench bench;
        QObject::connect(bench.run.get(), &RecordingRun::ended, bench.run.get(),
                         &RecordingRun::start);
        bench.run->start();
        bench.take(kResultsOfRecording);
        QCOMPARE(bench.run->state(), State::StartRequested);
        bench.take(kResultsOfRecording);
        QCOMPARE(bench.endings, QVector<Ending>({Ending::Completed, Ending::Completed}));
        QCOMPARE(bench.writes(), 2 * 146);
    }

    void runMayBeDestroyedByItsEnd()
    {
        for (const Ending ending :
             {Ending::Completed, Ending::Stopped, Ending::TimedOut, Ending::Discarded}) {
            RecordingBench bench;
            QObject::connect(bench.run.get(), &RecordingRun::ended, &bench.context,
                             [&bench] { bench.run.reset(); });
            bench.record(ending == Ending::Completed ? kResultsOfRecording - 2 : 10);
            if (ending == Ending::Completed)
                bench.take(1);
            else
                bringToItsEnd(bench, ending);
            QVERIFY(!bench.run);
            QCOMPARE(bench.endings, QVector<Ending>({ending}));
        }
    }

    void destroyedRunTellsNothing()
    {
        RecordingBench bench;
        bench.record(10);
        bench.run.reset();
        bench.pass(10'000);
        QVERIFY(bench.endings.isEmpty());
    }

    void formerThresholdsMayBeWrittenBackAtEachEnd_data() { addEndings(); }
    // What a program without a window does: nothing of the recording stays on the ECU.
    void formerThresholdsMayBeWrittenBackAtEachEnd()
    {
        QFETCH(Ending, ending);
        const SimulatorProcess simulator({"--streams", "off"});
        orv::OrvCtrlSocket ecu("127.0.0.1", simulator.controlPort());
        ecu.setReceiveTimeout(kAnswerPatienceMs);
        RecordingBench bench(&ecu);
        bench.settings.sensor = 7;
        orv::SensorThreshold before;
        QVERIFY(bench.client.readThresholds(7, before));
        QObject::connect(bench.run.get(), &RecordingRun::ended, &bench.context,
                         [&] { bench.client.writeThresholds(before, false); });

        bench.record(10);

        orv::SensorThreshold now;
        QVERIFY(bench.client.readThresholds(7, now));
        QVERIFY(now.entries != before.entries);
        bringToItsEnd(bench, ending);
        QCOMPARE(bench.endings, QVector<Ending>({ending}));
        bench.take(10);
        QVERIFY(bench.client.readThresholds(7, now));
        QVERIFY(now == before);
    }
};

QTEST_GUILESS_MAIN(RecordingEndsTest)
#include "test_recording_ends.moc"
