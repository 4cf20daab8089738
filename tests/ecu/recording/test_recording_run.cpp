#include "tests/ecu/recording/RecordingBench.h"

#include <QtTest>

#include <vector>

using Ending = RecordingRun::Ending;
using State = RecordingRun::State;

namespace {

constexpr std::uint8_t kThresholdsCode = 1;

} // namespace

class RecordingRunTest : public QObject
{
    Q_OBJECT

private slots:
    void startsWithTheNextResult()
    {
        RecordingBench bench;
        bench.take(5);
        QCOMPARE(bench.run->state(), State::Idle);
        bench.run->start();
        QCOMPARE(bench.run->state(), State::StartRequested);
        QCOMPARE(bench.starts, 0);
        bench.take(1);
        QCOMPARE(bench.run->state(), State::Recording);
        QCOMPARE(bench.starts, 1);
        QCOMPARE(bench.writes(), 0);
        bench.take(1);
        QCOMPARE(bench.starts, 1);
        QCOMPARE(bench.writes(), 1);
    }

    void writes146RecordsThatAreNotPermanent()
    {
        RecordingBench bench;
        bench.settings.sensor = 4;
        bench.run->start();
        bench.take(kResultsOfRecording);
        QCOMPARE(bench.writes(), 146);
        using Bytes = std::vector<std::uint8_t>;
        const Bytes first = {2,    4,    0x00, 0x8F, 0x5B, 0xFF, 0xFF, 0xFF,
                             0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0};
        const Bytes last = {2,    4,    0xFF, 0xFF, 0xFF, 0xFF, 0xDF, 0x5F,
                            0x1F, 0x00, 0x8F, 0x5B, 0xFF, 0xFF, 0};
        QVERIFY(bench.request(0).payload == first);
        QVERIFY(bench.request(145).payload == last);
        for (int i = 0; i < 146; ++i) {
            QCOMPARE(bench.request(i).code, kThresholdsCode);
            QCOMPARE(int{bench.request(i).payload.at(0)}, 2);
            QCOMPARE(int{bench.request(i).payload.at(1)}, 4);
        }
    }

