#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/patience.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kPatienceMs = kAnswerPatienceMs;

/// The tool's end of the link: a control client and both stream ports.
class Link
{
public:
    explicit Link(const QString& arguments = QString())
        : mSimulator(arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts) +
                     QStringList{QStringLiteral("--receive-port"), QString::number(mResults.port()),
                                 QStringLiteral("--fsp-port"), QString::number(mFreespaces.port())})
        , mSocket("127.0.0.1", mSimulator.controlPort())
        , mClient(&mSocket)
    {
        waitForReplies(kAnswerPatienceMs);
    }

    void waitForReplies(std::uint32_t timeoutMs) { mSocket.setReceiveTimeout(timeoutMs); }

    SimulatorProcess& simulator() { return mSimulator; }
    orv::OrvCtrlClient& client() { return mClient; }
    LoopbackPeer& results() { return mResults; }
    LoopbackPeer& freespaces() { return mFreespaces; }

    std::vector<Bytes> take(LoopbackPeer& stream, int count)
    {
        std::vector<Bytes> datagrams;
        while (static_cast<int>(datagrams.size()) < count) {
            auto datagram = stream.receive(kPatienceMs);
            if (!datagram)
                break;
            datagrams.push_back(std::move(*datagram));
        }
        return datagrams;
    }

private:
    LoopbackPeer mResults;
    LoopbackPeer mFreespaces;
    SimulatorProcess mSimulator;
    orv::OrvCtrlSocket mSocket;
    orv::OrvCtrlClient mClient;
};

} // namespace

class TestEcuSimulator : public QObject
{
    Q_OBJECT

private slots:
    void firstLineTellsWhereItListens()
    {
        SimulatorProcess simulator;
        QVERIFY2(simulator.isListening(), qPrintable(simulator.errorOutput()));
        QCOMPARE(simulator.output(),
                 QStringLiteral("listening on 127.0.0.1:%1\n").arg(simulator.controlPort()));
    }

    void endsCleanlyOnSigterm()
    {
        SimulatorProcess simulator;
        QCOMPARE(simulator.stop(), 0);
        QVERIFY(!simulator.isListening());
        QCOMPARE(simulator.errorOutput(), QString());
    }

    void portInUseIsAClearMessage()
    {
        SimulatorProcess first;
        SimulatorProcess second(
            {QStringLiteral("--control-port"), QString::number(first.controlPort())});
        QVERIFY(!second.isListening());
        QCOMPARE(second.waitForEnd(), 1);
        QVERIFY2(second.errorOutput().startsWith(
                     QStringLiteral("Cannot listen on 127.0.0.1:%1: ").arg(first.controlPort())),
                 qPrintable(second.errorOutput()));
    }

    void wrongOptionEndsWithAMessage()
    {
        SimulatorProcess simulator({QStringLiteral("--rate"), QStringLiteral("fast")});
        QCOMPARE(simulator.waitForEnd(), 1);
        QCOMPARE(simulator.errorOutput(),
                 QStringLiteral("--rate takes a number from 0.1 to 1000, not \"fast\".\n"));
    }

    void helpNamesEveryOption()
    {
        SimulatorProcess simulator({QStringLiteral("--help")});
        QCOMPARE(simulator.waitForEnd(), 0);
        for (const char* option : {"--address",
                                   "--control-port",
                                   "--host",
                                   "--receive-port",
                                   "--fsp-port",
                                   "--streams",
                                   "--scene",
                                   "--wall-distance",
                                   "--rate",
                                   "--seed",
                                   "--sensors-missing",
                                   "--state",
                                   "--calibration",
                                   "--calibration-seconds",
                                   "--status",
                                   "--verbose",
                                   "--version",
                                   "--replay",
                                   "--speed",
                                   "--loop",
                                   "--recorded-receive-port",
                                   "--recorded-fsp-port",
                                   "--drop-replies",
                                   "--delay-replies",
                                   "--delay-ms",
                                   "--duplicate-replies",
                                   "--corrupt-replies",
                                   "--drop-stream",
                                   "--duplicate-stream",
                                   "--reorder-stream",
                                   "--corrupt-stream",
                                   "--garbage-stream"})
            QVERIFY2(simulator.output().contains(QLatin1String(option)), option);
    }

