#include "tests/support/EcuAccess.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/held_port.h"
#include "tests/tools/tarvioctl/CtlProcess.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

/// An envelope curve recording, as a user runs it.
class TestCtlEnvelope : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void samplesGoIntoTheFile();
    void progressEndsItsLineOnATerminal();
    void everyPositionIsSwept();
    void thresholdsAreAsBefore();
    void interruptionGivesTheThresholdsBack();
    void thresholdsThatCannotBeGivenBackAreTold();
    void ecuWithoutStreamIsTold();
    void streamThatStopsIsTold();
    void refusedThresholdsEndItBeforeItBegins();
    void portInUseIsTold();
    void fileThatCannotBeWrittenIsTold();
    void missingOptionsAreWrongUsage();

private:
    void startEcu(const QStringList& arguments = {});
    QStringList command(const QString& fileName) const;
    QString file() const { return mFolder->filePath(QStringLiteral("envelope.csv")); }
    orv::SensorThreshold thresholds();

    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<SimulatorProcess> mSimulator;
    std::unique_ptr<EcuAccess> mEcu;
    quint16 mReceivePort = 0;
};

void TestCtlEnvelope::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    startEcu();
}

// Fast, so that a sweep takes about a second.
void TestCtlEnvelope::startEcu(const QStringList& arguments)
{
    mReceivePort = freeUdpPort();
    mSimulator = std::make_unique<SimulatorProcess>(
        QStringList{"--rate", "500", "--scene", "wall", "--verbose", "--receive-port",
                    QString::number(mReceivePort), "--fsp-port", "0"} +
        arguments);
    mEcu = std::make_unique<EcuAccess>(mSimulator->controlPort());
}

QStringList TestCtlEnvelope::command(const QString& fileName) const
{
    return QStringList{"envelope",
                       "--sensor",
                       "4",
                       "-o",
                       fileName,
                       "--samples",
                       "1",
                       "--receive-port",
                       QString::number(mReceivePort),
                       "--fsp-port",
                       "0"} +
           ecuOptions(mSimulator->controlPort());
}

orv::SensorThreshold TestCtlEnvelope::thresholds()
{
    orv::SensorThreshold threshold;
    if (!mEcu->client().readThresholds(3, threshold))
        qWarning("no thresholds");
    return threshold;
}

void TestCtlEnvelope::samplesGoIntoTheFile()
{
    const CtlResult result = CtlProcess::run(command(file()));
    QVERIFY2(result.exitStatus == 0, qPrintable(result.errorOutput));
    QCOMPARE(result.output, QString());
    QFile csv(file());
    QVERIFY(csv.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = csv.readAll().split('\n');
    // A wall at two metres is heard after 11.7 ms, in steps of 51.2 microseconds.
    const auto isTheWall = [](const QByteArray& line) {
        const int microseconds = line.split(',').value(0).toInt();
        return microseconds > 11500 && microseconds < 12000;
    };
    QVERIFY(std::any_of(lines.begin(), lines.end(), isTheWall));
}

void TestCtlEnvelope::progressEndsItsLineOnATerminal()
{
    const CtlResult result =
        CtlProcess::runOnTerminal(command(file()) + QStringList{"--lut-step", "5"});
    QCOMPARE(result.exitStatus, 0);
    QVERIFY2(result.output.endsWith(QStringLiteral("\rPosition 145 of 145\x1b[K\r\n")),
             qPrintable(result.output));
}

void TestCtlEnvelope::everyPositionIsSwept()
{
    CtlProcess::run(command(file()));
    mSimulator->stop();
    const QString requests = mSimulator->output();
    // The thresholds before, 146 positions, the thresholds again.
    QCOMPARE(requests.count(QStringLiteral("write for this run thresholds of sensor 4")), 148);
}

void TestCtlEnvelope::thresholdsAreAsBefore()
{
    const orv::SensorThreshold before = thresholds();
    QCOMPARE(CtlProcess::run(command(file())).exitStatus, 0);
    QVERIFY(thresholds() == before);
}

void TestCtlEnvelope::interruptionGivesTheThresholdsBack()
{
    startEcu({"--rate", "20"});
    const orv::SensorThreshold before = thresholds();
    CtlProcess process(command(file()));
    QTRY_VERIFY_WITH_TIMEOUT(!(thresholds() == before), 30000);
    process.interrupt();
    const CtlResult result = process.waitForEnd();
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errorOutput,
             QStringLiteral("Interrupted: nothing is saved, the thresholds are as before.\n"));
    QVERIFY(thresholds() == before);
    QVERIFY(!QFile::exists(file()));
}

