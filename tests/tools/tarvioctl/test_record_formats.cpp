#include "tests/support/FreespaceBuilder.h"
#include "tests/support/MeasurementBuilder.h"
#include "tools/tarvioctl/RecordFormat.h"
#include "tools/tarvioctl/StreamTally.h"

#include <QJsonDocument>
#include <QtTest>

using namespace tarvioctl;

namespace {

// 2026-01-02 03:04:05.678901 UTC
const std::chrono::system_clock::time_point kTime{std::chrono::microseconds(1767323045678901)};

Arrival anArrival()
{
    return {.number = 7, .time = kTime, .sender = QStringLiteral("192.168.1.3:50002")};
}

orv::OrvMeasurementResult aResult()
{
    orv::OrvMeasurementResult result =
        aMeasurement().withSender(2).withReceiver(1).withReceiver(2).withReceiver(11).withEcho(
            2, 5120, 7);
    result.echoes[1] = {{.magnitude = 3, .secondValue = 1, .timeOfFlight = 6144},
                        {.magnitude = 0, .secondValue = 1, .timeOfFlight = 65484}};
    result.measurementWord = 4294967295;
    return result;
}

orv::OrvFreespacePackage aFreespace()
{
    return aPackage({anEntry(3).at(2500, -10, 16384).withDistance(1, 870, {600, 200}, {601, -200}),
                     anEntry(4)});
}

} // namespace

class TestRecordFormats : public QObject
{
    Q_OBJECT

private slots:
    void textIsALineARecord()
    {
        QCOMPARE(textFormat()->header(), QString());
        QCOMPARE(
            textFormat()->text(anArrival(), aResult()),
            QStringLiteral("2026-01-02T03:04:05.678901Z measurement 4294967295 from "
                           "192.168.1.3:50002: sending 3, listening 2,12; sensor 2: 6144 us "
                           "magnitude 3, 65484 us magnitude 0; sensor 3: 5120 us magnitude 7"));
        QCOMPARE(textFormat()->text(anArrival(), aFreespace()),
                 QStringLiteral("2026-01-02T03:04:05.678901Z freespace from 192.168.1.3:50002: 2 "
                                "sensors; sensor 4: middle 870 mm; sensor 5: free"));
    }

    void textSaysWhatIsNotThere()
    {
        QCOMPARE(textFormat()->text(anArrival(), orv::OrvMeasurementResult(aMeasurement())),
                 QStringLiteral("2026-01-02T03:04:05.678901Z measurement 0 from 192.168.1.3:50002: "
                                "sending none, listening none"));
    }

    void jsonHoldsTheWholeMeasurement()
    {
        QCOMPARE(jsonLinesFormat()->header(), QString());
        QCOMPARE(
            jsonLinesFormat()->text(anArrival(), aResult()),
            QStringLiteral(
                R"({"record":7,"arrivalTime":"2026-01-02T03:04:05.678901Z",)"
                R"("sender":"192.168.1.3:50002","stream":"measurement",)"
                R"("measurementWord":4294967295,"sendingSensors":[3],"listeningSensors":[2,12],)"
                R"("echoes":[)"
                R"({"sensor":2,"timeOfFlightUs":6144,"magnitude":3,"secondValue":1},)"
                R"({"sensor":2,"timeOfFlightUs":65484,"magnitude":0,"secondValue":1},)"
                R"({"sensor":3,"timeOfFlightUs":5120,"magnitude":7,"secondValue":0}]})"));
    }

    void jsonHoldsTheWholeFreespace()
    {
        const QString entry = QStringLiteral(
            R"({"sensor":%1,"xMm":%2,"yMm":%3,"directionDegrees":%4,)"
            R"("corners":[{"xMm":100,"yMm":500},{"xMm":2100,"yMm":500},)"
            R"({"xMm":2100,"yMm":-500},{"xMm":100,"yMm":-500}],)"
            R"("arcEnds":[{"xMm":2300,"yMm":200},{"xMm":2300,"yMm":-200}],)"
            R"("secondPair":[{"xMm":0,"yMm":0},{"xMm":0,"yMm":0}],"distances":[%5]})");
        const QString distance = QStringLiteral(R"({"wedge":"middle","distanceMm":870,)"
                                                R"("firstPoint":{"xMm":600,"yMm":200},)"
                                                R"("secondPoint":{"xMm":601,"yMm":-200}})");
        QCOMPARE(jsonLinesFormat()->text(anArrival(), aFreespace()),
                 QStringLiteral(R"({"record":7,"arrivalTime":"2026-01-02T03:04:05.678901Z",)"
                                R"("sender":"192.168.1.3:50002","stream":"freespace",)"
                                R"("entries":[)") +
                     entry.arg("4", "2500", "-10", "90", distance) + QLatin1Char(',') +
                     entry.arg("5", "0", "0", "0", "") + QStringLiteral("]}"));
    }

    void jsonIsReadByOthers()
    {
        for (const QString& line : {jsonLinesFormat()->text(anArrival(), aResult()),
                                    jsonLinesFormat()->text(anArrival(), aFreespace()),
                                    jsonLinesFormat()->text(anArrival(), aPackage({}))}) {
            QJsonParseError error;
            QVERIFY(QJsonDocument::fromJson(line.toUtf8(), &error).isObject());
            QCOMPARE(error.error, QJsonParseError::NoError);
        }
    }

    void csvHasALineAnEcho()
    {
        QCOMPARE(csvFormat()->header(),
                 QStringLiteral("record,arrivalTime,sender,stream,measurementWord,sendingSensors,"
                                "listeningSensors,sensor,timeOfFlightUs,magnitude,secondValue,"
                                "wedge,distanceMm,firstXMm,firstYMm,secondXMm,secondYMm"));
        const QString same = QStringLiteral("7,2026-01-02T03:04:05.678901Z,192.168.1.3:50002,"
                                            "measurement,4294967295,3,2 12,");
        QCOMPARE(csvFormat()->text(anArrival(), aResult()),
                 same + QStringLiteral("2,6144,3,1,,,,,,\n") + same +
                     QStringLiteral("2,65484,0,1,,,,,,\n") + same +
                     QStringLiteral("3,5120,7,0,,,,,,"));
    }

    void csvHasALineADistance()
    {
        QCOMPARE(csvFormat()->text(anArrival(), aFreespace()),
                 QStringLiteral("7,2026-01-02T03:04:05.678901Z,192.168.1.3:50002,freespace,,,,4,,,,"
                                "middle,870,600,200,601,-200"));
    }

    void csvShowsARecordThatHoldsNothing()
    {
        const QString start = QStringLiteral("7,2026-01-02T03:04:05.678901Z,192.168.1.3:50002,");
        QCOMPARE(csvFormat()->text(anArrival(), orv::OrvMeasurementResult(aMeasurement())),
                 start + QStringLiteral("measurement,0,,,,,,,,,,,,"));
        QCOMPARE(csvFormat()->text(anArrival(), aPackage({})),
                 start + QStringLiteral("freespace,,,,,,,,,,,,,"));
    }

    void rateLiesBetweenFirstAndLast()
    {
        StreamTally tally;
        QCOMPARE(tally.summary(), QStringLiteral("0 records, 0 datagrams that cannot be decoded"));
        for (int record = 0; record < 21; ++record)
            tally.addRecord(kTime + std::chrono::milliseconds(50 * record));
        tally.addUndecodable();
        QCOMPARE(tally.summary(),
                 QStringLiteral("21 records, 20.0 a second, 1 datagrams that cannot be decoded"));
    }
};

QTEST_GUILESS_MAIN(TestRecordFormats)
#include "test_record_formats.moc"
