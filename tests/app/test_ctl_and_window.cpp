#include "orv_decoder/metatypes.h"
#include "tests/app/WholeWindow.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/tools/tarvioctl/CtlProcess.h"

#include <QAction>
#include <QFile>
#include <QSignalSpy>
#include <QtTest>

#include <cstdint>
#include <vector>

namespace {

constexpr int kRecords = 30;
constexpr int kPatienceMs = 10000;

// Of the headers in a capture and the shortest measurement, in bytes.
constexpr int kSmallestPacket = 16 + 28 + 8;

QByteArray contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString textOf(const orv::OrvMeasurementResult& result)
{
    QString text = QStringLiteral("%1/%2/%3:")
                       .arg(result.measurementWord)
                       .arg(result.sendMask)
                       .arg(result.receiveMask);
    for (const auto& [sensor, echoes] : result.echoes)
        for (const orv::OrvSensorEcho& echo : echoes)
            text += QStringLiteral(" %1,%2,%3,%4")
                        .arg(sensor)
                        .arg(echo.timeOfFlight)
                        .arg(echo.magnitude)
                        .arg(echo.secondValue);
    return text;
}

} // namespace

/// The program without a window beside the one with it: what one writes the other knows.
class TestCtlAndWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { orv::registerMetaTypes(); }

    void readWritesTheBytesThatTheWindowExports();
    void replayedSessionShowsTheEchoesOfTheLiveOne();

private:
    static void forwardMeasurements(const std::vector<std::uint16_t>& ports);
    static QStringList textsOf(const QSignalSpy& results);
};

void TestCtlAndWindow::readWritesTheBytesThatTheWindowExports()
{
    WholeWindow window;
    window.exportTo(window.path(QStringLiteral("window.orv")));
    const CtlResult result =
        CtlProcess::run({"read", window.path(QStringLiteral("ctl.orv")), "--timeout", "10000"});
    QCOMPARE(result.exitStatus, 0);
    const QByteArray exported = contentOf(window.path(QStringLiteral("window.orv")));
    QVERIFY(exported.contains("<ecu_ip>127.0.0.1</ecu_ip>"));
    QCOMPARE(contentOf(window.path(QStringLiteral("ctl.orv"))), exported);
}

QStringList TestCtlAndWindow::textsOf(const QSignalSpy& results)
{
    QStringList texts;
    for (const QVariantList& arguments : results)
        texts += textOf(arguments[0].value<orv::OrvMeasurementResult>());
    return texts;
}

// What the simulated ECU sends goes to the window and into the capture alike.
void TestCtlAndWindow::replayedSessionShowsTheEchoesOfTheLiveOne()
{
    WholeWindow window;
    window.window().findChild<QAction*>(QStringLiteral("actionCapture"))->setChecked(true);
    const QString capture = window.path(QStringLiteral("drive.pcap"));
    const QString recordedPort = QString::number(freeUdpPort());
    QStringList shownLive;
    {
        const QSignalSpy live(&window.window(), &TarvioWindow::measResultReceived);
        CtlProcess recorder({"record", capture, "--receive-port", recordedPort, "--fsp-port", "0"});
        QTRY_VERIFY(QFile::exists(capture));
        forwardMeasurements({window.receivePort(), recordedPort.toUShort()});
        QTRY_COMPARE(live.size(), kRecords);
        shownLive = textsOf(live);
        QTRY_VERIFY(QFile(capture).size() > kRecords * kSmallestPacket);
        recorder.interrupt();
        QCOMPARE(recorder.waitForEnd().exitStatus, 0);
    }
    const QSignalSpy replayed(&window.window(), &TarvioWindow::measResultReceived);
    const CtlProcess replay({"replay", capture, "--recorded-receive-port", recordedPort,
                             "--receive-port", QString::number(window.receivePort()), "--fsp-port",
                             "0"});
    QTRY_COMPARE_WITH_TIMEOUT(replayed.size(), kRecords, 30000);
    QVERIFY(shownLive.first().contains(QLatin1Char(',')));
    QCOMPARE(textsOf(replayed), shownLive);
}

void TestCtlAndWindow::forwardMeasurements(const std::vector<std::uint16_t>& ports)
{
    LoopbackPeer tee;
    const SimulatorProcess ecu(
        {"--rate", "90", "--fsp-port", "0", "--receive-port", QString::number(tee.port())});
    for (int record = 0; record < kRecords; ++record) {
        const auto datagram = tee.receive(kPatienceMs);
        QVERIFY(datagram);
        for (const std::uint16_t port : ports)
            tee.sendTo(port, *datagram);
    }
}

QTEST_MAIN(TestCtlAndWindow)
#include "test_ctl_and_window.moc"