void TestCtlEnvelope::thresholdsThatCannotBeGivenBackAreTold()
{
    startEcu({"--rate", "20"});
    CtlProcess process(command(file()) + QStringList{"--timeout", "1000"});
    QVERIFY(mSimulator->waitForOutput(QStringLiteral("write for this run thresholds")));
    mSimulator->stop();
    const CtlResult result = process.waitForEnd();
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errorOutput.startsWith(
                 QStringLiteral("The thresholds of sensor 4 could not be given back (socket: ")),
             qPrintable(result.errorOutput));
    QVERIFY(!QFile::exists(file()));
}

void TestCtlEnvelope::ecuWithoutStreamIsTold()
{
    startEcu({"--streams", "off"});
    const orv::SensorThreshold before = thresholds();
    const CtlResult result = CtlProcess::run(command(file()));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.errorOutput.contains(QStringLiteral("tarvioctl doctor")));
    QVERIFY(thresholds() == before);
    QVERIFY(!QFile::exists(file()));
}

void TestCtlEnvelope::streamThatStopsIsTold()
{
    startEcu({"--streams", "off"});
    const orv::SensorThreshold before = thresholds();
    CtlProcess process(command(file()));
    QVERIFY(waitUntilPortIsHeld(mReceivePort));
    // Sensor 2 sends, 3 listens, nobody hears anything.
    LoopbackPeer().sendTo(mReceivePort, {5, 0, 0, 0, 2, 0, 4, 0, 0});
    const CtlResult result = process.waitForEnd();
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errorOutput.startsWith(
                 QStringLiteral("The measurements have stopped in the middle of the sweep")),
             qPrintable(result.errorOutput));
    QVERIFY(thresholds() == before);
    QVERIFY(!QFile::exists(file()));
}

void TestCtlEnvelope::refusedThresholdsEndItBeforeItBegins()
{
    startEcu({"--status", "1=5"});
    const CtlResult result = CtlProcess::run(command(file()));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.errorOutput.contains(QStringLiteral("ECU error (5)")));
    QVERIFY(!QFile::exists(file()));
}

void TestCtlEnvelope::portInUseIsTold()
{
    const LoopbackPeer holder;
    mReceivePort = holder.port();
    const CtlResult result = CtlProcess::run(command(file()));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(
        result.errorOutput.startsWith(QStringLiteral("Port %1 cannot be had").arg(holder.port())));
}

void TestCtlEnvelope::fileThatCannotBeWrittenIsTold()
{
    const CtlResult result = CtlProcess::run(command(QStringLiteral("/no/such/folder/x.csv")));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.errorOutput.contains(QStringLiteral("Cannot write /no/such/folder/x.csv")));
}

void TestCtlEnvelope::missingOptionsAreWrongUsage()
{
    const CtlResult result = CtlProcess::run({"envelope", "--ecu", "127.0.0.1"});
    QCOMPARE(result.exitStatus, 2);
    QCOMPARE(result.errorOutput,
             QStringLiteral("Usage: tarvioctl envelope --sensor N -o FILE.csv\n"));
}

QTEST_GUILESS_MAIN(TestCtlEnvelope)
#include "test_ctl_envelope.moc"