    void everyCommandIsAnswered()
    {
        Link link(QStringLiteral("--streams off --calibration-seconds 0"));
        orv::OrvCtrlClient& client = link.client();

        orv::FirmwareVersion firmware;
        QVERIFY2(client.readFirmwareVersion(firmware), client.lastError().c_str());
        QCOMPARE(QString::fromStdString(firmware.text()), QStringLiteral("2.14.0"));

        std::vector<orv::MseqStep> steps;
        QVERIFY(client.readMeasurementSequence(steps));
        QCOMPARE(steps.size(), std::size_t(12));
        steps.resize(3);
        QVERIFY(client.writeMeasurementSequence(steps));
        QVERIFY(client.readMeasurementSequence(steps));
        QCOMPARE(steps.size(), std::size_t(3));

        orv::SensorThreshold threshold;
        QVERIFY(client.readThresholds(11, threshold));
        QCOMPARE(int(threshold.scale), 2);
        threshold.scale = 3;
        QVERIFY(client.writeThresholds(threshold, true));
        QVERIFY(client.readThresholds(11, threshold));
        QCOMPARE(int(threshold.scale), 3);

        orv::EcuNetworkSettings network;
        QVERIFY(client.readNetworkSettings(network));
        QCOMPARE(network.controlPort, link.simulator().controlPort());
        QCOMPARE(network.receivePort, link.results().port());
        QVERIFY(client.writeNetworkSettings(network));

        orv::SensorMountPositions positions;
        QVERIFY(client.readSensorPositions(positions));
        positions[4].height = 777;
        QVERIFY(client.writeSensorPositions(positions));
        QVERIFY(client.readSensorPositions(positions));
        QCOMPARE(int(positions[4].height), 777);

        QVERIFY(client.startAutoCalibration(orv::kNoSensor));
        QCOMPARE(int(client.readAutoCalibrationState()), 0);
    }

    void wrongChecksumIsAnsweredWithAStatus()
    {
        SimulatorProcess simulator({QStringLiteral("--streams"), QStringLiteral("off")});
        LoopbackPeer peer;
        peer.sendTo(simulator.controlPort(), {2, 0});
        const auto reply = peer.receive(kPatienceMs);
        QVERIFY(reply);
        QCOMPARE(reply->size(), std::size_t(3));
        QCOMPARE(int((*reply)[0]), 2);
        QCOMPARE(int((*reply)[1]), 1);
    }

    void survivesEveryDatagramSize()
    {
        Link link(QStringLiteral("--streams off"));
        LoopbackPeer peer;
        for (std::size_t size : {0U, 1U, 2U, 17U, 1440U, 65507U}) {
            peer.sendTo(link.simulator().controlPort(), Bytes(size, 0xA5));
            QVERIFY2(peer.receive(kPatienceMs), qPrintable(QString::number(size)));
        }
        orv::FirmwareVersion firmware;
        QVERIFY(link.client().readFirmwareVersion(firmware));
    }

    void bothStreamsDecode()
    {
        Link link(QStringLiteral("--rate 200"));
        for (const Bytes& datagram : link.take(link.results(), 24)) {
            const auto result = orv::decodeDatagram<orv::OrvMeasurementResult>(datagram);
            QVERIFY(result);
            QCOMPARE(std::popcount(result->sendMask), 1);
        }
        const auto packages = link.take(link.freespaces(), 3);
        QCOMPARE(packages.size(), std::size_t(3));
        for (const Bytes& datagram : packages) {
            const auto package = orv::decodeDatagram<orv::OrvFreespacePackage>(datagram);
            QVERIFY(package);
            QCOMPARE(package->entries.size(), std::size_t(12));
        }
    }

    void wallSceneGivesTheSameTimeOfFlightToEverySensor()
    {
        Link link(QStringLiteral("--rate 200 --scene wall --wall-distance 1000"));
        for (const Bytes& datagram : link.take(link.results(), 12)) {
            const auto result = orv::decodeDatagram<orv::OrvMeasurementResult>(datagram);
            QVERIFY(result);
            const auto sender = static_cast<std::uint8_t>(std::countr_zero(result->sendMask));
            QVERIFY(!result->echoesOf(sender).empty());
            // 2000 mm take 5831 us; the wire counts units of 51.2 us.
            QCOMPARE(int(result->echoesOf(sender).front().timeOfFlight), 5836);
        }
    }

    void sameSeedGivesTheSameBytes()
    {
        const QString arguments = QStringLiteral(
            "--rate 500 --seed 42 --drop-stream 0.2 --duplicate-stream 0.2 --reorder-stream 0.2 "
            "--corrupt-stream 0.2 --garbage-stream 0.2");
        Link first(arguments);
        Link second(arguments);
        const auto results = first.take(first.results(), 60);
        QCOMPARE(results.size(), std::size_t(60));
        QVERIFY(results == second.take(second.results(), 60));
        QVERIFY(first.take(first.freespaces(), 60) == second.take(second.freespaces(), 60));
    }

    void emptySequenceSilencesTheStreams()
    {
        Link link(QStringLiteral("--rate 200"));
        QCOMPARE(link.take(link.results(), 1).size(), std::size_t(1));
        LoopbackPeer peer;
        peer.sendTo(link.simulator().controlPort(),
                    orv::encodeRequest(orv::ControlCommand::MeasurementSequence, Bytes{0, 0}));
        QVERIFY(peer.receive(kPatienceMs));
        while (link.results().receive(0)) {
        }
        // Two hundred results a second would show themselves in this time.
        QVERIFY(!link.results().receive(100));
    }

    void streamsCanBeOff()
    {
        Link link(QStringLiteral("--streams off --rate 200"));
        orv::FirmwareVersion firmware;
        QVERIFY(link.client().readFirmwareVersion(firmware));
        QVERIFY(!link.results().receive(100));
        QVERIFY(!link.freespaces().receive(0));
    }

