#include "ecu/recording/RecordingRun.h"
#include "orv_decoder/ControlFrame.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "tests/support/MeasurementBuilder.h"
#include "tests/support/ScriptedControlSocket.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/TestClock.h"

#include <QtTest>

#include <chrono>
#include <memory>
#include <vector>

using Ending = RecordingRun::Ending;
using State = RecordingRun::State;

namespace {

constexpr std::uint8_t kThresholdsCode = 1;

// Up to the last one of a recording with the defaults: one starts it, 145 positions take three
// each, the last one takes sixteen and one completes it.
constexpr int kResultsOfRecording = 1 + 145 * 3 + 16 + 1;

// A run, what it tells, and the time in the hand of the test.
struct Bench
{
    /// Without an ECU and without a queued reply each exchange fails.
    explicit Bench(orv::OrvCtrlSocketBase* ecu = nullptr) : client(ecu ? ecu : &socket)
    {
        const auto* told = run.get();
        QObject::connect(told, &RecordingRun::stateChanged, &context,
                         [this] { states.append(run->state()); });
        QObject::connect(told, &RecordingRun::started, &context, [this] { ++starts; });
        QObject::connect(told, &RecordingRun::heard, &context, [this](const auto& echoes) {
            for (const orv::OrvSensorEcho& echo : echoes)
                heard.append(int{echo.timeOfFlight});
        });
        QObject::connect(told, &RecordingRun::windowMoved, &context,
                         [this](const orv::SensorThreshold& threshold, std::uint32_t position) {
                             thresholds.append(threshold);
                             positions.append(static_cast<int>(position));
                         });
        QObject::connect(told, &RecordingRun::ended, &context,
                         [this](Ending how) { endings.append(how); });
    }

    void take(int count, const orv::OrvMeasurementResult& result = aMeasurement())
    {
        for (int i = 0; i < count; ++i)
            run->take(result, settings);
    }

    // Starts it and takes this many results besides the one that starts it.
    void record(int count)
    {
        run->start();
        take(1 + count);
    }

    // Lets time go by and runs what is due then.
    void pass(int milliseconds)
    {
        clock.advance(std::chrono::milliseconds(milliseconds));
        QCoreApplication::processEvents();
    }

    int writes() const { return static_cast<int>(socket.requests().size()); }

    orv::ControlRequest request(int index) const
    {
        return *orv::decodeRequest(socket.requests().at(static_cast<std::size_t>(index)));
    }

    ScriptedControlSocket socket;
    orv::OrvCtrlClient client;
    TestClock clock;
    RecordingSettings settings;
    std::uint32_t tailResultsLeft = 16;
    std::unique_ptr<RecordingRun> run =
        std::make_unique<RecordingRun>(&client, nullptr, tailResultsLeft);
    QVector<State> states;
    QVector<int> heard; // times of flight
    QVector<orv::SensorThreshold> thresholds;
    QVector<int> positions;
    QVector<Ending> endings;
    int starts = 0;
    QObject context;
};

// Brings the run from idle to a state.
void bringTo(Bench& bench, State state)
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
void bringToItsEnd(Bench& bench, Ending ending)
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

class RecordingRunTest : public QObject
{
    Q_OBJECT

private slots:
    void startsWithTheNextResult();
    void writes146RecordsThatAreNotPermanent();
    void windowIsToldAtEachPosition();
    void completesAfterTheTailOfTheLastPosition();
    void echoesOfTheChosenSensorAreHeard();
    void resultThatStartsTheRecordingIsNotHeard();
    void settingsMayChangeWhileRecording();
    void failedWritesDoNotEndTheRecording();
    void recordingWithoutAClientWritesNothing();

    void stopTakesEffectWithTheNextResult();
    void stopWhileIdleChangesNothing();
    void startAfterStopStartsAnew();
    void startWhileRecordingStartsAnew();
    void everyChangeOfTheStateIsTold();
    void tailOfAStoppedRecordingIsContinuedByTheNext();
    void runsOfTheProcessShareOneTailCounter();

    void timeIsCountedFromTheFirstResultToTheEnd();
    void recordingWithoutAResultTookNoTime();

