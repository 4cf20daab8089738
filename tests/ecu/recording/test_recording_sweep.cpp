#include "ecu/recording/RecordingSweep.h"
#include "tests/support/MeasurementBuilder.h"

#include <QtTest>

#include <vector>

namespace {

// A sweep with a tail counter of its own.
struct Sweep
{
    Sweep() { sweep.start(settings.samplesPerStep); }

    RecordingSweep::Step take() { return sweep.take(aMeasurement(), settings); }

    void take(int count)
    {
        for (int i = 0; i < count; ++i)
            take();
    }

    std::uint32_t tailResultsLeft = 16;
    RecordingSettings settings;
    RecordingSweep sweep{tailResultsLeft};
};

// What a whole recording asked for.
struct Outcome
{
    explicit Outcome(Sweep& sweep)
    {
        for (bool complete = false; !complete && results < 20'000; ++results) {
            const RecordingSweep::Step step = sweep.take();
            complete = step.complete;
            if (step.threshold)
                writes.push_back({results, static_cast<int>(step.position)});
        }
    }

    struct Write
    {
        int result;
        int position;
    };
    std::vector<Write> writes;
    int results = 0; // up to the one that completed it
};

} // namespace

class RecordingSweepTest : public QObject
{
    Q_OBJECT

private slots:
    void defaultsWriteEachPositionOnceAndTakeThreeResultsThere()
    {
        Sweep sweep;
        const Outcome outcome(sweep);
        QCOMPARE(outcome.writes.size(), std::size_t{146});
        for (int position = 0; position <= 145; ++position) {
            const auto& write = outcome.writes[static_cast<std::size_t>(position)];
            QCOMPARE(write.position, position);
            QCOMPARE(write.result, 3 * position);
        }
    }

    void lastPositionTakesSixteenResultsAndOneThatCompletes()
    {
        Sweep sweep;
        QCOMPARE(Outcome(sweep).results, 145 * 3 + 16 + 1);
    }

    void completedSweepStartsAgainWithTheFullTail()
    {
        Sweep sweep;
        const Outcome first(sweep);
        const Outcome second(sweep);
        QCOMPARE(second.results, first.results);
        QCOMPARE(second.writes.front().position, 0);
        QCOMPARE(sweep.tailResultsLeft, 16U);
    }

    void largerStepsEndAtTheFirstPositionAtOrBeyondTheEnd_data()
    {
        QTest::addColumn<int>("positionStep");
        QTest::addColumn<int>("writes");
        QTest::addColumn<int>("lastPosition");
        QTest::newRow("2") << 2 << 74 << 146;
        QTest::newRow("3") << 3 << 50 << 147;
        QTest::newRow("4") << 4 << 38 << 148;
        QTest::newRow("5") << 5 << 30 << 145;
    }
    void largerStepsEndAtTheFirstPositionAtOrBeyondTheEnd()
    {
        QFETCH(int, positionStep);
        Sweep sweep;
        sweep.settings.positionStep = static_cast<std::uint8_t>(positionStep);
        const Outcome outcome(sweep);
        QTEST(static_cast<int>(outcome.writes.size()), "writes");
        QTEST(outcome.writes.back().position, "lastPosition");
        QCOMPARE(outcome.results, 3 * (static_cast<int>(outcome.writes.size()) - 1) + 17);
    }

    void sampleCountsBeyondTheTailEndInTheTailAllTheSame_data()
    {
        QTest::addColumn<int>("samplesPerStep");
        QTest::addColumn<int>("results");
        QTest::newRow("1") << 1 << 145 * 1 + 17;
        QTest::newRow("16") << 16 << 145 * 16 + 17;
        QTest::newRow("64") << 64 << 145 * 64 + 17;
    }
    void sampleCountsBeyondTheTailEndInTheTailAllTheSame()
    {
        QFETCH(int, samplesPerStep);
        Sweep sweep;
        sweep.settings.samplesPerStep = static_cast<std::uint8_t>(samplesPerStep);
        sweep.sweep.start(sweep.settings.samplesPerStep);
        const Outcome outcome(sweep);
        QTEST(outcome.results, "results");
        QCOMPARE(outcome.writes.size(), std::size_t{146});
    }

