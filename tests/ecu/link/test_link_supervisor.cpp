#include "tests/ecu/link/LinkFixture.h"

#include <QSignalSpy>
#include <QtTest>

#include <functional>

namespace {

constexpr int kTickMs = 11;

} // namespace

class TestLinkSupervisor : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { orv::registerMetaTypes(); }
    void init();
    void cleanup();

    void firstProbeComesSoonAfterTheStart();
    void silentEcuIsProbedEveryThreeSeconds();
    void answeringEcuIsFoundOnce();
    void firstContactComesOncePerRun();
    void ecuThatStopsAnsweringIsLostOnce();
    void neverFoundEcuIsNotLost();

    void captureHandsOnOneRecordOfEachKindATick();
    void liveRecordPutsTheJudgementOff();
    void captureOffStopsThePoll();
    void captureDropsOldMeasurementsAndKeepsFreespaces();
    void junkCostsNoTick();
    void recordsAloneMakeTheLinkConnected();
    void recordsWithoutCaptureAreASignOfLife();
    void junkWithoutCaptureIsNoSignOfLife();
    void judgementLeavesTheRecordsToThePoll();

    void unansweredProbesOfThePollAreASecondApart();
    void tickAfterAFailedProbeWorksOffWhatWaits();

    void lateTickWorksOffWhatWaitsInOrder();
    void tickThatIsAlittleLateHandsOnOneRecord();
    void littleDelaysAddUpToALateTick();
    void burstThatArrivesInTimeGoesOneATick();

    void pollWithoutAPauseWaitsForRecords_data();
    void pollWithoutAPauseWaitsForRecords();

    void pollWithAPauseWaitsForNothing();

    void changedConnectionIsJudgedAnew();
    void changedConnectionAnnouncesTheEcuAgain();
    void changedConnectionOfAStreamingEcuNeverLacksLiveData();
    void changedConnectionToASilentPortTellsTheLossWhileDataStream_data();
    void changedConnectionToASilentPortTellsTheLossWhileDataStream();

    void missedPortIsToldAtTheStartAtCaptureAndAfterAChange();
    void missedPortIsTriedAgainEveryThreeSeconds();
    void missedPortIsWarnedOfOnce();

private:
    LinkSupervisor& supervisor() { return *mFixture->supervisor; }
    LinkSupervisor::State state() { return supervisor().state(); }
    void startCapture();
    void stream(int ticks);
    int waitedBy(const std::function<void()>& action) const;
    QVector<int> words() const;

    std::unique_ptr<LinkFixture> mFixture;
    std::unique_ptr<QSignalSpy> mResults;
    std::unique_ptr<QSignalSpy> mPackages;
};

namespace {

constexpr auto kDisconnected = LinkSupervisor::State::Disconnected;
constexpr auto kOnline = LinkSupervisor::State::OnlineWithoutLiveData;
constexpr auto kConnected = LinkSupervisor::State::Connected;

} // namespace

void TestLinkSupervisor::init()
{
    mFixture = std::make_unique<LinkFixture>();
    mResults = std::make_unique<QSignalSpy>(&supervisor(), &LinkSupervisor::measurementReceived);
    mPackages = std::make_unique<QSignalSpy>(&supervisor(), &LinkSupervisor::freespaceReceived);
}

void TestLinkSupervisor::cleanup()
{
    mResults.reset();
    mPackages.reset();
    mFixture.reset();
}

// With an ECU that has answered, so that no probe comes between the records.
void TestLinkSupervisor::startCapture()
{
    mFixture->answer();
    supervisor().start();
    mFixture->pass(100);
    supervisor().setCapture(true);
}

// One result in each of so many ticks.
void TestLinkSupervisor::stream(int ticks)
{
    for (int tick = 0; tick < ticks; ++tick) {
        mFixture->streamMeasurement(1);
        mFixture->pass(kTickMs);
    }
}

// In milliseconds.
int TestLinkSupervisor::waitedBy(const std::function<void()>& action) const
{
    const auto before = mFixture->clock.now();
    action();
    return static_cast<int>((mFixture->clock.now() - before).count());
}

QVector<int> TestLinkSupervisor::words() const
{
    QVector<int> words;
    for (const QVariantList& arguments : *mResults)
        words << static_cast<int>(arguments[0].value<orv::OrvMeasurementResult>().measurementWord);
    return words;
}

void TestLinkSupervisor::firstProbeComesSoonAfterTheStart()
{
    supervisor().start();
    mFixture->pass(99);
    QCOMPARE(mFixture->probes(), 0);
    mFixture->pass(1);
    QCOMPARE(mFixture->probes(), 1);
}

