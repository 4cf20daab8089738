#include "ecu/link/EcuLink.h"
#include "ecu/store/NetworkSettings.h"
#include "tests/support/LoopbackEcu.h"

#include <QtTest>

#include <atomic>
#include <thread>

class TestEcuLink : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void drainTellsWhetherAnythingCame();
    void drainEmptiesBothStreams();
    void floodDoesNotHoldTheDrain();
    void discardDropsWhatTheSystemBuffered();
    void probeReadsTheFirmwareVersion();
    void probeOfASilentEcuFails();
    void reconnectMovesAllThreeSockets();

private:
    NetworkSettings network() const;

    std::unique_ptr<LoopbackEcu> mEcu;
    std::uint16_t mReceivePort = 0;
    std::uint16_t mFreespacePort = 0;
};

namespace {

const std::vector<std::uint8_t> kMeasurement = {1, 0, 0, 0, 1, 0, 2, 0, 0};
const std::vector<std::uint8_t> kFreespace = {0};

} // namespace

void TestEcuLink::init()
{
    mEcu = std::make_unique<LoopbackEcu>();
    mReceivePort = freeUdpPort();
    mFreespacePort = freeUdpPort();
}

void TestEcuLink::cleanup()
{
    mEcu.reset();
}

NetworkSettings TestEcuLink::network() const
{
    return {"127.0.0.1", mEcu->port(), mReceivePort, mFreespacePort};
}

void TestEcuLink::drainTellsWhetherAnythingCame()
{
    EcuLink link(network());
    QVERIFY(!link.drain());
    mEcu->stream(mFreespacePort, kFreespace);
    QVERIFY(link.drain());
    QVERIFY(!link.drain());
}

void TestEcuLink::drainEmptiesBothStreams()
{
    EcuLink link(network());
    for (int i = 0; i < 5; ++i) {
        mEcu->stream(mReceivePort, kMeasurement);
        mEcu->stream(mFreespacePort, kFreespace);
    }
    QVERIFY(link.drain());
    orv::OrvMeasurementResult result;
    orv::OrvFreespacePackage package;
    QVERIFY(!link.take(result, 1));
    QVERIFY(!link.take(package, 1));
}

void TestEcuLink::floodDoesNotHoldTheDrain()
{
    EcuLink link(network());
    std::atomic<bool> stop = false;
    std::atomic<int> sent = 0;
    std::thread sender([&] {
        LoopbackPeer peer;
        for (; sent < 2'000'000 && !stop; ++sent)
            peer.sendTo(mReceivePort, kMeasurement);
    });
    QTRY_VERIFY(sent > 100);
    QVERIFY(link.drain());
    const bool stillSending = sent < 2'000'000;
    stop = true;
    sender.join();
    QVERIFY2(stillSending, "the drain came back only when the sender had ended");
}

void TestEcuLink::discardDropsWhatTheSystemBuffered()
{
    EcuLink link(network());
    mEcu->stream(mReceivePort, kMeasurement);
    orv::OrvMeasurementResult result;
    QVERIFY(link.take(result, 10));
    mEcu->stream(mReceivePort, kMeasurement);
    link.discardMeasurementResults();
    QVERIFY(!link.take(result, 10));
    mEcu->stream(mReceivePort, kMeasurement);
    QVERIFY(link.take(result, 10));
}

void TestEcuLink::probeReadsTheFirmwareVersion()
{
    EcuLink link(network());
    mEcu->answerAll({2, 14, 0});
    orv::FirmwareVersion version;
    QVERIFY(link.probe(version));
    QCOMPARE(version.text(), std::string("2.14.0"));
    QCOMPARE(mEcu->requests().size(), std::size_t{1});
    QCOMPARE(int(mEcu->requests().front().code), 2);
}

void TestEcuLink::probeOfASilentEcuFails()
{
    EcuLink link(network());
    orv::FirmwareVersion version;
    QVERIFY(!link.probe(version));
    QCOMPARE(link.client().lastError(), std::string("socket: receive timeout"));
}

void TestEcuLink::reconnectMovesAllThreeSockets()
{
    EcuLink link(network());
    LoopbackEcu other;
    other.answerAll({3, 0, 1});
    const std::uint16_t receivePort = freeUdpPort();
    const std::uint16_t freespacePort = freeUdpPort();
    link.reconnect({"127.0.0.1", other.port(), receivePort, freespacePort});

    orv::FirmwareVersion version;
    QVERIFY(link.probe(version));
    QCOMPARE(version.text(), std::string("3.0.1"));
    orv::OrvMeasurementResult result;
    mEcu->stream(mReceivePort, kMeasurement);
    QVERIFY(!link.take(result, 10));
    mEcu->stream(receivePort, kMeasurement);
    QVERIFY(link.take(result, 10));
    orv::OrvFreespacePackage package;
    mEcu->stream(freespacePort, kFreespace);
    QVERIFY(link.take(package, 10));
}

QTEST_GUILESS_MAIN(TestEcuLink)
#include "test_ecu_link.moc"
