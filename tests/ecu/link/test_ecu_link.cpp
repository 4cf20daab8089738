#include "ecu/link/EcuLink.h"
#include "ecu/link/LinkSettings.h"
#include "tests/ecu/link/LinkFixture.h"
#include "tests/support/LoopbackEcu.h"
#include "tests/support/OpenDescriptors.h"
#include "tests/support/PatientReceive.h"

#include <QtTest>

#include <atomic>
#include <chrono>
#include <cstdlib>
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
    void junkDoesNotEndTheDrain();
    void portThatSomebodyHoldsIsAProblem();
    void portThatSomebodySharesIsAProblem();
    void oneStreamDoesNotTakeTheOthersPort();
    void closedStreamOpensOnceItsPortIsFree();
    void streamsMayExchangeTheirPorts();
    void probeReadsTheFirmwareVersion();
    void probeOfASilentEcuFails();
    void probeWaitsForAShortTimeOnly();
    void probeLeavesTheConfiguredTimeout();
    void reconnectMovesAllThreeSockets();

private:
    LinkSettings network() const;

    std::unique_ptr<LoopbackEcu> mEcu;
    std::uint16_t mReceivePort = 0;
    std::uint16_t mFreespacePort = 0;
};

namespace {

using namespace std::chrono_literals;

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

LinkSettings TestEcuLink::network() const
{
    return {"127.0.0.1", mEcu->port(), mReceivePort, mFreespacePort};
}

void TestEcuLink::drainTellsWhetherAnythingCame()
{
    const TestClock clock;
    EcuLink link(network());
    QVERIFY(!link.drain());
    mEcu->stream(mFreespacePort, kFreespace);
    QVERIFY(link.drain());
    QVERIFY(!link.drain());
}

void TestEcuLink::drainEmptiesBothStreams()
{
    const TestClock clock;
    EcuLink link(network());
    for (int i = 0; i < 5; ++i) {
        mEcu->stream(mReceivePort, kMeasurement);
        mEcu->stream(mFreespacePort, kFreespace);
    }
    QVERIFY(link.drain());
    QVERIFY(!link.measurements().take(0));
    QVERIFY(!link.freespaces().take(0));
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

void TestEcuLink::junkDoesNotEndTheDrain()
{
    const TestClock clock;
    EcuLink link(network());
    mEcu->stream(mReceivePort, {});
    mEcu->stream(mReceivePort, {1, 2, 3});
    mEcu->stream(mFreespacePort, {1, 2, 3});
    QVERIFY(!link.drain());
    for (const auto& datagram : {LoopbackEcu::Frame{}, {1, 2, 3}, kMeasurement, {}, {9}})
        mEcu->stream(mReceivePort, datagram);
    QVERIFY(link.drain());
    QVERIFY(!link.measurements().take(0));
}

void TestEcuLink::portThatSomebodyHoldsIsAProblem()
{
    LoopbackPeer holder;
    EcuLink link({"127.0.0.1", mEcu->port(), holder.port(), mFreespacePort});
    QVERIFY(!link.measurements().isOpen());
    QVERIFY(link.freespaces().isOpen());
    const PortProblem problem{holder.port(), "Address already in use"};
    QCOMPARE(link.portProblems(), std::vector{problem});
    QVERIFY(!link.measurements().take(1));
}

// The system itself would let both have it, and give the data to the second one alone.
void TestEcuLink::portThatSomebodySharesIsAProblem()
{
    orv::OrvUdpSocket sharer(mFreespacePort);
    QVERIFY(sharer.open());
    EcuLink link(network());
    const PortProblem problem{mFreespacePort, "Address already in use"};
    QCOMPARE(link.portProblems(), std::vector{problem});
    mEcu->stream(mFreespacePort, kFreespace);
    QVERIFY(sharer.waitForDatagram(0));
}

void TestEcuLink::oneStreamDoesNotTakeTheOthersPort()
{
    EcuLink link({"127.0.0.1", mEcu->port(), mReceivePort, mReceivePort});
    QVERIFY(link.measurements().isOpen());
    const PortProblem problem{mReceivePort, "Address already in use"};
    QCOMPARE(link.portProblems(), std::vector{problem});
}

void TestEcuLink::closedStreamOpensOnceItsPortIsFree()
{
    auto holder = std::make_unique<LoopbackPeer>();
    const std::uint16_t port = holder->port();
    EcuLink link({"127.0.0.1", mEcu->port(), mReceivePort, port});
    link.openClosedStreams();
    QCOMPARE(link.portProblems().size(), std::size_t{1});
    holder.reset();
    mEcu->stream(mReceivePort, kMeasurement);
    link.openClosedStreams();
    QVERIFY(link.portProblems().empty());
    QVERIFY2(link.measurements().take(0), "the open stream was opened anew");
    mEcu->stream(port, kFreespace);
    QVERIFY(link.freespaces().take(0));
}

void TestEcuLink::streamsMayExchangeTheirPorts()
{
    EcuLink link(network());
    link.reconnect({"127.0.0.1", mEcu->port(), mFreespacePort, mReceivePort});
    QVERIFY(link.portProblems().empty());
    mEcu->stream(mFreespacePort, kMeasurement);
    QVERIFY(link.measurements().take(0));
}

void TestEcuLink::probeWaitsForAShortTimeOnly()
{
    LinkFixture fixture;
    const auto start = fixture.clock.now();
    orv::FirmwareVersion version;
    QVERIFY(!fixture.link->probe(version));
    const std::chrono::milliseconds waited = fixture.clock.now() - start;
    QVERIFY(waited >= 100ms);
    QVERIFY(waited < 150ms); // the system rounds up to a tick of its clock
}

void TestEcuLink::probeLeavesTheConfiguredTimeout()
{
    const auto before = openDescriptors();
    LinkFixture fixture;
    orv::FirmwareVersion version;
    QVERIFY(!fixture.link->probe(version));
    fixture.answer();
    QVERIFY(fixture.link->probe(version));
    int configured = 0;
    for (const int descriptor : openDescriptors()) {
        if (!before.count(descriptor))
            configured += std::abs(static_cast<int>(receiveTimeoutMsOf(descriptor)) - 500) <= 10;
    }
    QCOMPARE(configured, 1);
}

void TestEcuLink::probeReadsTheFirmwareVersion()
{
    LinkFixture fixture;
    fixture.answer();
    orv::FirmwareVersion version;
    QVERIFY(fixture.link->probe(version));
    QCOMPARE(version.text(), std::string("2.14.0"));
    QCOMPARE(fixture.ecu.requests().size(), std::size_t{1});
    QCOMPARE(int(fixture.ecu.requests().front().code), 2);
}

void TestEcuLink::probeOfASilentEcuFails()
{
    LinkFixture fixture;
    orv::FirmwareVersion version;
    QVERIFY(!fixture.link->probe(version));
    QCOMPARE(fixture.link->client().lastError(), std::string("socket: receive timeout"));
}

void TestEcuLink::reconnectMovesAllThreeSockets()
{
    const PatientReceive patience;
    EcuLink link(network());
    LoopbackEcu other;
    other.answerAll({3, 0, 1});
    const std::uint16_t receivePort = freeUdpPort();
    const std::uint16_t freespacePort = freeUdpPort();
    link.reconnect({"127.0.0.1", other.port(), receivePort, freespacePort});

    orv::FirmwareVersion version;
    QVERIFY(link.probe(version));
    QCOMPARE(version.text(), std::string("3.0.1"));
    mEcu->stream(mReceivePort, kMeasurement);
    QVERIFY(!link.measurements().take(0));
    mEcu->stream(receivePort, kMeasurement);
    QVERIFY(link.measurements().take(0));
    mEcu->stream(freespacePort, kFreespace);
    QVERIFY(link.freespaces().take(0));
}

QTEST_GUILESS_MAIN(TestEcuLink)
#include "test_ecu_link.moc"
