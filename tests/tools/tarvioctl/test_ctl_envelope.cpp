#include "tests/support/EcuAccess.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/tools/tarvioctl/CtlProcess.h"
#include "tests/tools/tarvioctl/StagedEcu.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <optional>

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
    QStringList command(const QString& fileName) const;
    QString file() const { return mFolder->filePath(QStringLiteral("envelope.csv")); }
    std::optional<orv::SensorThreshold> thresholds() const;

    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<StagedEcu> mEcu;
    quint16 mReceivePort = 0;
};

void TestCtlEnvelope::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    mReceivePort = freeUdpPort();
    mEcu = std::make_unique<StagedEcu>();
    mEcu->measureInto(mReceivePort);
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
           ecuOptions(mEcu->port());
}

// Those of sensor 4; none when they cannot be read.
std::optional<orv::SensorThreshold> TestCtlEnvelope::thresholds() const
{
    orv::SensorThreshold threshold;
    if (!EcuAccess(mEcu->port()).client().readThresholds(3, threshold))
        return std::nullopt;
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
    QCOMPARE(CtlProcess::run(command(file())).exitStatus, 0);
    // The thresholds before, 146 positions, the thresholds again.
    QCOMPARE(mEcu->writingsForThisRun(3), 148);
}

void TestCtlEnvelope::thresholdsAreAsBefore()
{
    const auto before = thresholds();
    QVERIFY(before);
    QCOMPARE(CtlProcess::run(command(file())).exitStatus, 0);
    QVERIFY(thresholds() == before);
}

void TestCtlEnvelope::interruptionGivesTheThresholdsBack()
{
    const auto before = thresholds();
    QVERIFY(before);
    // At the fifth position.
    mEcu->holdAt([writings = 0](const auto& request) mutable {
        return isWriting(request) && ++writings == 6;
    });
    CtlProcess process(command(file()));
    QVERIFY(mEcu->waitUntilHeld());
    process.interrupt();
    mEcu->release();
    const CtlResult result = process.waitForEnd();
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errorOutput,
             QStringLiteral("Interrupted: nothing is saved, the thresholds are as before.\n"));
    QVERIFY(thresholds() == before);
    QVERIFY(!QFile::exists(file()));
}

void TestCtlEnvelope::thresholdsThatCannotBeGivenBackAreTold()
{
    mEcu->measureInto(mReceivePort, 1);
    mEcu->refuseFrom(4);
    const CtlResult result = CtlProcess::run(command(file()));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errorOutput.startsWith(QStringLiteral(
                 "The thresholds of sensor 4 could not be given back (ECU error (7)): ")),
             qPrintable(result.errorOutput));
    QVERIFY(!QFile::exists(file()));
}

void TestCtlEnvelope::ecuWithoutStreamIsTold()
{
    mEcu->measureInto(mReceivePort, 0);
    const auto before = thresholds();
    QVERIFY(before);
    const CtlResult result = CtlProcess::run(command(file()));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.errorOutput.contains(QStringLiteral("tarvioctl doctor")));
    QVERIFY(thresholds() == before);
    QVERIFY(!QFile::exists(file()));
}

void TestCtlEnvelope::streamThatStopsIsTold()
{
    mEcu->measureInto(mReceivePort, 5);
    const auto before = thresholds();
    QVERIFY(before);
    const CtlResult result = CtlProcess::run(command(file()));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errorOutput.startsWith(
                 QStringLiteral("The measurements have stopped in the middle of the sweep")),
             qPrintable(result.errorOutput));
    QVERIFY(thresholds() == before);
    QVERIFY(!QFile::exists(file()));
}

void TestCtlEnvelope::refusedThresholdsEndItBeforeItBegins()
{
    mEcu->refuseFrom(1);
    const CtlResult result = CtlProcess::run(command(file()));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.errorOutput.contains(QStringLiteral("ECU error (7)")));
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
