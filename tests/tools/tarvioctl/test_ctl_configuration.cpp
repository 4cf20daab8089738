#include "tests/support/EcuAccess.h"
#include "tests/support/FullDisk.h"
#include "tests/support/LoopbackEcu.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/tools/tarvioctl/CtlProcess.h"
#include "tests/tools/tarvioctl/StagedEcu.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

/// The commands that move a configuration between ECU and file, as a user runs them.
class TestCtlConfiguration : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void readWriteReadGivesTheSameBytes();
    void onlyTheNamedPartsAreRead();
    void readWithoutAnswerLeavesTheFormerFile();
    void readToNowhereIsOneSentence();
    void fullDiskLeavesTheFormerFile();
    void networkAloneNeedsNoEcu();

    void writeTellsEachPart();
    void refusedPartIsToldAndTheOthersAreWritten();
    void brokenFileIsNotWrittenAtAll_data();
    void brokenFileIsNotWrittenAtAll();
    void thresholdsOfSomeSensorsAreNotWritten();
    void dryRunTellsAndWritesNothing();
    void verifyReadsBack();
    void ecuThatConfirmsButKeepsSomethingElseIsTold();
    void interruptedWriteIsFinished();
    void interruptedReadingBackLeavesWhatWasTold();
    void ecuThatDiesInTheMiddleIsTold();

    void errorStandsBelowWhatWasPrinted();

    void diffTellsAndSaysSoInItsStatus();
    void diffOfNothingIsNoAgreement();
    void diffOfTwoFilesNeedsNoEcu();
    void partThatOneFileLacksIsADifference();
    void unknownPartIsWrongUsage();

private:
    void startEcu(const QStringList& arguments = {});
    CtlResult ctl(const QStringList& arguments) const;
    QString file(const char* name) const { return mFolder->filePath(QLatin1String(name)); }
    QByteArray bytesOf(const char* name) const;
    void save(const char* name, const QByteArray& bytes) const;

    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<TemporaryProfile> mProfile;
    std::unique_ptr<SimulatorProcess> mSimulator;
    std::unique_ptr<EcuAccess> mEcu;
};

void TestCtlConfiguration::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    mProfile = std::make_unique<TemporaryProfile>();
    startEcu();
    QVERIFY(mEcu->write(configurationOfSeed(1)));
}

void TestCtlConfiguration::startEcu(const QStringList& arguments)
{
    mSimulator = std::make_unique<SimulatorProcess>(QStringList{"--streams", "off"} + arguments);
    mEcu = std::make_unique<EcuAccess>(mSimulator->controlPort());
}

CtlResult TestCtlConfiguration::ctl(const QStringList& arguments) const
{
    return CtlProcess::run(arguments + ecuOptions(mSimulator->controlPort()));
}

QByteArray TestCtlConfiguration::bytesOf(const char* name) const
{
    QFile read(file(name));
    return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
}

void TestCtlConfiguration::save(const char* name, const QByteArray& bytes) const
{
    QFile written(file(name));
    QVERIFY(written.open(QIODevice::WriteOnly));
    written.write(bytes);
}

void TestCtlConfiguration::readWriteReadGivesTheSameBytes()
{
    QCOMPARE(ctl({"read", file("a.orv")}).exitStatus, 0);
    QVERIFY(mEcu->write(configurationOfSeed(2)));
    QCOMPARE(ctl({"write", file("a.orv")}).exitStatus, 0);
    QVERIFY(mEcu->read() == configurationOfSeed(1));
    QCOMPARE(ctl({"read", file("b.orv")}).exitStatus, 0);
    QVERIFY(!bytesOf("a.orv").isEmpty());
    QCOMPARE(bytesOf("b.orv"), bytesOf("a.orv"));
}

