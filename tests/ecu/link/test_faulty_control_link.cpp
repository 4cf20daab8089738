#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "orv_decoder/constants.h"
#include "tests/support/LoopbackEcu.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/OpenDescriptors.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/patience.h"

#include <QtTest>

#include <atomic>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>

namespace {

using orv::SensorThreshold;

// Every sensor's record tells whose it is and in which round it was written.
SensorThreshold recordOf(std::uint8_t sensor, std::uint8_t round)
{
    SensorThreshold record;
    record.valid = true;
    record.sensorId = sensor;
    record.entries.fill(static_cast<std::uint8_t>(16 * round + sensor));
    record.scale = 1;
    return record;
}

std::vector<orv::MseqStep> sequenceOf(std::uint8_t round)
{
    return std::vector<orv::MseqStep>(round % 12 + 1U, {.valid = true, .activeMask = round});
}

std::uint16_t localPortOf(int descriptor)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

} // namespace

/// The client on its real socket against a simulated ECU whose replies go wrong.
class TestFaultyControlLink : public QObject
{
    Q_OBJECT

private slots:
    void init() { mClient.reset(); }
    void cleanup();

    void everyReplyTwice();
    void everyReplyAfterAStrayOne();
    void repliesAroundTheTimeout_data();
    void repliesAroundTheTimeout();
    void doubledSuccessDoesNotHideARefusal();
    void lateReplyInTheMiddleOfAWholeRead();
    void lateReplyDoesNotHideARefusal();
    void floodOfTheControlPort();

private:
    void connectTo(const QStringList& simulatorArguments);
    void connectToPort(std::uint16_t port);
    bool awaitDuplicate() const;
    bool readsItsOwn(std::uint8_t sensor, std::uint8_t round);

    std::unique_ptr<SimulatorProcess> mEcu;
    std::unique_ptr<orv::OrvCtrlSocket> mSocket;
    std::unique_ptr<orv::OrvCtrlClient> mClient;
    int mDescriptor = -1;
    std::atomic<std::uint16_t> mLocalPort = 0; // the ECU's thread asks for it too
};

void TestFaultyControlLink::cleanup()
{
    mClient.reset();
    mSocket.reset();
    mEcu.reset();
}

void TestFaultyControlLink::connectTo(const QStringList& simulatorArguments)
{
    mEcu = std::make_unique<SimulatorProcess>(QStringList{"--streams", "off"} + simulatorArguments);
    QVERIFY(mEcu->isListening());
    connectToPort(mEcu->controlPort());
}

void TestFaultyControlLink::connectToPort(std::uint16_t port)
{
    const auto before = openDescriptors();
    mSocket = std::make_unique<orv::OrvCtrlSocket>("127.0.0.1", port);
    mSocket->setReceiveTimeout(kAnswerPatienceMs);
    mClient = std::make_unique<orv::OrvCtrlClient>(mSocket.get());
    orv::FirmwareVersion version;
    mClient->readFirmwareVersion(version); // the system picks the local port
    mDescriptor = descriptorSince(before);
    mLocalPort = localPortOf(mDescriptor);
}

// One that came between a request and its own reply would rightly be taken for the reply.
bool TestFaultyControlLink::awaitDuplicate() const
{
    pollfd entry{.fd = mDescriptor, .events = POLLIN, .revents = 0};
    return ::poll(&entry, 1, 10000) == 1;
}

bool TestFaultyControlLink::readsItsOwn(std::uint8_t sensor, std::uint8_t round)
{
    SensorThreshold record;
    return mClient->readThresholds(sensor, record) && record == recordOf(sensor, round);
}

void TestFaultyControlLink::everyReplyTwice()
{
    connectTo({"--duplicate-replies", "1"});
    for (std::uint8_t round = 1; round <= 10; ++round) {
        for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
            QVERIFY(awaitDuplicate());
            QVERIFY(mClient->writeThresholds(recordOf(sensor, round), true));
            QVERIFY(awaitDuplicate());
            QVERIFY2(readsItsOwn(sensor, round), mClient->lastError().c_str());
        }
        QVERIFY(awaitDuplicate());
        QVERIFY(mClient->writeMeasurementSequence(sequenceOf(round)));
        QVERIFY(awaitDuplicate());
        std::vector<orv::MseqStep> steps;
        QVERIFY2(mClient->readMeasurementSequence(steps), mClient->lastError().c_str());
        QVERIFY(steps == sequenceOf(round));
    }
}

void TestFaultyControlLink::everyReplyAfterAStrayOne()
{
    connectTo({"--stray-replies", "1"});
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
        QVERIFY2(mClient->writeThresholds(recordOf(sensor, 3), true), mClient->lastError().c_str());
        QVERIFY2(readsItsOwn(sensor, 3), mClient->lastError().c_str());
    }
}

