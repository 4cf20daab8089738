#include "ecu/recording/EchoSamples.h"
#include "tests/support/AllocationCounter.h"

#include <QBuffer>
#include <QtTest>

using Echoes = std::vector<orv::OrvSensorEcho>;

namespace {

orv::OrvSensorEcho echo(std::uint16_t timeOfFlight, std::uint8_t magnitude)
{
    return {.magnitude = magnitude, .timeOfFlight = timeOfFlight};
}

EchoSeries seriesOf(std::initializer_list<std::uint16_t> magnitudes,
                    SampleStore store = SampleStore::Everything)
{
    EchoSeries series;
    for (const std::uint16_t magnitude : magnitudes)
        series.add(magnitude, store);
    return series;
}

// Results whose echoes come at a hundred times of flight.
void addResults(EchoSamples& samples, int count)
{
    for (int number = 0; number < count; ++number) {
        const auto time = static_cast<std::uint16_t>(1 + number % 100);
        samples.add({echo(time, static_cast<std::uint8_t>(number % 16))});
    }
}

QByteArray csvOf(const EchoSamples& samples)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeCsv(samples, buffer) ? buffer.data() : QByteArray("not written");
}

} // namespace

class EchoSamplesTest : public QObject
{
    Q_OBJECT

private slots:
    void seriesWithoutSamplesHasNoMean()
    {
        const EchoSeries none;
        QCOMPARE(none.amplitude(EchoValue::Mean), none.amplitude(EchoValue::Maximum));
    }

    void magnitudeCodesStandForDecibels_data()
    {
        QTest::addColumn<quint16>("magnitude");
        QTest::addColumn<double>("amplitude");
        QTest::newRow("weakest, -29.12 dB") << quint16{0} << 0.034995;
        QTest::newRow("middle, -14.52 dB") << quint16{8} << 0.187932;
        QTest::newRow("strongest, -1.19 dB") << quint16{15} << 0.871971;
        QTest::newRow("above the table") << quint16{16} << 0.871971;
        QTest::newRow("far above the table") << quint16{65535} << 0.871971;
    }

    void magnitudeCodesStandForDecibels()
    {
        QFETCH(quint16, magnitude);
        QFETCH(double, amplitude);
        const double shown = seriesOf({magnitude}).amplitude(EchoValue::Maximum);
        QVERIFY2(qAbs(shown - amplitude) < 0.000005, qPrintable(QString::number(shown)));
    }

    void maximumIsTheStrongestSampleWhereverItStands()
    {
        const double shown = seriesOf({3, 15, 0}).amplitude(EchoValue::Maximum);
        QVERIFY(qAbs(shown - 0.871971) < 0.000005);
    }

    void meanIsTheMeanOfAmplitudesNotTheAmplitudeOfTheMean()
    {
        const double shown = seriesOf({0, 15}).amplitude(EchoValue::Mean);
        QVERIFY2(qAbs(shown - 0.453483) < 0.000005, qPrintable(QString::number(shown)));
    }

    void drawnValuesDoNotDependOnTheStore()
    {
        const EchoSeries everything = seriesOf({3, 15, 0, 7, 7});
        const EchoSeries drawn = seriesOf({3, 15, 0, 7, 7}, SampleStore::DrawnValues);
        QCOMPARE(drawn.amplitude(EchoValue::Maximum), everything.amplitude(EchoValue::Maximum));
        QCOMPARE(drawn.amplitude(EchoValue::Mean), everything.amplitude(EchoValue::Mean));
        QVERIFY(drawn.amplitude(EchoValue::Mean) < drawn.amplitude(EchoValue::Maximum));
    }

    void storeOfDrawnValuesDoesNotGrowWithItsSamples()
    {
        EchoSamples samples(SampleStore::DrawnValues);
        addResults(samples, 100);
        const Echoes more(1000, echo(50, 7));
        const AllocationCounter counter;
        for (int count = 0; count < 1000; ++count)
            samples.add(more);
        QCOMPARE(counter.count(), std::size_t{0});
        QCOMPARE(samples.series().size(), 100U);
    }

    void storeOfEverythingKeepsEachSample()
    {
        EchoSamples samples;
        const Echoes more(1000, echo(50, 7));
        const AllocationCounter counter;
        for (int count = 0; count < 1000; ++count)
            samples.add(more);
        QVERIFY(counter.heldBytes() >= 2'000'000);
        QCOMPARE(samples.series().at(50).magnitudes().size(), 1'000'000U);
    }

    void clearedStoreKeepsItsKind()
    {
        EchoSamples samples(SampleStore::DrawnValues);
        samples.add({echo(1200, 7)});
        samples.clear();
        samples.add({echo(1200, 7)});
        QVERIFY(samples.series().at(1200).magnitudes().empty());
    }

    void echoesAreCollectedByTimeOfFlight()
    {
        EchoSamples samples;
        samples.add({echo(1200, 7), echo(300, 1), echo(1200, 9)});
        QCOMPARE(samples.series().size(), 2U);
        QCOMPARE(samples.series().at(1200).magnitudes(), (std::vector<std::uint16_t>{7, 9}));
    }

    void echoesWithoutTimeOfFlightAreSkipped()
    {
        EchoSamples samples;
        samples.add({echo(0, 7), echo(0, 15)});
        QVERIFY(samples.series().empty());
    }

    void csvHoldsOneAscendingLineForEachTimeInArrivalOrder()
    {
        EchoSamples samples;
        samples.add({echo(1200, 7), echo(65535, 15)});
        samples.add({echo(1200, 9), echo(51, 0)});
        samples.add({echo(1200, 8)});
        QCOMPARE(csvOf(samples), QByteArray("51,0\n1200,7,9,8\n65535,15\n"));
    }

    void csvKeepsMagnitudeCodesAboveTheTable()
    {
        EchoSamples samples;
        samples.add({echo(1200, 255)});
        QCOMPARE(csvOf(samples), QByteArray("1200,255\n"));
    }

    void csvOfNoSamplesIsEmpty() { QCOMPARE(csvOf(EchoSamples()), QByteArray()); }

    void deviceThatTakesNothingIsAFailure()
    {
        EchoSamples samples;
        samples.add({echo(1200, 7)});
        QBuffer readOnly;
        readOnly.open(QIODevice::ReadOnly);
        QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QBuffer): ReadOnly device");
        QVERIFY(!writeCsv(samples, readOnly));
    }
};

QTEST_MAIN(EchoSamplesTest)
#include "test_echo_samples.moc"