void TestCtlConfiguration::onlyTheNamedPartsAreRead()
{
    QCOMPARE(ctl({"read", file("a.orv"), "--only", "sequence", "--only", "positions"}).exitStatus,
             0);
    QVERIFY(bytesOf("a.orv").contains("<MSEQ>"));
    QVERIFY(bytesOf("a.orv").contains("<MountPositions>"));
    QVERIFY(!bytesOf("a.orv").contains("<Thresholds>"));
    QVERIFY(!bytesOf("a.orv").contains("<Network>"));
}

void TestCtlConfiguration::readWithoutAnswerLeavesTheFormerFile()
{
    save("a.orv", "former");
    startEcu({"--status", "1=5"});
    const CtlResult result = ctl({"read", file("a.orv")});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errorOutput,
             QStringLiteral("The ECU does not tell its thresholds (ECU error (5)): see \"tarvioctl "
                            "doctor\".\n"));
    QCOMPARE(bytesOf("a.orv"), QByteArray("former"));
}

void TestCtlConfiguration::readToNowhereIsOneSentence()
{
    const CtlResult result = ctl({"read", file("no/such/folder/a.orv")});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.errorOutput.contains(QStringLiteral("choose another place")));
    QCOMPARE(result.errorOutput.count(QLatin1Char('\n')), 1);
}

void TestCtlConfiguration::fullDiskLeavesTheFormerFile()
{
    save("a.orv", "former");
    CtlResult result;
    {
        const FullDisk disk(512);
        result = ctl({"read", file("a.orv")});
    }
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errorOutput.startsWith(QStringLiteral("Cannot write ")),
             qPrintable(result.errorOutput));
    QCOMPARE(bytesOf("a.orv"), QByteArray("former"));
}

void TestCtlConfiguration::networkAloneNeedsNoEcu()
{
    mProfile->setNetwork(4000, 4001, 4003);
    mSimulator->stop();
    const CtlResult result = CtlProcess::run({"read", file("a.orv"), "--only", "network"});
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(bytesOf("a.orv").contains("<receive_port>4001</receive_port>"));
}

void TestCtlConfiguration::writeTellsEachPart()
{
    ctl({"read", file("a.orv")});
    const CtlResult result = ctl({"write", file("a.orv")});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, QStringLiteral("thresholds: written\nmeasurement sequence: written\n"
                                           "sensor positions: written\n"));
    QCOMPARE(ctl({"write", file("a.orv"), "--only", "positions"}).output,
             QStringLiteral("sensor positions: written\nthresholds: left as it was\n"
                            "measurement sequence: left as it was\n"));
}

void TestCtlConfiguration::refusedPartIsToldAndTheOthersAreWritten()
{
    ctl({"read", file("a.orv")});
    startEcu({"--status", "0=7"});
    const CtlResult result = ctl({"write", file("a.orv")});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.output, QStringLiteral("thresholds: written\n"
                                           "measurement sequence: NOT written (ECU error (7))\n"
                                           "sensor positions: written\n"));
    QVERIFY(result.errorOutput.startsWith(QStringLiteral("The ECU does not hold this file")));
    QVERIFY(mEcu->read().positions == configurationOfSeed(1).positions);
}

void TestCtlConfiguration::brokenFileIsNotWrittenAtAll_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");

    QTest::newRow("no settings file") << QByteArray("<x/>") << "not an OrvgProject";
    QTest::newRow("one section wrong")
        << QByteArray("<OrvgProject><MSEQ/><MountPositions/></OrvgProject>")
        << "MountPositions: Invalid data format of sensor positions";
    QTest::newRow("cut short")
        << QByteArray("<OrvgProject><MSEQ/>")
        << "no whole settings file (Premature end of document): export it anew.";
    QTest::newRow("empty") << QByteArray() << "invalid xml file";
    QTest::newRow("nothing for the ECU")
        << QByteArray("<OrvgProject><Network/></OrvgProject>") << "holds nothing";
}

void TestCtlConfiguration::brokenFileIsNotWrittenAtAll()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    save("a.orv", content);
    const CtlResult result = ctl({"write", file("a.orv")});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errorOutput.contains(reason), qPrintable(result.errorOutput));
    QVERIFY(mEcu->read() == configurationOfSeed(1));
}