void TestLinkSupervisor::silentEcuIsProbedEveryThreeSeconds()
{
    supervisor().start();
    // A probe of a silent ECU takes its time-out and a little more.
    const int untilProbedMs = waitedBy([this] { mFixture->pass(100); });
    mFixture->pass(3000 - untilProbedMs - 1);
    QCOMPARE(mFixture->probes(), 1);
    const int probedMs = waitedBy([this] { mFixture->pass(1); });
    QCOMPARE(mFixture->probes(), 2);
    mFixture->pass(3000 - probedMs);
    QCOMPARE(mFixture->probes(), 2);
    mFixture->pass(1);
    QCOMPARE(mFixture->probes(), 3);
    QCOMPARE(state(), kDisconnected);
}

void TestLinkSupervisor::answeringEcuIsFoundOnce()
{
    mFixture->answer();
    QSignalSpy found(&supervisor(), &LinkSupervisor::found);
    supervisor().start();
    mFixture->pass(100);
    QCOMPARE(found.count(), 1);
    QCOMPARE(found[0][0].value<orv::FirmwareVersion>().text(), std::string("2.14.0"));
    QCOMPARE(state(), kOnline);
    mFixture->pass(3000);
    QCOMPARE(mFixture->probes(), 2);
    QCOMPARE(found.count(), 1);
}

void TestLinkSupervisor::firstContactComesOncePerRun()
{
    QSignalSpy contacts(&supervisor(), &LinkSupervisor::firstContact);
    QSignalSpy found(&supervisor(), &LinkSupervisor::found);
    supervisor().start();
    mFixture->pass(100);
    QCOMPARE(contacts.count(), 0);
    mFixture->answer();
    mFixture->pass(3000);
    QCOMPARE(contacts.count(), 1);
    mFixture->ecu.beSilent();
    mFixture->pass(3000);
    mFixture->answer();
    mFixture->pass(3000);
    QCOMPARE(found.count(), 2);
    QCOMPARE(contacts.count(), 1);
}

void TestLinkSupervisor::ecuThatStopsAnsweringIsLostOnce()
{
    mFixture->answer();
    QSignalSpy lost(&supervisor(), &LinkSupervisor::lost);
    supervisor().start();
    mFixture->pass(100);
    mFixture->ecu.beSilent();
    mFixture->pass(3000);
    QCOMPARE(lost.count(), 1);
    QCOMPARE(state(), kDisconnected);
    mFixture->pass(3000);
    QCOMPARE(lost.count(), 1);
}

void TestLinkSupervisor::neverFoundEcuIsNotLost()
{
    QSignalSpy lost(&supervisor(), &LinkSupervisor::lost);
    supervisor().start();
    mFixture->pass(100);
    mFixture->pass(3000);
    QCOMPARE(lost.count(), 0);
}

void TestLinkSupervisor::captureHandsOnOneRecordOfEachKindATick()
{
    startCapture();
    for (std::uint8_t word = 1; word <= 3; ++word)
        mFixture->streamMeasurement(word);
    mFixture->streamFreespace();
    mFixture->streamFreespace();
    mFixture->pass(kTickMs - 1);
    QCOMPARE(mResults->count(), 0);
    mFixture->pass(1);
    QCOMPARE(words(), QVector<int>{1});
    QCOMPARE(mPackages->count(), 1);
    mFixture->pass(kTickMs);
    QCOMPARE(words(), (QVector<int>{1, 2}));
    QCOMPARE(mPackages->count(), 2);
    mFixture->pass(kTickMs);
    QCOMPARE(words(), (QVector<int>{1, 2, 3}));
    QCOMPARE(mPackages->count(), 2);
    QCOMPARE(state(), kConnected);
}

void TestLinkSupervisor::liveRecordPutsTheJudgementOff()
{
    startCapture();
    const int probes = mFixture->probes();
    mFixture->pass(2000);
    mFixture->streamFreespace();
    mFixture->pass(kTickMs);
    QCOMPARE(mPackages->count(), 1);
    mFixture->pass(2999);
    QCOMPARE(mFixture->probes(), probes);
    QCOMPARE(state(), kConnected);
    mFixture->pass(1);
    QCOMPARE(mFixture->probes(), probes + 1);
    QCOMPARE(state(), kOnline);
}