    void thresholdsAreThoseOfThePositionForTheChosenSensor()
    {
        Sweep sweep;
        sweep.settings.sensor = 7;
        sweep.settings.windowLeft = 1;
        sweep.settings.windowRight = 4;
        sweep.take(3);
        const auto threshold = sweep.take().threshold;
        QVERIFY(threshold);
        QCOMPARE(int{threshold->sensorId}, 7);
        QCOMPARE(int{threshold->scale}, 0);
        const orv::ThresholdEntries expected = {0x1F, 0x20, 0x8F, 0x9B, 0xFF, 0xFF,
                                                0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
        QVERIFY(threshold->entries == expected);
    }

    void changedPositionStepCountsFromTheNextAdvanceOn()
    {
        Sweep sweep;
        sweep.take(2);
        sweep.settings.positionStep = 5;
        QCOMPARE(sweep.take().position, 0U);
        QCOMPARE(sweep.take().position, 5U);
    }

    void moreSamplesCountFromTheNextPositionOn()
    {
        Sweep sweep;
        sweep.take(1);
        sweep.settings.samplesPerStep = 5;
        sweep.take(2);
        QCOMPARE(sweep.take().position, 1U);
        sweep.take(3);
        QCOMPARE(sweep.take().position, 1U);
        QCOMPARE(sweep.take().position, 2U);
    }

    void sampleCountLoweredToTheSamplesLeftWritesThePositionOnceMore()
    {
        Sweep sweep;
        sweep.take(1);
        sweep.settings.samplesPerStep = 2;
        const RecordingSweep::Step step = sweep.take();
        QVERIFY(step.threshold);
        QCOMPARE(step.position, 0U);
    }

    void echoesOfTheChosenSensorAloneAreKept()
    {
        Sweep sweep;
        sweep.settings.sensor = 3;
        const orv::OrvMeasurementResult result =
            aMeasurement().withEcho(3, 5120, 7).withEcho(4, 6000, 9);
        const RecordingSweep::Step step = sweep.sweep.take(result, sweep.settings);
        QVERIFY(step.echoes);
        QCOMPARE(step.echoes->size(), std::size_t{1});
        QCOMPARE(int{step.echoes->front().timeOfFlight}, 5120);
    }

    void resultWithoutEchoesOfTheSensorCountsAsASample()
    {
        Sweep sweep;
        QVERIFY(!sweep.take().echoes);
        sweep.take(2);
        QCOMPARE(sweep.take().position, 1U);
    }

    void abandonedTailIsContinuedByTheNextSweep()
    {
        Sweep abandoned;
        abandoned.take(145 * 3 + 5);
        QCOMPARE(abandoned.tailResultsLeft, 11U);

        Sweep next;
        next.tailResultsLeft = abandoned.tailResultsLeft;
        QCOMPARE(Outcome(next).results, 145 * 3 + 11 + 1);
    }

    void sweepsOfTheProcessShareOneTailCounter()
    {
        RecordingSweep first;
        RecordingSweep second;
        const RecordingSettings settings{.samplesPerStep = 1, .positionStep = 200};
        for (RecordingSweep* sweep : {&first, &second}) {
            sweep->start(1);
            sweep->take(aMeasurement(), settings);
        }
        // Both stand behind the end now and count the same sixteen down.
        for (int i = 0; i < 8; ++i) {
            QVERIFY(!first.take(aMeasurement(), settings).complete);
            QVERIFY(!second.take(aMeasurement(), settings).complete);
        }
        QVERIFY(first.take(aMeasurement(), settings).complete);
        QCOMPARE(RecordingSweep::processTailResultsLeft(), 16U);
    }
};

QTEST_APPLESS_MAIN(RecordingSweepTest)
#include "test_recording_sweep.moc"
