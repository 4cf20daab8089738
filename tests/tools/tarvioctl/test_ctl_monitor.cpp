#include "tests/support/LoopbackPeer.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/held_port.h"
#include "tests/tools/tarvioctl/CtlProcess.h"

#include <QRegularExpression>
#include <QtTest>

namespace {

using Bytes = std::vector<std::uint8_t>;

// Sensor 2 sends, 3 listens, one echo of sensor 3: 100 units of 51.2 us, magnitude 7.
const Bytes kMeasurement = {5, 0, 0, 0, 2, 0, 4, 0, 1, 2, 1, 100, 0, 7, 1};
const Bytes kEmptyFreespace = {0};
const Bytes kTooShort = {1, 2, 3};

const QString kNoNumbers = QStringLiteral("Datagrams that were lost on the way do not show: the "
                                          "protocol numbers none.\n");

} // namespace

class TestCtlMonitor : public QObject
{
    Q_OBJECT

private:
    QStringList arguments(const QStringList& more = {}) const
    {
        return QStringList{"monitor", "--receive-port", QString::number(mReceivePort), "--fsp-port",
                           QString::number(mFspPort)} +
               more;
    }

    bool waitUntilListening() const
    {
        return waitUntilPortIsHeld(mReceivePort) && waitUntilPortIsHeld(mFspPort);
    }

    std::uint16_t mReceivePort = 0;
    std::uint16_t mFspPort = 0;

private slots:
    void init()
    {
        mReceivePort = freeUdpPort();
        do
            mFspPort = freeUdpPort();
        while (mFspPort == mReceivePort);
    }