void TestLinkSupervisor::captureOffStopsThePoll()
{
    startCapture();
    supervisor().setCapture(false);
    mFixture->streamMeasurement(1);
    for (int tick = 0; tick < 5; ++tick)
        mFixture->pass(kTickMs);
    QCOMPARE(mResults->count(), 0);
}

void TestLinkSupervisor::captureDropsOldMeasurementsAndKeepsFreespaces()
{
    mFixture->streamMeasurement(1);
    mFixture->streamFreespace();
    supervisor().setCapture(true);
    mFixture->streamMeasurement(2);
    mFixture->pass(kTickMs);
    QCOMPARE(words(), QVector<int>{2});
    QCOMPARE(mPackages->count(), 1);
}

void TestLinkSupervisor::junkCostsNoTick()
{
    startCapture();
    for (std::uint8_t word = 1; word <= 2; ++word) {
        mFixture->ecu.stream(mFixture->receivePort, {1, 2, 3});
        mFixture->ecu.stream(mFixture->receivePort, {});
        mFixture->streamMeasurement(word);
    }
    mFixture->pass(kTickMs);
    QCOMPARE(words(), QVector<int>{1});
    mFixture->pass(kTickMs);
    QCOMPARE(words(), (QVector<int>{1, 2}));
}

void TestLinkSupervisor::recordsAloneMakeTheLinkConnected()
{
    QSignalSpy found(&supervisor(), &LinkSupervisor::found);
    supervisor().start();
    mFixture->pass(100);
    QCOMPARE(state(), kDisconnected);
    supervisor().setCapture(true);
    mFixture->streamFreespace();
    mFixture->pass(kTickMs);
    QCOMPARE(state(), kConnected);
    QCOMPARE(found.count(), 0);
}

void TestLinkSupervisor::recordsWithoutCaptureAreASignOfLife()
{
    QSignalSpy found(&supervisor(), &LinkSupervisor::found);
    mFixture->answer();
    supervisor().start();
    mFixture->streamMeasurement(1);
    mFixture->streamMeasurement(2);
    mFixture->pass(100);
    QCOMPARE(state(), kConnected);
    QCOMPARE(found.count(), 1);
    mFixture->streamFreespace();
    mFixture->pass(3000);
    QCOMPARE(state(), kConnected);
    QCOMPARE(mFixture->probes(), 1);
    QCOMPARE(mResults->count(), 0);
    mFixture->pass(3000);
    QCOMPARE(state(), kOnline);
}

void TestLinkSupervisor::junkWithoutCaptureIsNoSignOfLife()
{
    supervisor().start();
    for (int i = 0; i < 300; ++i)
        mFixture->ecu.stream(mFixture->receivePort, {1, 2, 3});
    mFixture->pass(100);
    QCOMPARE(state(), kDisconnected);
    for (int i = 0; i < 20; ++i)
        mFixture->ecu.stream(mFixture->receivePort, {1, 2, 3});
    mFixture->streamMeasurement(1);
    mFixture->pass(3000);
    QCOMPARE(state(), kConnected);
}

void TestLinkSupervisor::judgementLeavesTheRecordsToThePoll()
{
    startCapture();
    mFixture->streamMeasurement(1);
    supervisor().judgeSilence();
    QCOMPARE(state(), kOnline);
    mFixture->pass(kTickMs);
    QCOMPARE(words(), QVector<int>{1});
}

void TestLinkSupervisor::unansweredProbesOfThePollAreASecondApart()
{
    supervisor().setCapture(true);
    const auto tickWithARecord = [this](int milliseconds) {
        mFixture->streamMeasurement(1);
        mFixture->pass(milliseconds);
    };
    tickWithARecord(kTickMs);
    QCOMPARE(mFixture->probes(), 1);
    for (int tick = 0; tick < 90; ++tick)
        tickWithARecord(kTickMs);
    QCOMPARE(mFixture->probes(), 1);
    tickWithARecord(kTickMs);
    QCOMPARE(mFixture->probes(), 2);
    QCOMPARE(mResults->count(), 92);
}

void TestLinkSupervisor::tickAfterAFailedProbeWorksOffWhatWaits()
{
    supervisor().setCapture(true);
    mFixture->streamMeasurement(1);
    mFixture->pass(kTickMs);
    QCOMPARE(mFixture->probes(), 1);
    for (std::uint8_t word = 2; word <= 11; ++word)
        mFixture->streamMeasurement(word);
    mFixture->pass(kTickMs);
    QCOMPARE(mResults->count(), 11);
}