void TestCtlConfiguration::thresholdsOfSomeSensorsAreNotWritten()
{
    ctl({"read", file("a.orv")});
    QByteArray content = bytesOf("a.orv");
    const auto last = content.indexOf("<Sensor id=\"11\"");
    content.remove(last, content.indexOf("</Sensor>", last) + 9 - last);
    save("a.orv", content);
    const CtlResult result = ctl({"write", file("a.orv")});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.errorOutput.contains(QStringLiteral("thresholds for 11 of 12 sensors")));
    QVERIFY(mEcu->read() == configurationOfSeed(1));
}

void TestCtlConfiguration::dryRunTellsAndWritesNothing()
{
    ctl({"read", file("a.orv")});
    EcuConfiguration other = configurationOfSeed(1);
    other.positions[2].x = 77;
    QVERIFY(mEcu->write(other));
    const CtlResult result = ctl({"write", file("a.orv"), "--dry-run"});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(
        result.output,
        QStringLiteral("sensor 3, x: 77 mm → %1 mm\n").arg(configurationOfSeed(1).positions[2].x));
    QVERIFY(mEcu->read() == other);
}

void TestCtlConfiguration::verifyReadsBack()
{
    ctl({"read", file("a.orv")});
    const CtlResult result = ctl({"write", file("a.orv"), "--verify"});
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(result.output.endsWith(QStringLiteral("verified: the ECU holds what the file says\n")));
}

void TestCtlConfiguration::ecuThatConfirmsButKeepsSomethingElseIsTold()
{
    ctl({"read", file("a.orv"), "--only", "positions"});
    LoopbackEcu forgetful;
    forgetful.setHandler([](const orv::ControlRequest& request) {
        const bool isRead = request.payload.at(0) == std::uint8_t(orv::ControlAccess::Read);
        return orv::encodeReply(request.code,
                                isRead ? orv::encodeMountPositions({}) : LoopbackEcu::Frame(), 0);
    });
    const CtlResult result = CtlProcess::run(QStringList{"write", file("a.orv"), "--verify"} +
                                             ecuOptions(forgetful.port()));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.output.startsWith(QStringLiteral("sensor positions: written\n")));
    QVERIFY(result.output.contains(QStringLiteral("sensor 12, x: 0 mm → ")));
    QVERIFY(!result.output.contains(QStringLiteral("verified")));
    QVERIFY(
        result.errorOutput.startsWith(QStringLiteral("The ECU has confirmed the writing but ")));
}

void TestCtlConfiguration::interruptedWriteIsFinished()
{
    ctl({"read", file("a.orv")});
    StagedEcu ecu;
    ecu.holdAt(isWriting);
    CtlProcess process(QStringList{"write", file("a.orv")} + ecuOptions(ecu.port()));
    QVERIFY(ecu.waitUntilHeld());
    process.interrupt();
    ecu.release();
    const CtlResult result = process.waitForEnd();
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(EcuAccess(ecu.port()).read() == configurationOfSeed(1));
}

void TestCtlConfiguration::interruptedReadingBackLeavesWhatWasTold()
{
    ctl({"read", file("a.orv")});
    StagedEcu ecu;
    ecu.holdAt(isReading);
    CtlProcess process(QStringList{"write", file("a.orv"), "--verify"} + ecuOptions(ecu.port()));
    QVERIFY(process.waitForOutput(QStringLiteral("sensor positions: written\n")));
    QVERIFY(ecu.waitUntilHeld());
    process.interrupt();
    const CtlResult result = process.waitForEnd();
    QCOMPARE(result.exitStatus, -1); // by the signal
    QVERIFY(!result.output.contains(QStringLiteral("verified")));
}

