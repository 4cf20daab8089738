#include "tools/ecu_simulator/SimulatorOptions.h"

#include <QtTest>

using namespace ecusim;

namespace {

CommandLine parsed(const QString& arguments)
{
    const QStringList words = arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return parseCommandLine(QStringList(QStringLiteral("tarvio-ecu-simulator")) + words);
}

SimulatorOptions options(const QString& arguments)
{
    const CommandLine line = parsed(arguments);
    [&] { QVERIFY2(line.action == CommandLine::Action::Run, qPrintable(line.text)); }();
    return line.options;
}

} // namespace

class TestSimulatorOptions : public QObject
{
    Q_OBJECT

private slots:
    void defaultsStayOnThisMachine()
    {
        const SimulatorOptions read = options(QString());
        const auto network = effectiveNetwork(read.network, std::nullopt);
        QCOMPARE(hostAddress(network.ecuIp).toString(), QStringLiteral("127.0.0.1"));
        QCOMPARE(hostAddress(network.hostIp).toString(), QStringLiteral("127.0.0.1"));
        QCOMPARE(int(network.controlPort), 50002);
        QCOMPARE(int(network.receivePort), 50001);
        QCOMPARE(int(network.freespacePort), 50003);
        QCOMPARE(read.rate, 20.0);
        QCOMPARE(read.behaviour.calibrationMs, std::int64_t(3000));
        QVERIFY(read.scene == SceneKind::Car);
        QVERIFY(read.hasStreams);
        QVERIFY(!read.isVerbose);
        QVERIFY(read.stateFile.isEmpty());
    }

    void everyOptionIsRead()
    {
        const SimulatorOptions read = options(QStringLiteral(
            "--address 127.0.0.2 --control-port 0 --host 127.0.0.3 --receive-port 4001 "
            "--fsp-port 0 --streams off --scene wall --wall-distance 1500 --rate 0.5 --seed 77 "
            "--sensors-missing 3,7 --state ecu.json --calibration abort "
            "--calibration-seconds 0.25 --status 2=5 --status 4=9 --verbose --drop-replies 0.1 "
            "--delay-replies 0.2 --delay-ms 900 --delay-spread 50 --duplicate-replies 0.3 "
            "--corrupt-replies 0.4 --garbage-replies 0.15 --stray-replies 0.25 "
            "--drop-stream 0.5 --duplicate-stream 0.6 --reorder-stream 0.7 --corrupt-stream 0.8 "
            "--garbage-stream 1"));
        const auto network = effectiveNetwork(read.network, std::nullopt);
        QCOMPARE(network.ecuIp, std::uint32_t(0x0200007F));
        QCOMPARE(int(network.controlPort), 0);
        QCOMPARE(network.hostIp, std::uint32_t(0x0300007F));
        QCOMPARE(int(network.receivePort), 4001);
        QCOMPARE(int(network.freespacePort), 0);
        QVERIFY(!read.hasStreams);
        QVERIFY(read.scene == SceneKind::Wall);
        QCOMPARE(read.wallDistanceMm, 1500.0);
        QCOMPARE(read.rate, 0.5);
        QCOMPARE(read.seed, std::uint64_t(77));
        QCOMPARE(int(read.behaviour.missingMask), 0x0044);
        QCOMPARE(read.stateFile, QStringLiteral("ecu.json"));
        QVERIFY(read.behaviour.calibration == CalibrationOutcome::Abort);
        QCOMPARE(read.behaviour.calibrationMs, std::int64_t(250));
        QVERIFY(!read.behaviour.hasClutter);
        QCOMPARE(int(read.behaviour.forcedStatus.at(2)), 5);
        QCOMPARE(int(read.behaviour.forcedStatus.at(4)), 9);
        QVERIFY(read.isVerbose);
        QCOMPARE(read.replyFaults.drop, 0.1);
        QCOMPARE(read.replyFaults.delay, 0.2);
        QCOMPARE(read.replyFaults.delayMs, 900);
        QCOMPARE(read.replyFaults.delaySpreadMs, 50);
        QCOMPARE(read.replyFaults.garbage, 0.15);
        QCOMPARE(read.replyFaults.stray, 0.25);
        QCOMPARE(read.replyFaults.duplicate, 0.3);
        QCOMPARE(read.replyFaults.corrupt, 0.4);
        QCOMPARE(read.streamFaults.drop, 0.5);
        QCOMPARE(read.streamFaults.duplicate, 0.6);
        QCOMPARE(read.streamFaults.reorder, 0.7);
        QCOMPARE(read.streamFaults.corrupt, 0.8);
        QCOMPARE(read.streamFaults.garbage, 1.0);
    }

