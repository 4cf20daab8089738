#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "tests/support/FullDisk.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/held_port.h"
#include "tests/tools/tarvioctl/CtlProcess.h"
#include "tools/common/CaptureReader.h"
#include "tools/common/CaptureWriter.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <stdexcept>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kPatienceMs = 30000;
constexpr qint64 kCaptureHeaderSize = 24;
constexpr int kRecords = 20;

const Bytes kMeasurement = {5, 0, 0, 0, 2, 0, 4, 0, 1, 2, 1, 100, 0, 7, 1};
const Bytes kEmptyFreespace = {0};

template<typename Record>
std::vector<Record> decoded(const std::vector<Bytes>& datagrams)
{
    std::vector<Record> records;
    for (const Bytes& datagram : datagrams)
        if (const auto record = orv::decodeDatagram<Record>(datagram))
            records.push_back(*record);
    return records;
}

// Throws where the capture is broken.
int packetsIn(const QString& fileName)
{
    cli::CaptureReader reader(fileName);
    int packets = 0;
    while (reader.next())
        ++packets;
    return packets;
}

// For one that is being recorded: its last packet may be there in part.
bool hasPackets(const QString& fileName, int packets)
{
    try {
        return packetsIn(fileName) == packets;
    } catch (const std::runtime_error&) {
        return false;
    }
}

} // namespace

/// `record` and `replay` as a user runs them.
class TestCtlCaptures : public QObject
{
    Q_OBJECT

private:
    QString path(const char* name) const { return mFolder->filePath(QLatin1String(name)); }

    static QStringList ports(std::uint16_t receivePort, std::uint16_t fspPort)
    {
        return {"--receive-port", QString::number(receivePort), "--fsp-port",
                QString::number(fspPort)};
    }

    QStringList recording(const QStringList& more = {}) const
    {
        return QStringList{"record", path("a.pcap")} + ports(mReceivePort, mFspPort) + more;
    }

    // The capture is begun behind the ports, and nothing can be read in it before.
    bool waitUntilRecording() const
    {
        return waitUntilPortIsHeld(mReceivePort) && waitUntilPortIsHeld(mFspPort) &&
               QTest::qWaitFor(
                   [this] { return QFileInfo(path("a.pcap")).size() >= kCaptureHeaderSize; },
                   kPatienceMs);
    }

    // A capture for the ports 4001 and 4003.
    void writeCapture(int packets) const
    {
        cli::CaptureWriter writer(path("a.pcap"));
        for (int packet = 0; packet < packets; ++packet)
            writer.write(
                std::chrono::system_clock::time_point(std::chrono::milliseconds(packet)),
                {.source = {},
                 .destination = orv::ipv4Endpoint("192.168.1.9", packet % 2 == 0 ? 4001 : 4003),
                 .payload = packet % 2 == 0 ? kMeasurement : kEmptyFreespace});
    }