void TestFaultyControlLink::repliesAroundTheTimeout_data()
{
    QTest::addColumn<int>("timeoutMs");
    QTest::newRow("of 500 ms") << 500;
    QTest::newRow("of 100 ms") << 100;
}

// Of a delayed reply it is left to chance whether it comes in time: what is read is right or is
// told to be missing.
void TestFaultyControlLink::repliesAroundTheTimeout()
{
    QFETCH(int, timeoutMs);
    const QString delay = QString::number(timeoutMs);
    connectTo({"--delay-replies", "0.3", "--delay-ms", delay, "--delay-spread", "40"});
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
        QVERIFY2(mClient->writeThresholds(recordOf(sensor, 5), true), mClient->lastError().c_str());
    mSocket->setReceiveTimeout(static_cast<std::uint32_t>(timeoutMs));
    constexpr int kReads = 2 * orv::kSensorCount;
    int told = 0;
    for (int i = 0; i < kReads; ++i) {
        const auto sensor = static_cast<std::uint8_t>(i % orv::kSensorCount);
        SensorThreshold record;
        if (mClient->readThresholds(sensor, record)) {
            QVERIFY(record == recordOf(sensor, 5));
            continue;
        }
        ++told;
        QVERIFY2(mClient->lastError() == "socket: receive timeout" ||
                     mClient->lastError() == "wrong sensor id",
                 mClient->lastError().c_str());
    }
    QVERIFY(told < kReads);
}

void TestFaultyControlLink::doubledSuccessDoesNotHideARefusal()
{
    connectTo({"--duplicate-replies", "1"});
    SensorThreshold refused = recordOf(2, 1);
    refused.scale = 9;
    for (int i = 0; i < 5; ++i) {
        QVERIFY(awaitDuplicate());
        QVERIFY(mClient->writeThresholds(recordOf(2, 1), true));
        QVERIFY(awaitDuplicate());
        QVERIFY(!mClient->writeThresholds(refused, true));
        QCOMPARE(mClient->lastError(), std::string("ECU error (5)"));
    }
}

// Late replies come between a request and its answer.
void TestFaultyControlLink::lateReplyInTheMiddleOfAWholeRead()
{
    LoopbackPeer late;
    LoopbackEcu ecu;
    ecu.setHandler([&](const orv::ControlRequest& request) {
        if (request.code != 1)
            return orv::encodeReply(request.code, LoopbackEcu::Frame{2, 14, 0}, 0);
        const std::uint8_t sensor = request.payload.at(1);
        const auto stranger = static_cast<std::uint8_t>((sensor + 5) % orv::kSensorCount);
        late.sendTo(mLocalPort,
                    orv::encodeReply(1, orv::encodeThreshold(recordOf(stranger, 9)), 0));
        late.sendTo(mLocalPort, {});
        late.sendTo(mLocalPort, orv::encodeReply(2, LoopbackEcu::Frame{2, 14, 0}, 0));
        return orv::encodeReply(1, orv::encodeThreshold(recordOf(sensor, 4)), 0);
    });
    connectToPort(ecu.port());
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
        QVERIFY2(readsItsOwn(sensor, 4), mClient->lastError().c_str());
}

void TestFaultyControlLink::lateReplyDoesNotHideARefusal()
{
    LoopbackPeer late;
    LoopbackEcu ecu;
    ecu.setHandler([&](const orv::ControlRequest& request) {
        if (request.code != 1)
            return orv::encodeReply(request.code, LoopbackEcu::Frame{2, 14, 0}, 0);
        late.sendTo(mLocalPort, orv::encodeReply(1, orv::encodeThreshold(recordOf(1, 9)), 0));
        return orv::encodeReply(1, {}, 5);
    });
    connectToPort(ecu.port());
    QVERIFY(!mClient->writeThresholds(recordOf(2, 4), true));
    QCOMPARE(mClient->lastError(), std::string("ECU error (5)"));
}

// Before the requests and while they wait for their replies.
void TestFaultyControlLink::floodOfTheControlPort()
{
    connectTo({});
    QVERIFY(mClient->writeThresholds(recordOf(7, 2), true));
    std::thread flood([port = mLocalPort.load()] {
        LoopbackPeer peer;
        for (int i = 0; i < 20000; ++i)
            peer.sendTo(port, std::vector<std::uint8_t>(static_cast<std::size_t>(i % 100), 0x55));
    });
    int wrong = 0;
    for (int i = 0; i < 10; ++i) {
        SensorThreshold record;
        const bool isRead = mClient->readThresholds(7, record);
        wrong += isRead && record != recordOf(7, 2);
    }
    flood.join();
    QCOMPARE(wrong, 0);
    for (int i = 0; i < 10; ++i)
        QVERIFY2(readsItsOwn(7, 2), mClient->lastError().c_str());
}

QTEST_GUILESS_MAIN(TestFaultyControlLink)
#include "test_faulty_control_link.moc"