void TestCtlConfiguration::ecuThatDiesInTheMiddleIsTold()
{
    ctl({"read", file("a.orv")});
    StagedEcu ecu;
    ecu.holdAt([writings = 0](const auto& request) mutable {
        return isWriting(request) && ++writings > 3;
    });
    const CtlResult result =
        CtlProcess::run(QStringList{"write", file("a.orv")} + ecuOptions(ecu.port(), 100));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.output.startsWith(QStringLiteral("thresholds: NOT written (socket: ")));
    QCOMPARE(result.errorOutput.count(QLatin1Char('\n')), 1);
}

void TestCtlConfiguration::errorStandsBelowWhatWasPrinted()
{
    ctl({"read", file("a.orv")});
    startEcu({"--status", "0=7"});
    const CtlResult result = CtlProcess::runIntoOneStream(QStringList{"write", file("a.orv")} +
                                                          ecuOptions(mSimulator->controlPort()));
    QVERIFY2(result.output.endsWith(QStringLiteral("look with \"tarvioctl diff\".\n")),
             qPrintable(result.output));
    QVERIFY(result.output.startsWith(QStringLiteral("thresholds: written\n")));
}

void TestCtlConfiguration::diffOfNothingIsNoAgreement()
{
    ctl({"read", file("a.orv"), "--only", "network"});
    ctl({"read", file("b.orv"), "--only", "positions"});
    for (const QStringList& arguments :
         {QStringList{file("a.orv")}, QStringList{file("a.orv"), file("a.orv")},
          QStringList{file("b.orv"), "--only", "sequence"}}) {
        const CtlResult result = ctl(QStringList{"diff"} + arguments);
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.output, QString());
        QVERIFY2(result.errorOutput.contains(
                     QStringLiteral("There is nothing that could be compared in ")),
                 qPrintable(result.errorOutput));
    }
}

void TestCtlConfiguration::diffTellsAndSaysSoInItsStatus()
{
    ctl({"read", file("a.orv")});
    const CtlResult same = ctl({"diff", file("a.orv")});
    QCOMPARE(same.exitStatus, 0);
    QCOMPARE(same.output, QString());
    EcuConfiguration other = configurationOfSeed(1);
    other.thresholds[2].scale = 0;
    QVERIFY(mEcu->write(other));
    const CtlResult different = ctl({"diff", file("a.orv")});
    QCOMPARE(different.exitStatus, 1);
    QCOMPARE(different.output, QStringLiteral("sensor 3, scale: 50% → 100%\n"));
    QCOMPARE(ctl({"diff", file("a.orv"), "--only", "sequence"}).exitStatus, 0);
}

void TestCtlConfiguration::diffOfTwoFilesNeedsNoEcu()
{
    ctl({"read", file("a.orv")});
    QVERIFY(mEcu->write(configurationOfSeed(2)));
    ctl({"read", file("b.orv")});
    mSimulator->stop();
    QCOMPARE(CtlProcess::run({"diff", file("a.orv"), file("a.orv")}).exitStatus, 0);
    const CtlResult result = CtlProcess::run({"diff", file("a.orv"), file("b.orv")});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.output.contains(QStringLiteral("step 1, ")));
    QVERIFY(result.output.contains(QStringLiteral("sensor 12, threshold 0: ")));
    QVERIFY(result.output.contains(QStringLiteral("sensor 12, yaw: ")));
}

void TestCtlConfiguration::partThatOneFileLacksIsADifference()
{
    ctl({"read", file("a.orv")});
    ctl({"read", file("b.orv"), "--only", "sequence"});
    const CtlResult result = CtlProcess::run({"diff", file("a.orv"), file("b.orv")});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.output,
             QStringLiteral("Thresholds: there → missing\nMountPositions: there → missing\n"));
}

void TestCtlConfiguration::unknownPartIsWrongUsage()
{
    const CtlResult result = ctl({"read", file("a.orv"), "--only", "wheels"});
    QCOMPARE(result.exitStatus, 2);
    QCOMPARE(result.errorOutput,
             QStringLiteral("--only takes one of network, sequence, thresholds, positions, not "
                            "\"wheels\".\n"));
}

QTEST_GUILESS_MAIN(TestCtlConfiguration)
#include "test_ctl_configuration.moc"