    std::unique_ptr<QTemporaryDir> mFolder;
    std::uint16_t mReceivePort = 0;
    std::uint16_t mFspPort = 0;

private slots:
    void init()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        mReceivePort = freeUdpPort();
        do
            mFspPort = freeUdpPort();
        while (mFspPort == mReceivePort);
    }

    void recordedSessionReplayedGivesTheSameRecords()
    {
        LoopbackPeer results;
        LoopbackPeer freespaces;
        std::vector<Bytes> liveResults;
        std::vector<Bytes> liveFreespaces;
        CtlProcess recorder(recording());
        QVERIFY(waitUntilRecording());
        {
            const SimulatorProcess ecu(QStringList{"--rate", "100"} +
                                       ports(results.port(), freespaces.port()));
            for (int record = 0; record < kRecords; ++record) {
                liveResults.push_back(results.receive(kPatienceMs).value_or(Bytes()));
                results.sendTo(mReceivePort, liveResults.back());
                liveFreespaces.push_back(freespaces.receive(kPatienceMs).value_or(Bytes()));
                results.sendTo(mFspPort, liveFreespaces.back());
            }
        }
        QTRY_VERIFY_WITH_TIMEOUT(hasPackets(path("a.pcap"), 2 * kRecords), kPatienceMs);
        recorder.interrupt();
        const CtlResult recorded = recorder.waitForEnd();
        QCOMPARE(recorded.exitStatus, 0);
        QCOMPARE(recorded.errorOutput,
                 QStringLiteral("20 measurement and 20 freespace datagrams recorded into %1.\n")
                     .arg(path("a.pcap")));
        while (results.receive(0)) {
        }
        while (freespaces.receive(0)) {
        }

        const CtlResult replayed =
            CtlProcess::run(QStringList{"replay", path("a.pcap"), "--speed", "10",
                                        "--recorded-receive-port", QString::number(mReceivePort),
                                        "--recorded-fsp-port", QString::number(mFspPort)} +
                            ports(results.port(), freespaces.port()));
        QCOMPARE(replayed.exitStatus, 0);
        QCOMPARE(replayed.errorOutput,
                 QStringLiteral("20 measurement and 20 freespace datagrams sent, 0 packets passed "
                                "over.\n"));
        std::vector<Bytes> replayedResults;
        while (auto datagram = results.receive(0))
            replayedResults.push_back(*datagram);
        std::vector<Bytes> replayedFreespaces;
        while (auto datagram = freespaces.receive(0))
            replayedFreespaces.push_back(*datagram);

        const auto records = decoded<orv::OrvMeasurementResult>(liveResults);
        QCOMPARE(records.size(), std::size_t{kRecords});
        QVERIFY(!records[0].echoes.empty());
        QVERIFY(decoded<orv::OrvMeasurementResult>(replayedResults) == records);
        QVERIFY(decoded<orv::OrvFreespacePackage>(replayedFreespaces) ==
                decoded<orv::OrvFreespacePackage>(liveFreespaces));
        QVERIFY(replayedResults == liveResults);
        QVERIFY(replayedFreespaces == liveFreespaces);
    }

    void recordKeepsWhereAndWhenADatagramCame()
    {
        CtlProcess recorder(recording());
        QVERIFY(waitUntilRecording());
        const double before = static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000;
        LoopbackPeer ecu;
        ecu.sendTo(mFspPort, kEmptyFreespace);
        QTRY_VERIFY_WITH_TIMEOUT(hasPackets(path("a.pcap"), 1), kPatienceMs);
        const double after = static_cast<double>(QDateTime::currentMSecsSinceEpoch() + 1) / 1000;
        cli::CaptureReader reader(path("a.pcap"));
        const auto packet = reader.next();
        QVERIFY(packet->seconds >= before && packet->seconds <= after);
        QCOMPARE(packet->datagram->source.port, ecu.port());
        QVERIFY(packet->datagram->source.address == orv::ipv4Endpoint("127.0.0.1", 0).address);
        QCOMPARE(packet->datagram->destination.port, mFspPort);
    }

    void recordingEndsWhenTimeIsUp()
    {
        const SimulatorProcess ecu(QStringList{"--rate", "100"} + ports(mReceivePort, mFspPort));
        CtlResult result;
        // A busy machine may need longer for a first datagram.
        for (const char* seconds : {"0.5", "5", "30"}) {
            result = CtlProcess::run(recording({"--seconds", seconds}));
            if (result.exitStatus == 0)
                break;
        }
        QCOMPARE(result.exitStatus, 0);
        QVERIFY(packetsIn(path("a.pcap")) > 0);
    }

    void recordingNothingIsAFailure()
    {
        const CtlResult result = CtlProcess::run(recording({"--seconds", "0.05"}));
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(result.errorOutput.endsWith(
            QStringLiteral(".\nNothing arrived that could be used: see \"tarvioctl doctor\".\n")));
    }

    void portInUseLeavesAFormerRecordingAlone()
    {
        writeCapture(3);
        const LoopbackPeer holder;
        mReceivePort = holder.port();
        const CtlResult result = CtlProcess::run(recording());
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(result.errorOutput.startsWith(
            QStringLiteral("Port %1 cannot be had ").arg(mReceivePort)));
        QCOMPARE(packetsIn(path("a.pcap")), 3);
    }

    void fullDiskEndsItWithAWholeFile()
    {
        const SimulatorProcess ecu(QStringList{"--rate", "100"} + ports(mReceivePort, mFspPort));
        const CtlResult result = [this] {
            const FullDisk disk(5000);
            return CtlProcess::run(recording());
        }();
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.errorOutput,
                 path("a.pcap") + QStringLiteral(" takes no more (File too large): what was "
                                                 "recorded before is in it; make room or record "
                                                 "elsewhere.\n"));
        QVERIFY(packetsIn(path("a.pcap")) > 2); // throws where it is broken
    }

    void folderThatIsNotThereIsOneSentence()
    {
        const CtlResult result = CtlProcess::run(QStringList{"record", path("none/a.pcap")} +
                                                 ports(mReceivePort, mFspPort));
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.errorOutput,
                 path("none/a.pcap") + QStringLiteral(" cannot be written (No such file or "
                                                      "directory): record elsewhere.\n"));
    }

    void otherFormatsAreWrongUsage()
    {
        const CtlResult result = CtlProcess::run({"record", "a.pcapng"});
        QCOMPARE(result.exitStatus, 2);
        QVERIFY(result.errorOutput.endsWith(
            QStringLiteral("Captures are written in the format pcap, which Wireshark opens as it "
                           "does pcapng: name the file NAME.pcap, not \"a.pcapng\".\n")));
    }

    void replayStaysOnThisComputer()
    {
        writeCapture(4);
        LoopbackPeer results;
        LoopbackPeer freespaces;
        const CtlResult result = CtlProcess::run(
            QStringList{"replay", path("a.pcap"), "--ecu", "192.168.1.3", "--recorded-receive-port",
                        "4001", "--recorded-fsp-port", "4003"} +
            ports(results.port(), freespaces.port()));
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(results.receive(0).value_or(Bytes()), kMeasurement);
        QCOMPARE(freespaces.receive(0).value_or(Bytes()), kEmptyFreespace);
    }

    void loopedReplayEndsWhenInterrupted()
    {
        writeCapture(2);
        LoopbackPeer results;
        CtlProcess replay(
            QStringList{"replay", path("a.pcap"), "--loop", "--recorded-receive-port", "4001"} +
            ports(results.port(), freeUdpPort()));
        for (int round = 0; round < 3; ++round)
            QVERIFY(results.receive(kPatienceMs));
        replay.interrupt();
        const CtlResult result = replay.waitForEnd();
        QCOMPARE(result.exitStatus, 0);
        QVERIFY2(result.errorOutput.endsWith(QStringLiteral(" packets passed over.\n")),
                 qPrintable(result.errorOutput));
    }

    void brokenCaptureIsPlayedUpToItsFault()
    {
        writeCapture(4);
        QFile file(path("a.pcap"));
        QVERIFY(file.resize(file.size() - 3));
        LoopbackPeer results;
        LoopbackPeer freespaces;
        const CtlResult result =
            CtlProcess::run(QStringList{"replay", path("a.pcap"), "--recorded-receive-port", "4001",
                                        "--recorded-fsp-port", "4003"} +
                            ports(results.port(), freespaces.port()));
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(result.errorOutput.startsWith(path("a.pcap") + QStringLiteral(" is broken (")));
        QCOMPARE(result.errorOutput.count(QLatin1Char('\n')), 1);
        QVERIFY(results.receive(0) && results.receive(0));
        QVERIFY(freespaces.receive(0));
        QVERIFY(!freespaces.receive(0));
    }

    void otherPortsAreNamed()
    {
        writeCapture(2);
        const CtlResult result =
            CtlProcess::run(QStringList{"replay", path("a.pcap")} + ports(5001, 5003));
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.errorOutput,
                 path("a.pcap") + QStringLiteral(" holds nothing for port 5001 or 5003, but for "
                                                 "4001, 4003: say which is which by "
                                                 "--recorded-receive-port and "
                                                 "--recorded-fsp-port.\n"));
    }

    void noCaptureIsOneSentence()
    {
        const CtlResult result =
            CtlProcess::run(QStringList{"replay", path("none.pcapng")} + ports(5001, 5003));
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.errorOutput,
                 path("none.pcapng") +
                     QStringLiteral(" cannot be played (No such file or directory): give a capture "
                                    "file, pcap or pcapng.\n"));
    }

    void speedHasItsRange()
    {
        const CtlResult result = CtlProcess::run({"replay", "a.pcap", "--speed", "0"});
        QCOMPARE(result.exitStatus, 2);
        QCOMPARE(result.errorOutput,
                 QStringLiteral("--speed takes a number from 0.01 to 1000, not \"0\".\n"));
    }

    void simulatedEcuPlaysACaptureAndAnswers()
    {
        writeCapture(4);
        LoopbackPeer results;
        LoopbackPeer freespaces;
        SimulatorProcess ecu(QStringList{"--replay", path("a.pcap"), "--recorded-receive-port",
                                         "4001", "--recorded-fsp-port", "4003"} +
                             ports(results.port(), freespaces.port()));
        QCOMPARE(results.receive(kPatienceMs).value_or(Bytes()), kMeasurement);
        QCOMPARE(freespaces.receive(kPatienceMs).value_or(Bytes()), kEmptyFreespace);
        QVERIFY(ecu.waitForOutput(QStringLiteral("replay ended: 2 measurement and 2 freespace "
                                                 "datagrams sent, 0 packets passed over\n")));
        QCOMPARE(CtlProcess::run(QStringList{"info"} + ecuOptions(ecu.controlPort())).exitStatus,
                 0);
        QVERIFY(results.receive(0)); // the second, and none of the scene
        QVERIFY(!results.receive(100));
    }

    void simulatedEcuTellsOfABrokenCapture()
    {
        SimulatorProcess none({"--replay", path("none.pcap")});
        QCOMPARE(none.waitForEnd(), 1);
        QCOMPARE(none.errorOutput(),
                 path("none.pcap") +
                     QStringLiteral(" cannot be played (No such file or directory): give a capture "
                                    "file, pcap or pcapng.\n"));
        writeCapture(2);
        SimulatorProcess ecu(QStringList{"--replay", path("a.pcap")} + ports(5001, 5003));
        QTRY_VERIFY_WITH_TIMEOUT(
            ecu.errorOutput().contains(QStringLiteral(" holds nothing for port 5001")),
            kPatienceMs);
        QCOMPARE(CtlProcess::run(QStringList{"info"} + ecuOptions(ecu.controlPort())).exitStatus,
                 0);
    }
};

QTEST_GUILESS_MAIN(TestCtlCaptures)
#include "test_ctl_captures.moc"
