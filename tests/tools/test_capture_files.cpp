#include "tests/support/FullDisk.h"
#include "tests/support/Mutator.h"
#include "tools/common/CapturePlayer.h"
#include "tools/common/CaptureReader.h"
#include "tools/common/CaptureWriter.h"

#include <QTemporaryDir>
#include <QtTest>

#include <stdexcept>

using namespace cli;

Q_DECLARE_METATYPE(cli::StreamKind)

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kPatienceMs = 30000;

// 2026-01-02 03:04:05.678901 UTC
const std::chrono::system_clock::time_point kTime{std::chrono::microseconds(1767323045678901)};

void write(CaptureWriter& writer, std::uint16_t port, const Bytes& payload, int afterMs = 0)
{
    writer.write(kTime + std::chrono::milliseconds(afterMs),
                 {.source = orv::ipv4Endpoint("192.168.1.3", 50002),
                  .destination = orv::ipv4Endpoint("127.0.0.1", port),
                  .payload = payload});
}

// Each packet as "second port payload bytes"; what went wrong ends the list.
QStringList contentsOf(const QString& fileName)
{
    QStringList contents;
    try {
        CaptureReader reader(fileName);
        while (const auto packet = reader.next())
            contents += packet->datagram ? QStringLiteral("%1 %2 %3")
                                               .arg(packet->seconds, 0, 'f', 6)
                                               .arg(packet->datagram->destination.port)
                                               .arg(packet->datagram->payload.size())
                                         : QStringLiteral("other");
    } catch (const std::runtime_error& error) {
        contents += QString::fromUtf8(error.what());
    }
    return contents;
}

QByteArray contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A capture of two Ethernet packets as others make it: pcapng, the second with IPv6 in it.
QByteArray pcapngCapture()
{
    return QByteArray::fromHex("0a0d0d0a1c0000004d3c2b1a01000000ffffffffffffffff1c000000"
                               "01000000140000000100000000000400"
                               "14000000"
                               "060000005000000000000000"
                               "0000000015cd5b072d0000002d000000"
                               "aaaaaaaaaaaabbbbbbbbbbbb0800"
                               "4500001f000040004011fa21c0a801037f000001c3520fa1000be835010203"
                               "000000"
                               "50000000"
                               "060000003000000000000000"
                               "000000001ccd5b070e0000000e000000"
                               "aaaaaaaaaaaabbbbbbbbbbbb86dd0000"
                               "30000000");
}

} // namespace

class TestCaptureFiles : public QObject
{
    Q_OBJECT

private:
    QString fileName() const { return mFolder.filePath(QStringLiteral("a.pcap")); }

    void save(const QByteArray& bytes) const
    {
        QFile file(fileName());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }

    void record(int packets) const
    {
        CaptureWriter writer(fileName());
        for (int packet = 0; packet < packets; ++packet)
            write(writer, packet % 2 == 0 ? 4001 : 4003, Bytes(20, 7), 50 * packet);
    }

    QTemporaryDir mFolder;

private slots:
    void initTestCase() { qRegisterMetaType<cli::StreamKind>("cli::StreamKind"); }

    void whatIsWrittenIsReadBack()
    {
        record(2);
        QCOMPARE(contentsOf(fileName()),
                 (QStringList{"1767323045.678901 4001 20", "1767323045.728901 4003 20"}));
    }

    void fileBeginsAsPcapWithRawIp()
    {
        record(0);
        QCOMPARE(contentOf(fileName()).toHex(),
                 QByteArray("d4c3b2a1020004000000000000000000ffff000065000000"));
    }

    void eachPacketIsInTheFileAtOnce()
    {
        CaptureWriter writer(fileName());
        write(writer, 4001, Bytes(20, 7));
        QCOMPARE(contentsOf(fileName()).size(), 1);
    }

    void fullDiskLeavesWholePackets()
    {
        CaptureWriter writer(fileName());
        const FullDisk disk(200); // header 24, each packet 16 + 28 + 20
        write(writer, 4001, Bytes(20, 7));
        write(writer, 4001, Bytes(20, 7));
        QString told;
        try {
            write(writer, 4001, Bytes(20, 7));
        } catch (const std::runtime_error& error) {
            told = QString::fromUtf8(error.what());
        }
        QCOMPARE(told, fileName() + QStringLiteral(" takes no more (File too large): what was "
                                                   "recorded before is in it; make room or record "
                                                   "elsewhere."));
        QCOMPARE(contentOf(fileName()).size(), 24 + 2 * 64);
    }

    void pcapngOfOthersIsRead()
    {
        save(pcapngCapture());
        QCOMPARE(contentsOf(fileName()), (QStringList{"123.456789 4001 3", "other"}));
    }

    void brokenFiles_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("told");