    void silenceOfTwoSecondsTimesOut_data();
    void silenceOfTwoSecondsTimesOut();
    void everyRecordedResultBuysTwoSeconds();
    void resultThatStartsTheRecordingBuysNoTime();
    void startBuysTwoSeconds();
    void watchdogRestsAfterEachEnd_data();
    void watchdogRestsAfterEachEnd();
    void resultsWhileIdleWakeNoWatchdog();
    void timeOutByHandIsToldWhateverTheState();

    void stateSaysWhetherThereIsSomethingToLose_data();
    void stateSaysWhetherThereIsSomethingToLose();
    void stopBeforeTheFirstResultCountsAsRecording();
    void discardEndsAtOnce_data();
    void discardEndsAtOnce();
    void discardWhileIdleTellsNothing();

    void eachEndIsToldOnceAndWritesNothingMore_data();
    void eachEndIsToldOnceAndWritesNothingMore();
    void listenerMayDiscardWhenItHearsEchoes();
    void listenerMayDiscardWhatWouldBeComplete();
    void anotherRecordingMayStartAtTheEnd();
    void runMayBeDestroyedByItsEnd();
    void destroyedRunTellsNothing();
    void formerThresholdsMayBeWrittenBackAtEachEnd_data();
    void formerThresholdsMayBeWrittenBackAtEachEnd();
};

void RecordingRunTest::startsWithTheNextResult()
{
    Bench bench;
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

void RecordingRunTest::writes146RecordsThatAreNotPermanent()
{
    Bench bench;
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

void RecordingRunTest::windowIsToldAtEachPosition()
{
    Bench bench;
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

void RecordingRunTest::completesAfterTheTailOfTheLastPosition()
{
    Bench bench;
    bench.run->start();
    bench.take(kResultsOfRecording - 1);
    QCOMPARE(bench.run->state(), State::Recording);
    QVERIFY(bench.endings.isEmpty());
    bench.take(1);
    QCOMPARE(bench.run->state(), State::Idle);
    QCOMPARE(bench.endings, QVector<Ending>({Ending::Completed}));
    QCOMPARE(bench.tailResultsLeft, 16U);
}

void RecordingRunTest::echoesOfTheChosenSensorAreHeard()
{
    Bench bench;
    bench.settings.sensor = 2;
    bench.record(0);
    bench.take(1, aMeasurement().withEcho(2, 1200, 7).withEcho(3, 1400, 1));
    bench.take(1, aMeasurement().withEcho(3, 1500, 1));
    bench.take(1, aMeasurement().withEcho(2, 1210, 9).withEcho(2, 800, 3));
    QCOMPARE(bench.heard, QVector<int>({1200, 1210, 800}));
}

void RecordingRunTest::resultThatStartsTheRecordingIsNotHeard()
{
    Bench bench;
    bench.run->start();
    bench.take(1, aMeasurement().withEcho(0, 1200, 7));
    QVERIFY(bench.heard.isEmpty());
    bench.take(1, aMeasurement().withEcho(0, 1300, 9));
    QCOMPARE(bench.heard, QVector<int>({1300}));
}

void RecordingRunTest::settingsMayChangeWhileRecording()
{
    Bench bench;
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

void RecordingRunTest::failedWritesDoNotEndTheRecording()
{
    Bench bench;
    bench.socket.queueReply(kThresholdsCode, {}, 7);
    bench.run->start();
    bench.take(kResultsOfRecording);
    QCOMPARE(bench.writes(), 146);
    QCOMPARE(bench.positions.size(), 146);
    QCOMPARE(bench.endings, QVector<Ending>({Ending::Completed}));
}

void RecordingRunTest::recordingWithoutAClientWritesNothing()
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

void RecordingRunTest::stopTakesEffectWithTheNextResult()
{
    Bench bench;
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

void RecordingRunTest::stopWhileIdleChangesNothing()
{
    Bench bench;
    bench.run->requestStop();
    bench.run->requestStop();
    QCOMPARE(bench.run->state(), State::Idle);
    bench.take(6);
    QCOMPARE(bench.writes(), 0);
    QVERIFY(bench.states.isEmpty());
    QVERIFY(bench.endings.isEmpty());
}

void RecordingRunTest::startAfterStopStartsAnew()
{
    Bench bench;
    bench.record(10);
    bench.run->requestStop();
    bench.run->start();
    QCOMPARE(bench.run->state(), State::StartRequested);
    bench.take(1 + 1);
    QCOMPARE(bench.starts, 2);
    QCOMPARE(bench.positions.last(), 0);
    QVERIFY(bench.endings.isEmpty());
}

void RecordingRunTest::startWhileRecordingStartsAnew()
{
    Bench bench;
    bench.record(10);
    bench.run->start();
    QCOMPARE(bench.run->state(), State::StartRequested);
    bench.take(1 + 1);
    QCOMPARE(bench.starts, 2);
    QCOMPARE(bench.positions.last(), 0);
    QVERIFY(bench.endings.isEmpty());
}

void RecordingRunTest::everyChangeOfTheStateIsTold()
{
    Bench bench;
    bench.record(10);
    bench.run->requestStop();
    bench.take(1);
    QCOMPARE(bench.states, QVector<State>({State::StartRequested, State::Recording,
                                           State::StopRequested, State::Idle}));
}

void RecordingRunTest::tailOfAStoppedRecordingIsContinuedByTheNext()
{
    Bench bench;
    bench.record(145 * 3 + 5);
    bench.run->requestStop();
    bench.take(1);
    QCOMPARE(bench.tailResultsLeft, 11U);
    bench.record(145 * 3 + 11);
    QCOMPARE(bench.run->state(), State::Recording);
    bench.take(1);
    QCOMPARE(bench.endings, QVector<Ending>({Ending::Stopped, Ending::Completed}));
}

void RecordingRunTest::runsOfTheProcessShareOneTailCounter()
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

void RecordingRunTest::timeIsCountedFromTheFirstResultToTheEnd()
{
    Bench bench;
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

void RecordingRunTest::recordingWithoutAResultTookNoTime()
{
    Bench bench;
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

void RecordingRunTest::silenceOfTwoSecondsTimesOut_data()
{
    QTest::addColumn<State>("state");
    QTest::newRow("before the first result") << State::StartRequested;
    QTest::newRow("while recording") << State::Recording;
    QTest::newRow("after a request to stop") << State::StopRequested;
}

// Some tenths apart: the system may run the timer a little earlier or later.
void RecordingRunTest::silenceOfTwoSecondsTimesOut()
{
    QFETCH(State, state);
    Bench bench;
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

void RecordingRunTest::everyRecordedResultBuysTwoSeconds()
{
    Bench bench;
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

void RecordingRunTest::resultThatStartsTheRecordingBuysNoTime()
{
    Bench bench;
    bench.run->start();
    bench.pass(1500);
    bench.take(1);
    bench.pass(700);
    QCOMPARE(bench.endings, QVector<Ending>({Ending::TimedOut}));
}

void RecordingRunTest::startBuysTwoSeconds()
{
    Bench bench;
    bench.record(10);
    bench.run->requestStop();
    bench.pass(1500);
    bench.run->start();
    bench.pass(1500);
    QVERIFY(bench.endings.isEmpty());
}

void RecordingRunTest::watchdogRestsAfterEachEnd_data()
{
    addEndings();
}

void RecordingRunTest::watchdogRestsAfterEachEnd()
{
    QFETCH(Ending, ending);
    Bench bench;
    bench.record(10);
    bringToItsEnd(bench, ending);
    QCOMPARE(bench.endings, QVector<Ending>({ending}));
    bench.pass(10'000);
    QCOMPARE(bench.endings.size(), 1);
}

void RecordingRunTest::resultsWhileIdleWakeNoWatchdog()
{
    Bench bench;
    bench.take(5);
    bench.pass(10'000);
    QVERIFY(bench.endings.isEmpty());
}

void RecordingRunTest::timeOutByHandIsToldWhateverTheState()
{
    Bench bench;
    bench.record(10);
    bench.run->timeOut();
    QCOMPARE(bench.run->state(), State::Idle);
    bench.run->timeOut();
    QCOMPARE(bench.endings, QVector<Ending>({Ending::TimedOut, Ending::TimedOut}));
}

void RecordingRunTest::stateSaysWhetherThereIsSomethingToLose_data()
{
    QTest::addColumn<State>("state");
    QTest::addColumn<bool>("isRecording");
    QTest::newRow("idle") << State::Idle << false;
    QTest::newRow("before the first result") << State::StartRequested << false;
    QTest::newRow("recording") << State::Recording << true;
    QTest::newRow("stop requested") << State::StopRequested << true;
}

void RecordingRunTest::stateSaysWhetherThereIsSomethingToLose()
{
    QFETCH(State, state);
    Bench bench;
    bringTo(bench, state);
    QCOMPARE(bench.run->state(), state);
    QTEST(bench.run->isRecording(), "isRecording");
}

void RecordingRunTest::stopBeforeTheFirstResultCountsAsRecording()
{
    Bench bench;
    bench.run->start();
    bench.run->requestStop();
    QVERIFY(bench.run->isRecording());
    bench.take(1);
    QCOMPARE(bench.starts, 0);
    QCOMPARE(bench.endings, QVector<Ending>({Ending::Stopped}));
    QVERIFY(!bench.run->isRecording());
}

void RecordingRunTest::discardEndsAtOnce_data()
{
    QTest::addColumn<State>("state");
    QTest::newRow("before the first result") << State::StartRequested;
    QTest::newRow("recording") << State::Recording;
    QTest::newRow("stop requested") << State::StopRequested;
}

void RecordingRunTest::discardEndsAtOnce()
{
    QFETCH(State, state);
    Bench bench;
    bringTo(bench, state);
    bench.run->discard();
    QCOMPARE(bench.run->state(), State::Idle);
    QCOMPARE(bench.states.last(), State::Idle);
    QCOMPARE(bench.endings, QVector<Ending>({Ending::Discarded}));
}

void RecordingRunTest::discardWhileIdleTellsNothing()
{
    Bench bench;
    bench.run->discard();
    QVERIFY(bench.states.isEmpty());
    QVERIFY(bench.endings.isEmpty());
}

void RecordingRunTest::eachEndIsToldOnceAndWritesNothingMore_data()
{
    addEndings();
}

void RecordingRunTest::eachEndIsToldOnceAndWritesNothingMore()
{
    QFETCH(Ending, ending);
    Bench bench;
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
void RecordingRunTest::listenerMayDiscardWhenItHearsEchoes()
{
    Bench bench;
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

void RecordingRunTest::listenerMayDiscardWhatWouldBeComplete()
{
    Bench bench;
    bench.run->start();
    bench.take(kResultsOfRecording - 1);
    QObject::connect(bench.run.get(), &RecordingRun::heard, bench.run.get(),
                     &RecordingRun::discard);
    bench.take(1, aMeasurement().withEcho(0, 1200, 7));
    QCOMPARE(bench.endings, QVector<Ending>({Ending::Discarded}));
}

void RecordingRunTest::anotherRecordingMayStartAtTheEnd()
{
    Bench bench;
    QObject::connect(bench.run.get(), &RecordingRun::ended, bench.run.get(), &RecordingRun::start);
    bench.run->start();
    bench.take(kResultsOfRecording);
    QCOMPARE(bench.run->state(), State::StartRequested);
    bench.take(kResultsOfRecording);
    QCOMPARE(bench.endings, QVector<Ending>({Ending::Completed, Ending::Completed}));
    QCOMPARE(bench.writes(), 2 * 146);
}

void RecordingRunTest::runMayBeDestroyedByItsEnd()
{
    for (const Ending ending :
         {Ending::Completed, Ending::Stopped, Ending::TimedOut, Ending::Discarded}) {
        Bench bench;
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

void RecordingRunTest::destroyedRunTellsNothing()
{
    Bench bench;
    bench.record(10);
    bench.run.reset();
    bench.pass(10'000);
    QVERIFY(bench.endings.isEmpty());
}

void RecordingRunTest::formerThresholdsMayBeWrittenBackAtEachEnd_data()
{
    addEndings();
}

// What a program without a window does: nothing of the recording stays on the ECU.
void RecordingRunTest::formerThresholdsMayBeWrittenBackAtEachEnd()
{
    QFETCH(Ending, ending);
    const SimulatorProcess simulator({"--streams", "off"});
    orv::OrvCtrlSocket ecu("127.0.0.1", simulator.controlPort());
    Bench bench(&ecu);
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

QTEST_GUILESS_MAIN(RecordingRunTest)
#include "test_recording_run.moc"