    void windowIsToldAtEachPosition()
    {
        RecordingBench bench;
        bench.settings.positionStep = 4;
        bench.record(37 * 3 + 1);
        QCOMPARE(bench.positions.size(), 38);
        for (int i = 0; i < 38; ++i)
            QCOMPARE(bench.positions[i], 4 * i);
        const orv::ThresholdEntries first = {0x00, 0x8F, 0x5B, 0xFF, 0xFF, 0xFF,
                                             0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
        const orv::ThresholdEntries second = {0x5F, 0x00, 0x8F, 0x5B, 0xFF, 0xFF,
                                              0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
        QVERIFY(bench.thresholds[0].entries == first);
        QVERIFY(bench.thresholds[1].entries == second);
    }

    void completesAfterTheTailOfTheLastPosition()
    {
        RecordingBench bench;
        bench.run->start();
        bench.take(kResultsOfRecording - 1);
        QCOMPARE(bench.run->state(), State::Recording);
        QVERIFY(bench.endings.isEmpty());
        bench.take(1);
        QCOMPARE(bench.run->state(), State::Idle);
        QCOMPARE(bench.endings, QVector<Ending>({Ending::Completed}));
        QCOMPARE(bench.tailResultsLeft, 16U);
    }

    void echoesOfTheChosenSensorAreHeard()
    {
        RecordingBench bench;
        bench.settings.sensor = 2;
        bench.record(0);
        bench.take(1, aMeasurement().withEcho(2, 1200, 7).withEcho(3, 1400, 1));
        bench.take(1, aMeasurement().withEcho(3, 1500, 1));
        bench.take(1, aMeasurement().withEcho(2, 1210, 9).withEcho(2, 800, 3));
        QCOMPARE(bench.heard, QVector<int>({1200, 1210, 800}));
    }

    void resultThatStartsTheRecordingIsNotHeard()
    {
        RecordingBench bench;
        bench.run->start();
        bench.take(1, aMeasurement().withEcho(0, 1200, 7));
        QVERIFY(bench.heard.isEmpty());
        bench.take(1, aMeasurement().withEcho(0, 1300, 9));
        QCOMPARE(bench.heard, QVector<int>({1300}));
    }

    void settingsMayChangeWhileRecording()
    {
        RecordingBench bench;
        bench.record(1);
        bench.settings = {
            .sensor = 6, .windowLeft = 3, .windowRight = 6, .samplesPerStep = 1, .positionStep = 5};
        // Samples left: 2, then 1, which is as many as a position takes now.
        bench.take(2);
        QCOMPARE(bench.positions, QVector<int>({0, 0}));
        bench.take(1);
        QCOMPARE(bench.positions, QVector<int>({0, 0, 5}));
        const std::vector<std::uint8_t> expected = {2,    6,    0x5F, 0x1F, 0x60, 0x8F, 0xDB, 0xFF,
                                                    0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0};
        QVERIFY(bench.request(2).payload == expected);
    }

    void failedWritesDoNotEndTheRecording()
    {
        RecordingBench bench;
        bench.socket.queueReply(kThresholdsCode, {}, 7);
        bench.run->start();
        bench.take(kResultsOfRecording);
        QCOMPARE(bench.writes(), 146);
        QCOMPARE(bench.positions.size(), 146);
        QCOMPARE(bench.endings, QVector<Ending>({Ending::Completed}));
    }

    void recordingWithoutAClientWritesNothing()
    {
        std::uint32_t tailResultsLeft = 16;
        RecordingRun run(nullptr, nullptr, tailResultsLeft);
        int moves = 0;
        int ends = 0;
        connect(&run, &RecordingRun::windowMoved, this, [&] { ++moves; });
        connect(&run, &RecordingRun::ended, this, [&] { ++ends; });
        run.start();
        for (int i = 0; i < kResultsOfRecording; ++i)
            run.take(aMeasurement(), RecordingSettings());
        QCOMPARE(moves, 146);
        QCOMPARE(ends, 1);
    }

    void stopTakesEffectWithTheNextResult()
    {
        RecordingBench bench;
        bench.record(10);
        const int writes = bench.writes();
        bench.run->requestStop();
        QCOMPARE(bench.run->state(), State::StopRequested);
        QVERIFY(bench.endings.isEmpty());
        bench.take(1, aMeasurement().withEcho(0, 1200, 7));
        QCOMPARE(bench.run->state(), State::Idle);
        QCOMPARE(bench.endings, QVector<Ending>({Ending::Stopped}));
        bench.take(10, aMeasurement().withEcho(0, 1200, 7));
        QCOMPARE(bench.writes(), writes);
        QVERIFY(bench.heard.isEmpty());
        QCOMPARE(bench.endings.size(), 1);
    }

    void stopWhileIdleChangesNothing()
    {
        RecordingBench bench;
        bench.run->requestStop();
        bench.run->requestStop();
        QCOMPARE(bench.run->state(), State::Idle);
        bench.take(6);
        QCOMPARE(bench.writes(), 0);
        QVERIFY(bench.states.isEmpty());
        QVERIFY(bench.endings.isEmpty());
    }

    void startAfterStopStartsAnew()
    {
        RecordingBench bench;
        bench.record(10);
        bench.run->requestStop();
        bench.run->start();
        QCOMPARE(bench.run->state(), State::StartRequested);
        bench.take(1 + 1);
        QCOMPARE(bench.starts, 2);
        QCOMPARE(bench.positions.last(), 0);
        QVERIFY(bench.endings.isEmpty());
    }

    void startWhileRecordingStartsAnew()
    {
        RecordingBench bench;
        bench.record(10);
        bench.run->start();
        QCOMPARE(bench.run->state(), State::StartRequested);
        bench.take(1 + 1);
        QCOMPARE(bench.starts, 2);
        QCOMPARE(bench.positions.last(), 0);
        QVERIFY(bench.endings.isEmpty());
    }

    void everyChangeOfTheStateIsTold()
    {
        RecordingBench bench;
        bench.record(10);
        bench.run->requestStop();
        bench.take(1);
        QCOMPARE(bench.states, QVector<State>({State::StartRequested, State::Recording,
                                               State::StopRequested, State::Idle}));
    }

    void tailOfAStoppedRecordingIsContinuedByTheNext()
    {
        RecordingBench bench;
        bench.record(145 * 3 + 5);
        bench.run->requestStop();
        bench.take(1);
        QCOMPARE(bench.tailResultsLeft, 11U);
        bench.record(145 * 3 + 11);
        QCOMPARE(bench.run->state(), State::Recording);
        bench.take(1);
        QCOMPARE(bench.endings, QVector<Ending>({Ending::Stopped, Ending::Completed}));
    }

    void runsOfTheProcessShareOneTailCounter()
    {
        RecordingRun stopped(nullptr);
        RecordingRun next(nullptr);
        const auto record = [](RecordingRun& run, int count) {
            run.start();
            for (int i = 0; i < 1 + count; ++i)
                run.take(aMeasurement(), RecordingSettings());
        };
        record(stopped, 145 * 3 + 5);
        stopped.discard();
        record(next, 145 * 3 + 11);
        QCOMPARE(next.state(), State::Recording);
        next.take(aMeasurement(), RecordingSettings());
        QCOMPARE(next.state(), State::Idle);
        QCOMPARE(RecordingSweep::processTailResultsLeft(), 16U);
    }

    void timeIsCountedFromTheFirstResultToTheEnd()
    {
        RecordingBench bench;
        bench.run->start();
        bench.pass(700);
        bench.take(1);
        for (int second = 0; second < 18; ++second) {
            bench.pass(1000);
            bench.take(1);
        }
        bench.pass(437);
        bench.take(kResultsOfRecording - 1 - 18);
        QCOMPARE(bench.endings, QVector<Ending>({Ending::Completed}));
        QCOMPARE(bench.run->elapsedMs(), 18437);
        bench.pass(60'000);
        QCOMPARE(bench.run->elapsedMs(), 18437);
    }

    void recordingWithoutAResultTookNoTime()
    {
        RecordingBench bench;
        QCOMPARE(bench.run->elapsedMs(), 0);
        bench.record(0);
        bench.pass(300);
        bench.run->discard();
        QCOMPARE(bench.run->elapsedMs(), 300);
        bench.run->start();
        bench.pass(2200);
        QCOMPARE(bench.endings.last(), Ending::TimedOut);
        QCOMPARE(bench.run->elapsedMs(), 0);
    }
};

QTEST_GUILESS_MAIN(RecordingRunTest)
#include "test_recording_run.moc"