    void keptNetworkHoldsUnlessTheCommandLineNamesAnother()
    {
        const orv::EcuNetworkSettings kept{.valid = true,
                                           .ecuIp = 0x0500007F,
                                           .controlPort = 4000,
                                           .hostIp = 0x0600007F,
                                           .receivePort = 4001,
                                           .freespacePort = 4003};
        QVERIFY(effectiveNetwork({}, kept) == kept);
        const auto network = effectiveNetwork(
            options(QStringLiteral("--control-port 7 --fsp-port 0")).network, kept);
        QCOMPARE(int(network.controlPort), 7);
        QCOMPARE(int(network.freespacePort), 0);
        QCOMPARE(int(network.receivePort), 4001);
        QCOMPARE(network.ecuIp, std::uint32_t(0x0500007F));
    }

    void wrongValuesAreRefusedInASentence_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("message");
        const auto row = [](const char* arguments, const char* message) {
            QTest::newRow(arguments)
                << QString::fromLatin1(arguments) << QString::fromLatin1(message);
        };
        row("--control-port 65536",
            "--control-port takes a whole number from 0 to 65535, not \"65536\".");
        row("--control-port x", "--control-port takes a whole number from 0 to 65535, not \"x\".");
        row("--receive-port 0", "--receive-port takes a whole number from 1 to 65535, not \"0\".");
        row("--address here", "--address takes an IPv4 address, not \"here\".");
        row("--host ::1", "--host takes an IPv4 address, not \"::1\".");
        row("--rate 0", "--rate takes a number from 0.1 to 1000, not \"0\".");
        row("--rate nan", "--rate takes a number from 0.1 to 1000, not \"nan\".");
        row("--drop-stream 1.5", "--drop-stream takes a number from 0 to 1, not \"1.5\".");
        row("--corrupt-replies -1", "--corrupt-replies takes a number from 0 to 1, not \"-1\".");
        row("--scene moon", "--scene takes one of car, wall, not \"moon\".");
        row("--calibration soon",
            "--calibration takes one of finish, abort, never, fail, not \"soon\".");
        row("--streams maybe", "--streams takes one of on, off, not \"maybe\".");
        row("--seed -1", "--seed takes a whole number from 0, not \"-1\".");
        row("--sensors-missing 3,13",
            "--sensors-missing takes a whole number from 1 to 12, not \"3,13\".");
        row("--sensors-missing ,",
            "--sensors-missing takes a whole number from 1 to 12, not \",\".");
        row("--status 2", "--status takes CODE=STATUS, not \"2\".");
        row("--status 2=256", "--status takes a whole number from 0 to 255, not \"2=256\".");
        row("--speed 2", "--speed needs a capture to play: give --replay FILE too.");
        row("--loop", "--loop needs a capture to play: give --replay FILE too.");
        row("--recorded-fsp-port 5", "--recorded-fsp-port needs a capture to play: give --replay "
                                     "FILE too.");
        row("--what", "Unknown option 'what'.");
        row("--seed", "Missing value after '--seed'.");
        row("stray", "Unexpected argument \"stray\".");
    }

    void wrongValuesAreRefusedInASentence()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, message);
        const CommandLine line = parsed(arguments);
        QVERIFY(line.action == CommandLine::Action::Refuse);
        QCOMPARE(line.text, message);
    }

    void versionIsPrinted()
    {
        const CommandLine line = parsed(QStringLiteral("--version"));
        QVERIFY(line.action == CommandLine::Action::PrintAndEnd);
        QCOMPARE(line.text, QStringLiteral("tarvio-ecu-simulator 19.46.0\n"));
    }

    void helpIsPrinted()
    {
        for (const char* form : {"--help", "-h", "--help-all"}) {
            const CommandLine line = parsed(QString::fromLatin1(form));
            QVERIFY2(line.action == CommandLine::Action::PrintAndEnd, form);
            QVERIFY2(line.text.contains(QLatin1String("--sensors-missing")), form);
        }
    }

    void addressesKeepTheFirstOctetInTheLowestByte()
    {
        QCOMPARE(packedAddress(QHostAddress(QStringLiteral("1.2.3.4"))), std::uint32_t(0x04030201));
        QCOMPARE(hostAddress(0x04030201).toString(), QStringLiteral("1.2.3.4"));
    }
};

QTEST_GUILESS_MAIN(TestSimulatorOptions)
#include "test_simulator_options.moc"