void TestLinkSupervisor::lateTickWorksOffWhatWaitsInOrder()
{
    startCapture();
    for (std::uint8_t word = 1; word <= 40; ++word) {
        mFixture->streamMeasurement(word);
        mFixture->streamFreespace();
    }
    mFixture->pass(5000);
    QCOMPARE(mResults->count(), 40);
    QCOMPARE(mPackages->count(), 40);
    for (int i = 0; i < 40; ++i)
        QCOMPARE(words()[i], i + 1);
    // The next one is in time again.
    mFixture->streamMeasurement(41);
    mFixture->streamMeasurement(42);
    mFixture->pass(kTickMs);
    QCOMPARE(mResults->count(), 41);
}

void TestLinkSupervisor::tickThatIsAlittleLateHandsOnOneRecord()
{
    startCapture();
    mFixture->streamMeasurement(1);
    mFixture->streamMeasurement(2);
    mFixture->pass(kTickMs + 30);
    QCOMPARE(words(), QVector<int>{1});
}

void TestLinkSupervisor::littleDelaysAddUpToALateTick()
{
    startCapture();
    for (std::uint8_t word = 1; word <= 10; ++word)
        mFixture->streamMeasurement(word);
    mFixture->pass(2 * kTickMs);
    mFixture->pass(2 * kTickMs);
    QCOMPARE(mResults->count(), 2);
    mFixture->pass(2 * kTickMs);
    QCOMPARE(mResults->count(), 10);
}

void TestLinkSupervisor::burstThatArrivesInTimeGoesOneATick()
{
    startCapture();
    for (std::uint8_t word = 1; word <= 50; ++word)
        mFixture->streamMeasurement(word);
    for (int tick = 1; tick <= 50; ++tick) {
        mFixture->pass(kTickMs);
        QCOMPARE(mResults->count(), tick);
    }
}

void TestLinkSupervisor::pollWithoutAPauseWaitsForRecords_data()
{
    QTest::addColumn<bool>("portsAreTaken");
    QTest::newRow("open ports") << false;
    QTest::newRow("closed ports") << true;
}

// Without waiting it would take a whole core, and with a long wait the window would stand still.
void TestLinkSupervisor::pollWithoutAPauseWaitsForRecords()
{
    QFETCH(bool, portsAreTaken);
    LoopbackPeer first;
    LoopbackPeer second;
    if (portsAreTaken) {
        mFixture->receivePort = first.port();
        mFixture->freespacePort = second.port();
        mFixture->connectLink();
        QCOMPARE(mFixture->link->portProblems().size(), std::size_t{2});
    }
    mFixture->answer();
    supervisor().start();
    mFixture->pass(100); // finds the ECU, so that no probe comes between
    supervisor().startPolling();
    QCOMPARE(waitedBy([this] { supervisor().poll(); }), 10);
    if (portsAreTaken)
        return;
    // What the first stream leaves of the wait is the second one's.
    mFixture->streamMeasurement(1);
    QCOMPARE(waitedBy([this] { supervisor().poll(); }), 0);
    QCOMPARE(words(), QVector<int>{1});
    mFixture->streamFreespace();
    QCOMPARE(waitedBy([this] { supervisor().poll(); }), 10);
    QCOMPARE(mPackages->count(), 1);
}

// The window has its events to handle until the next tick.
void TestLinkSupervisor::pollWithAPauseWaitsForNothing()
{
    startCapture();
    QCOMPARE(waitedBy([this] { supervisor().poll(); }), 0);
    mFixture->streamMeasurement(1);
    QCOMPARE(waitedBy([this] { supervisor().poll(); }), 0);
    mFixture->streamFreespace();
    QCOMPARE(waitedBy([this] { supervisor().poll(); }), 0);
    QCOMPARE(mResults->count(), 1);
    QCOMPARE(mPackages->count(), 1);
}

void TestLinkSupervisor::changedConnectionIsJudgedAnew()
{
    startCapture();
    mFixture->streamMeasurement(1);
    mFixture->pass(kTickMs);
    QCOMPARE(state(), kConnected);
    const int probes = mFixture->probes();
    supervisor().reconnect(mFixture->network());
    QCOMPARE(state(), kDisconnected);
    mFixture->streamMeasurement(2);
    mFixture->pass(kTickMs);
    QCOMPARE(mFixture->probes(), probes);
    mFixture->pass(100 - kTickMs);
    QCOMPARE(mFixture->probes(), probes + 1);
}