        record(2);
        const QByteArray whole = contentOf(fileName());
        QByteArray wifi = whole;
        wifi[20] = 105;
        QByteArray huge = whole;
        huge.replace(24 + 8, 4, QByteArray::fromHex("ffffff7f"));
        QTest::newRow("empty") << QByteArray() << "cannot be played (truncated dump file";
        QTest::newRow("text") << QByteArray("no capture at all, but some text")
                              << "cannot be played (unknown file format)";
        QTest::newRow("cut header") << whole.left(20) << "cannot be played (truncated dump file";
        QTest::newRow("cut packet") << whole.left(100) << "is broken (truncated dump file";
        QTest::newRow("unknown link") << wifi << "was captured on a link of the unknown type 105";
        QTest::newRow("huge packet") << huge << "is broken (";
    }

    void brokenFiles()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, told);
        save(bytes);
        const QStringList contents = contentsOf(fileName());
        QVERIFY2(contents.last().startsWith(fileName() + QLatin1Char(' ') + told),
                 qPrintable(contents.last()));
    }

    // Every reading comes to an end, by the end of the file or by a sentence.
    void damagedFilesDoNoHarm()
    {
        record(6);
        int broken = 0;
        for (const QByteArray& whole : {contentOf(fileName()), pcapngCapture()}) {
            Mutator mutate(14);
            for (int round = 0; round < 2000; ++round) {
                save(mutate(whole));
                const QStringList contents = contentsOf(fileName());
                QVERIFY(contents.size() < 200);
                broken += !contents.isEmpty() && contents.last().startsWith(fileName()) ? 1 : 0;
            }
        }
        // The damage is felt.
        QVERIFY2(broken > 400, qPrintable(QString::number(broken)));
    }

    void playerHandsOutWhatIsForItsPorts()
    {
        record(3);
        CapturePlayer player({.fileName = fileName(), .speed = 1000}, {4001, 5003});
        QStringList played;
        connect(
            &player, &CapturePlayer::due, this, [&](StreamKind kind, const QByteArray& datagram) {
                played += QStringLiteral("%1 %2")
                              .arg(kind == StreamKind::Measurements ? "measurement" : "freespace")
                              .arg(datagram.size());
            });
        QSignalSpy ended(&player, &CapturePlayer::ended);
        player.start();
        QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, kPatienceMs);
        QCOMPARE(played, (QStringList{"measurement 20", "measurement 20"}));
        QCOMPARE(player.summary(), QStringLiteral("2 measurement and 0 freespace datagrams sent, 1 "
                                                  "packets passed over"));
    }

    void playerWaitsUntilADatagramIsDue()
    {
        {
            CaptureWriter writer(fileName());
            write(writer, 4001, Bytes(20, 7));
            write(writer, 4001, Bytes(20, 7), 3'600'000);
        }
        CapturePlayer player({.fileName = fileName()}, {4001, 4003});
        QSignalSpy due(&player, &CapturePlayer::due);
        QSignalSpy ended(&player, &CapturePlayer::ended);
        player.start();
        QTRY_COMPARE_WITH_TIMEOUT(due.count(), 1, kPatienceMs);
        QTest::qWait(20);
        QCOMPARE(due.count(), 1);
        QCOMPARE(ended.count(), 0);
    }

    void loopedPlayerBeginsAgain()
    {
        record(2);
        CapturePlayer player({.fileName = fileName(), .speed = 1000, .isLooped = true},
                             {4001, 4003});
        QSignalSpy due(&player, &CapturePlayer::due);
        QSignalSpy ended(&player, &CapturePlayer::ended);
        player.start();
        QTRY_VERIFY_WITH_TIMEOUT(due.count() >= 6, kPatienceMs);
        QCOMPARE(ended.count(), 0);
    }

    void captureWithNothingForThePortsIsRefused_data()
    {
        QTest::addColumn<bool>("isLooped");
        QTest::newRow("once") << false;
        QTest::newRow("looped") << true;
    }

    void captureWithNothingForThePortsIsRefused()
    {
        QFETCH(bool, isLooped);
        record(2);
        CapturePlayer player({.fileName = fileName(), .isLooped = isLooped}, {5001, 5003});
        QSignalSpy failed(&player, &CapturePlayer::failed);
        player.start();
        QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 1, kPatienceMs);
        QCOMPARE(failed[0][0].toString(),
                 fileName() + QStringLiteral(" holds nothing for port 5001 or 5003, but for 4001, "
                                             "4003: say which is which by --recorded-receive-port "
                                             "and --recorded-fsp-port."));
    }

    void captureWithoutDatagramsIsRefused()
    {
        record(0);
        CapturePlayer player({.fileName = fileName()}, {4001, 4003});
        QSignalSpy failed(&player, &CapturePlayer::failed);
        player.start();
        QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 1, kPatienceMs);
        QVERIFY(failed[0][0].toString().endsWith(
            QStringLiteral(" holds no UDP datagram over IPv4: give a capture of the live "
                           "streams.")));
    }
};

QTEST_GUILESS_MAIN(TestCaptureFiles)
#include "test_capture_files.moc"
