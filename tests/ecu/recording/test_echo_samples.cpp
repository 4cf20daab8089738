#include "ecu/recording/EchoSamples.h"

#include <QBuffer>
#include <QtTest>

using Echoes = std::vector<orv::OrvSensorEcho>;

namespace {

orv::OrvSensorEcho echo(std::uint16_t timeOfFlight, std::uint8_t magnitude)
{
    return {.magnitude = magnitude, .timeOfFlight = timeOfFlight};
}

EchoSeries seriesOf(std::initializer_list<std::uint16_t> magnitudes)
{
    EchoSeries series;
    for (const std::uint16_t magnitude : magnitudes)
        series.add(magnitude);
    return series;
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

    void csvOfNoSamplesIsEmpty() { QCOMPARE(csvOf({}), QByteArray()); }

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