    void stateOutlivesTheRun()
    {
        QTemporaryDir folder;
        const QString arguments =
            QStringLiteral("--streams off --state ") + folder.filePath(QStringLiteral("ecu"));
        orv::SensorThreshold threshold;
        {
            Link link(arguments);
            QVERIFY(link.client().readThresholds(2, threshold));
            threshold.entries[0] = 0x33;
            QVERIFY(link.client().writeThresholds(threshold, true));
            threshold.entries[1] = 0x44;
            QVERIFY(link.client().writeThresholds(threshold, false));
            QCOMPARE(link.simulator().stop(), 0);
        }
        Link link(arguments);
        QVERIFY(link.client().readThresholds(2, threshold));
        QCOMPARE(int(threshold.entries[0]), 0x33);
        QVERIFY(threshold.entries[1] != 0x44);
    }

    void writtenNetworkSettingsHoldFromTheNextStart()
    {
        QTemporaryDir folder;
        const QStringList arguments = {QStringLiteral("--rate"), QStringLiteral("200"),
                                       QStringLiteral("--state"),
                                       folder.filePath(QStringLiteral("ecu"))};
        LoopbackPeer oldPort;
        LoopbackPeer newPort;
        {
            SimulatorProcess simulator(arguments + QStringList{QStringLiteral("--receive-port"),
                                                               QString::number(oldPort.port())});
            orv::OrvCtrlSocket socket("127.0.0.1", simulator.controlPort());
            QVERIFY(socket.setReceiveTimeout(kAnswerPatienceMs));
            orv::OrvCtrlClient client(&socket);
            orv::EcuNetworkSettings network;
            QVERIFY(client.readNetworkSettings(network));
            network.receivePort = newPort.port();
            QVERIFY(client.writeNetworkSettings(network));
            QVERIFY(client.readNetworkSettings(network));
            QCOMPARE(network.receivePort, newPort.port());
            QVERIFY(oldPort.receive(kPatienceMs));
            QVERIFY(!newPort.receive(0));
            QCOMPARE(simulator.stop(), 0);
        }
        SimulatorProcess simulator(arguments);
        QVERIFY(newPort.receive(kPatienceMs));
    }

    void junkStateIsReportedAndTheDefaultsHold()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("ecu"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("junk");
        file.close();
        Link link(QStringLiteral("--streams off --state ") + path);
        std::vector<orv::MseqStep> steps;
        QVERIFY(link.client().readMeasurementSequence(steps));
        QCOMPARE(steps.size(), std::size_t(12));
        QCOMPARE(link.simulator().stop(), 0);
        QCOMPARE(link.simulator().errorOutput(),
                 path + QStringLiteral(": not a state of the simulated ECU; starting with the "
                                       "defaults\n"));
    }

    void verbosePrintsOneLineForEachRequest()
    {
        Link link(QStringLiteral("--streams off --verbose"));
        orv::SensorThreshold threshold;
        QVERIFY(link.client().readThresholds(0, threshold));
        QVERIFY(
            link.simulator().waitForOutput(QStringLiteral("read thresholds of sensor 1, ok\n")));
    }

    void forcedStatusReachesTheClient()
    {
        Link link(QStringLiteral("--streams off --status 2=7"));
        orv::FirmwareVersion firmware;
        QVERIFY(!link.client().readFirmwareVersion(firmware));
        QCOMPARE(QString::fromStdString(link.client().lastError()),
                 QStringLiteral("ECU error (7)"));
    }

    void corruptRepliesReachTheClient()
    {
        Link link(QStringLiteral("--streams off --corrupt-replies 1"));
        orv::FirmwareVersion firmware;
        QVERIFY(!link.client().readFirmwareVersion(firmware));
        QCOMPARE(QString::fromStdString(link.client().lastError()),
                 QStringLiteral("checksum error"));
    }

    void droppedRepliesTimeOut()
    {
        Link link(QStringLiteral("--streams off --drop-replies 1"));
        link.waitForReplies(100);
        orv::FirmwareVersion firmware;
        QVERIFY(!link.client().readFirmwareVersion(firmware));
        QCOMPARE(QString::fromStdString(link.client().lastError()),
                 QStringLiteral("socket: receive timeout"));
    }

    void delayedAndDoubledRepliesComeLateAndTwice()
    {
        SimulatorProcess simulator({QStringLiteral("--streams"), QStringLiteral("off"),
                                    QStringLiteral("--delay-replies"), QStringLiteral("1"),
                                    QStringLiteral("--delay-ms"), QStringLiteral("200"),
                                    QStringLiteral("--duplicate-replies"), QStringLiteral("1")});
        LoopbackPeer peer;
        QElapsedTimer clock;
        clock.start();
        peer.sendTo(simulator.controlPort(),
                    orv::encodeRequest(orv::ControlCommand::FirmwareVersion, {}));
        const auto first = peer.receive(kPatienceMs);
        QVERIFY(clock.elapsed() >= 190);
        QVERIFY(first);
        QVERIFY(first == peer.receive(kPatienceMs));
    }
};

QTEST_GUILESS_MAIN(TestEcuSimulator)
#include "test_ecu_simulator.moc"