    void recordsComeAtOnceThroughAPipe()
    {
        CtlProcess monitor(arguments());
        QVERIFY(waitUntilListening());
        LoopbackPeer ecu;
        ecu.sendTo(mReceivePort, kMeasurement);
        QVERIFY(monitor.waitForOutput(
            QStringLiteral("Z measurement 5 from 127.0.0.1:%1: sending 2, listening 3; "
                           "sensor 3: 5120 us magnitude 7\n")
                .arg(ecu.port())));
        ecu.sendTo(mFspPort, kEmptyFreespace);
        QVERIFY(monitor.waitForOutput(
            QStringLiteral("Z freespace from 127.0.0.1:%1: 0 sensors\n").arg(ecu.port())));
        monitor.interrupt();
        const CtlResult result = monitor.waitForEnd();
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.output.count(QLatin1Char('\n')), 2);
    }

    void interruptedItTellsRatesAndLosses()
    {
        CtlProcess monitor(arguments());
        QVERIFY(waitUntilListening());
        LoopbackPeer ecu;
        ecu.sendTo(mReceivePort, kTooShort);
        ecu.sendTo(mReceivePort, {});
        ecu.sendTo(mReceivePort, kMeasurement);
        QVERIFY(monitor.waitForOutput(QStringLiteral("\n")));
        monitor.interrupt();
        const CtlResult result = monitor.waitForEnd();
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.errorOutput,
                 QStringLiteral("Measurements: 1 records, 2 datagrams that cannot be decoded.\n"
                                "Freespaces: 0 records, 0 datagrams that cannot be decoded.\n") +
                     kNoNumbers);
    }

    void countEndsItAcrossBothStreams()
    {
        CtlProcess monitor(arguments({"--format", "jsonl", "--count", "20"}));
        QVERIFY(waitUntilListening());
        LoopbackPeer ecu;
        for (int record = 0; record < 10; ++record)
            ecu.sendTo(mReceivePort, kMeasurement);
        QVERIFY(monitor.waitForOutput(QStringLiteral("\"record\":10,")));
        for (int record = 0; record < 15; ++record)
            ecu.sendTo(mFspPort, kEmptyFreespace);
        const CtlResult result = monitor.waitForEnd();
        QCOMPARE(result.exitStatus, 0);
        const QStringList lines = result.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 20);
        QVERIFY(lines[19].contains(QStringLiteral("\"record\":20,")));
        QCOMPARE(lines.filter(QStringLiteral("\"stream\":\"measurement\"")).size(), 10);
        static const QRegularExpression kRate(
            QStringLiteral("^Measurements: 10 records, [0-9.]+ a second, 0 datagrams"));
        QVERIFY2(kRate.match(result.errorOutput).hasMatch(), qPrintable(result.errorOutput));
    }

    void oneStreamLeavesTheOthersPortAlone()
    {
        CtlProcess monitor(arguments({"--freespaces", "--count", "1"}));
        QVERIFY(waitUntilPortIsHeld(mFspPort));
        QVERIFY(!isPortHeld(mReceivePort));
        LoopbackPeer().sendTo(mFspPort, kEmptyFreespace);
        const CtlResult result = monitor.waitForEnd();
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.errorOutput,
                 QStringLiteral("Freespaces: 1 records, 0 datagrams that cannot be decoded.\n") +
                     kNoNumbers);
    }

    void csvBeginsWithItsHeader()
    {
        CtlProcess monitor(arguments({"--format", "csv"}));
        QVERIFY(monitor.waitForOutput(QStringLiteral("record,arrivalTime,")));
    }

    void nothingInTimeIsAFailure()
    {
        const CtlResult result = CtlProcess::run(arguments({"--seconds", "0.05"}));
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.output, QString());
        QVERIFY(result.errorOutput.endsWith(
            QStringLiteral("\nNothing arrived that could be used: see \"tarvioctl doctor\".\n")));
    }

    void fewerThanCountedInTimeIsAFailure()
    {
        CtlResult result;
        // A busy machine may need longer for one record.
        for (const char* seconds : {"0.5", "5", "30"}) {
            CtlProcess monitor(arguments({"--seconds", seconds, "--count", "2"}));
            QVERIFY(waitUntilListening());
            LoopbackPeer().sendTo(mReceivePort, kMeasurement);
            result = monitor.waitForEnd();
            if (!result.output.isEmpty())
                break;
        }
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(result.errorOutput.endsWith(
            QStringLiteral("\nOnly 1 of 2 records arrived in time: give more --seconds or see "
                           "\"tarvioctl doctor\".\n")));
    }

    void portInUseIsOneSentence()
    {
        const LoopbackPeer holder;
        mFspPort = holder.port();
        const CtlResult result = CtlProcess::run(arguments());
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.output, QString());
        QCOMPARE(result.errorOutput,
                 QStringLiteral("Port %1 cannot be had (Address already in use): end the program "
                                "that holds it, Tarvio for one, or give another --fsp-port.\n")
                     .arg(mFspPort));
    }

    void closedPipeEndsIt()
    {
        const SimulatorProcess ecu({"--rate", "50", "--receive-port", QString::number(mReceivePort),
                                    "--fsp-port", QString::number(mFspPort)});
        const CtlResult result = CtlProcess::runIntoClosedPipe(arguments());
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.errorOutput,
                 QStringLiteral("Standard output takes no more; see what reads it.\n"));
    }

    void withoutOptionsTheStoredPortsHold()
    {
        TemporaryProfile profile;
        profile.setNetwork(50002, mReceivePort, 0);
        CtlProcess monitor({"monitor", "--count", "1"});
        QVERIFY(waitUntilPortIsHeld(mReceivePort));
        LoopbackPeer().sendTo(mReceivePort, kMeasurement);
        const CtlResult result = monitor.waitForEnd();
        QCOMPARE(result.exitStatus, 0);
        QVERIFY(result.errorOutput.startsWith(
            QStringLiteral("Receive port %1, freespace port none, as stored by Tarvio.\n"
                           "Measurements: 1 records")
                .arg(mReceivePort)));
    }

    // What a first start of the window stores holds no freespace port.
    void defaultIsNotToldAsStored()
    {
        TemporaryProfile profile;
        profile.setValue(QStringLiteral("network/receive_port"), mReceivePort);
        const CtlResult result =
            CtlProcess::run({"monitor", "--measurements", "--seconds", "0.05"});
        QVERIFY2(
            result.errorOutput.startsWith(
                QStringLiteral("Receive port %1, as stored by Tarvio.\nFreespace port 50003, by "
                               "default: Tarvio has stored nothing else.\n")
                    .arg(mReceivePort)),
            qPrintable(result.errorOutput));
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("told");

        QTest::newRow("format") << QStringList{"--format", "xml"}
                                << "--format takes one of text, jsonl, csv, not \"xml\".";
        QTest::newRow("count") << QStringList{"--count", "0"}
                               << "--count takes a whole number from 1 to 2147483647, not \"0\".";
        QTest::newRow("seconds") << QStringList{"--seconds", "nan"}
                                 << "--seconds takes a number from 0.001 to 1e+06, not \"nan\".";
        QTest::newRow("one port for both")
            << QStringList{"--receive-port", "4001", "--fsp-port", "4001"}
            << "Both streams cannot arrive on one port: give another --receive-port or --fsp-port.";
        QTest::newRow("no port") << QStringList{"--freespaces", "--fsp-port", "0"}
                                 << "Freespaces have no port here: give --fsp-port PORT.";
    }

    void wrongUsage()
    {
        QFETCH(QStringList, options);
        QFETCH(QString, told);
        const CtlResult result = CtlProcess::run(arguments(options));
        QCOMPARE(result.exitStatus, 2);
        QCOMPARE(result.output, QString());
        QCOMPARE(result.errorOutput, told + QLatin1Char('\n'));
    }
};

QTEST_GUILESS_MAIN(TestCtlMonitor)
#include "test_ctl_monitor.moc"