void TestLinkSupervisor::changedConnectionAnnouncesTheEcuAgain()
{
    startCapture();
    QSignalSpy found(&supervisor(), &LinkSupervisor::found);
    QSignalSpy contacts(&supervisor(), &LinkSupervisor::firstContact);
    QSignalSpy lost(&supervisor(), &LinkSupervisor::lost);
    supervisor().reconnect(mFixture->network());
    mFixture->pass(100);
    QCOMPARE(found.count(), 1);
    QCOMPARE(contacts.count(), 0);
    QCOMPARE(lost.count(), 0);
    QCOMPARE(state(), kOnline);
}

void TestLinkSupervisor::changedConnectionOfAStreamingEcuNeverLacksLiveData()
{
    startCapture();
    stream(1);
    QSignalSpy changes(&supervisor(), &LinkSupervisor::stateChanged);
    supervisor().reconnect(mFixture->network());
    stream(200 / kTickMs);
    QCOMPARE(changes.count(), 2); // not connected, and connected again
    QCOMPARE(state(), kConnected);
    mFixture->pass(3000);
    QCOMPARE(state(), kOnline);
}

void TestLinkSupervisor::changedConnectionToASilentPortTellsTheLossWhileDataStream_data()
{
    QTest::addColumn<bool>("answeredBefore");
    QTest::newRow("from one that answers") << true;
    QTest::newRow("from another silent one") << false;
}

void TestLinkSupervisor::changedConnectionToASilentPortTellsTheLossWhileDataStream()
{
    QFETCH(bool, answeredBefore);
    if (answeredBefore)
        startCapture();
    else
        supervisor().setCapture(true);
    mFixture->ecu.beSilent();
    stream(1);
    QSignalSpy lost(&supervisor(), &LinkSupervisor::lost);
    supervisor().reconnect(mFixture->network());
    stream(3000 / kTickMs);
    QCOMPARE(lost.count(), 1);
    QCOMPARE(state(), kConnected); // data come
}

void TestLinkSupervisor::missedPortIsToldAtTheStartAtCaptureAndAfterAChange()
{
    LoopbackPeer holder;
    mFixture->receivePort = holder.port();
    mFixture->connectLink();
    QSignalSpy missed(&supervisor(), &LinkSupervisor::portsMissed);
    supervisor().start();
    QCOMPARE(missed.count(), 1);
    const PortProblem problem{holder.port(), "Address already in use"};
    QCOMPARE(supervisor().portProblems(), std::vector{problem});
    supervisor().setCapture(true);
    QCOMPARE(missed.count(), 2);
    supervisor().reconnect(mFixture->network());
    QCOMPARE(missed.count(), 3);
    mFixture->receivePort = freeUdpPort();
    supervisor().reconnect(mFixture->network());
    QCOMPARE(missed.count(), 3);
    QVERIFY(supervisor().portProblems().empty());
}

void TestLinkSupervisor::missedPortIsTriedAgainEveryThreeSeconds()
{
    auto holder = std::make_unique<LoopbackPeer>();
    mFixture->freespacePort = holder->port();
    mFixture->connectLink();
    QSignalSpy changed(&supervisor(), &LinkSupervisor::portProblemsChanged);
    QSignalSpy packages(&supervisor(), &LinkSupervisor::freespaceReceived);
    supervisor().start();
    supervisor().setCapture(true);
    QCOMPARE(changed.count(), 1);
    // The other stream's records do not put it off.
    for (int tick = 0; tick < 3000 / kTickMs; ++tick) {
        mFixture->streamMeasurement(1);
        mFixture->pass(kTickMs);
    }
    holder.reset();
    mFixture->pass(3000);
    QCOMPARE(changed.count(), 2);
    QVERIFY(supervisor().portProblems().empty());
    mFixture->streamFreespace();
    mFixture->pass(kTickMs);
    QCOMPARE(packages.count(), 1);
}

void TestLinkSupervisor::missedPortIsWarnedOfOnce()
{
    LoopbackPeer holder;
    mFixture->receivePort = holder.port();
    mFixture->connectLink();
    const QByteArray warning =
        "Can't receive on port " + QByteArray::number(holder.port()) + ": Address already in use";
    QTest::ignoreMessage(QtWarningMsg, warning.constData());
    supervisor().start();
    static int warnings;
    warnings = 0;
    const auto previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString&) { ++warnings; });
    supervisor().setCapture(true);
    mFixture->pass(3000);
    mFixture->pass(3000);
    qInstallMessageHandler(previous);
    QCOMPARE(warnings, 0);
}

QTEST_GUILESS_MAIN(TestLinkSupervisor)
#include "test_link_supervisor.moc"
