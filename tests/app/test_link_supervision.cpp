#include "app/OrvgStatusWidget.h"
#include "app/TarvioWindow.h"
#include "orv_decoder/metatypes.h"
#include "tests/support/LoopbackEcu.h"
#include "tests/support/TemporaryProfile.h"

#include <QAction>
#include <QDialog>
#include <QSignalSpy>
#include <QStatusBar>
#include <QtTest>

#include <algorithm>

/// The window against an ECU on loopback. The status timer's slot is called instead of waiting for
/// its three seconds.
class TestLinkSupervision : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { orv::registerMetaTypes(); }
    void init();
    void cleanup();
    void firstProbeRunsByItself();
    void silentEcuShowsDisconnectedWithoutAMessage();
    void answeringEcuWithoutLiveDataIsHalfActive();
    void lostConnectionStaysInTheStatusBar();
    void reconnectionTellsTheVersionAgainButReadsNothing();
    void liveRecordMakesTheWindowAskForTheVersion();
    void captureOffCountsRecordsAsSignOfLifeOnly();
    void captureHandsEachRecordToTheViews();
    void captureDiscardsWhatWasBuffered();
    void captureKeepsTheFreespacePackagesThatWereBuffered();
    void captureLeavesTheRecordsToThePoll();
    void captureOffStopsThePolling();
    void liveDataAloneLightsTheLed();
    void badDatagramDoesNotEndTheStream();
    void recordingKeepsPollingAfterItsDialogIsClosed();

private:
    TarvioWindow& window() { return *mWindow; }
    OrvgStatusWidget& led()
    {
        return *mWindow->findChild<QStatusBar*>()->findChild<OrvgStatusWidget*>();
    }
    QString message() { return mWindow->statusBar()->currentMessage(); }
    void setCapture(bool on) { mWindow->findChild<QAction*>("actionCapture")->setChecked(on); }
    // It would else come between the records of a test on a slow machine.
    void awaitFirstProbe() { QTRY_VERIFY(requestsWithCode(2) > 0); }
    void answer();
    int requestsWithCode(std::uint8_t code) const;
    void streamMeasurement(std::uint8_t word);

    std::unique_ptr<TemporaryProfile> mProfile;
    std::unique_ptr<LoopbackEcu> mEcu;
    std::unique_ptr<TarvioWindow> mWindow;
    std::uint16_t mReceivePort = 0;
    std::uint16_t mFreespacePort = 0;
};

void TestLinkSupervision::init()
{
    mEcu = std::make_unique<LoopbackEcu>();
    mReceivePort = freeUdpPort();
    mFreespacePort = freeUdpPort();
    mProfile = std::make_unique<TemporaryProfile>();
    mProfile->setNetwork(mEcu->port(), mReceivePort, mFreespacePort);
    mWindow = std::make_unique<TarvioWindow>();
}

void TestLinkSupervision::cleanup()
{
    mWindow.reset();
    mEcu.reset();
}

void TestLinkSupervision::answer()
{
    mEcu->setHandler([](const orv::ControlRequest& request) {
        const bool isVersion = request.code == 2;
        return orv::encodeReply(request.code,
                                isVersion ? LoopbackEcu::Frame{2, 14, 0} : LoopbackEcu::Frame{},
                                isVersion ? 0 : 7);
    });
}

int TestLinkSupervision::requestsWithCode(std::uint8_t code) const
{
    const auto requests = mEcu->requests();
    return static_cast<int>(std::count_if(requests.begin(), requests.end(),
                                          [code](const auto& each) { return each.code == code; }));
}

void TestLinkSupervision::streamMeasurement(std::uint8_t word)
{
    mEcu->stream(mReceivePort, {word, 0, 0, 0, 1, 0, 2, 0, 0});
}

void TestLinkSupervision::firstProbeRunsByItself()
{
    answer();
    QTRY_COMPARE(led().toolTip(), QString("ECU online, but not sending live data."));
}

void TestLinkSupervision::silentEcuShowsDisconnectedWithoutAMessage()
{
    window().onStatusTimeout();
    QCOMPARE(led().toolTip(), QString("ECU disconnected."));
    QCOMPARE(message(), QString());
    window().onStatusTimeout();
    QCOMPARE(requestsWithCode(2), 2);
}

void TestLinkSupervision::answeringEcuWithoutLiveDataIsHalfActive()
{
    answer();
    window().onStatusTimeout();
    QCOMPARE(led().toolTip(), QString("ECU online, but not sending live data."));
    QCOMPARE(led().firmwareVersion(), QString("2.14.0"));
    QCOMPARE(message(), QString("ECU (re)connected. Firmware version: 2.14.0"));
}

void TestLinkSupervision::lostConnectionStaysInTheStatusBar()
{
    answer();
    window().onStatusTimeout();
    mEcu->beSilent();
    window().onStatusTimeout();
    QCOMPARE(led().toolTip(), QString("ECU disconnected."));
    QCOMPARE(message(), QString("Connection to ECU lost"));
    window().onStatusTimeout();
    QCOMPARE(message(), QString("Connection to ECU lost"));
}

void TestLinkSupervision::reconnectionTellsTheVersionAgainButReadsNothing()
{
    answer();
    window().onStatusTimeout();
    const int automaticReads = requestsWithCode(1);
    QVERIFY(automaticReads > 0);
    QVERIFY(!QApplication::activeModalWidget());
    mEcu->beSilent();
    window().onStatusTimeout();
    answer();
    window().onStatusTimeout();
    QCOMPARE(message(), QString("ECU (re)connected. Firmware version: 2.14.0"));
    QCOMPARE(requestsWithCode(1), automaticReads);
}

void TestLinkSupervision::liveRecordMakesTheWindowAskForTheVersion()
{
    awaitFirstProbe();
    answer();
    setCapture(true);
    streamMeasurement(1);
    QTRY_COMPARE(message(), QString("ECU (re)connected. Firmware version: 2.14.0"));
    QCOMPARE(led().toolTip(), QString("ECU connected."));
    const int probes = requestsWithCode(2);
    QSignalSpy results(&window(), &TarvioWindow::measResultReceived);
    streamMeasurement(2);
    QTRY_COMPARE(results.count(), 1);
    QCOMPARE(requestsWithCode(2), probes);
}

void TestLinkSupervision::captureOffCountsRecordsAsSignOfLifeOnly()
{
    answer();
    QSignalSpy results(&window(), &TarvioWindow::measResultReceived);
    streamMeasurement(1);
    streamMeasurement(2);
    window().onStatusTimeout();
    QCOMPARE(led().toolTip(), QString("ECU connected."));
    QCOMPARE(message(), QString("ECU (re)connected. Firmware version: 2.14.0"));
    QCOMPARE(results.count(), 0);
}

void TestLinkSupervision::captureHandsEachRecordToTheViews()
{
    awaitFirstProbe();
    answer();
    QSignalSpy results(&window(), &TarvioWindow::measResultReceived);
    QSignalSpy packages(&window(), &TarvioWindow::freespaceReceived);
    setCapture(true);
    streamMeasurement(1);
    streamMeasurement(2);
    mEcu->stream(mFreespacePort, {0});
    QTRY_COMPARE(results.count(), 2);
    QTRY_COMPARE(packages.count(), 1);
    const auto first = results.at(0).at(0).value<orv::OrvMeasurementResult>();
    const auto second = results.at(1).at(0).value<orv::OrvMeasurementResult>();
    QCOMPARE(first.measurementWord, 1U);
    QCOMPARE(second.measurementWord, 2U);
    QCOMPARE(led().toolTip(), QString("ECU connected."));
}

void TestLinkSupervision::captureDiscardsWhatWasBuffered()
{
    streamMeasurement(1);
    QSignalSpy results(&window(), &TarvioWindow::measResultReceived);
    setCapture(true);
    streamMeasurement(2);
    QTRY_COMPARE(results.count(), 1);
    QCOMPARE(results.at(0).at(0).value<orv::OrvMeasurementResult>().measurementWord, 2U);
}

void TestLinkSupervision::captureKeepsTheFreespacePackagesThatWereBuffered()
{
    mEcu->stream(mFreespacePort, {0});
    QSignalSpy packages(&window(), &TarvioWindow::freespaceReceived);
    setCapture(true);
    QTRY_COMPARE(packages.count(), 1);
}

void TestLinkSupervision::captureLeavesTheRecordsToThePoll()
{
    QSignalSpy results(&window(), &TarvioWindow::measResultReceived);
    setCapture(true);
    streamMeasurement(1);
    window().onStatusTimeout();
    QCOMPARE(led().toolTip(), QString("ECU disconnected."));
    QTRY_COMPARE(results.count(), 1);
}

void TestLinkSupervision::captureOffStopsThePolling()
{
    QSignalSpy results(&window(), &TarvioWindow::measResultReceived);
    setCapture(true);
    streamMeasurement(1);
    QTRY_COMPARE(results.count(), 1);
    setCapture(false);
    streamMeasurement(2);
    window().onStatusTimeout();
    QCOMPARE(results.count(), 1);
}

void TestLinkSupervision::liveDataAloneLightsTheLed()
{
    awaitFirstProbe();
    QSignalSpy results(&window(), &TarvioWindow::measResultReceived);
    setCapture(true);
    streamMeasurement(1);
    QTRY_COMPARE(results.count(), 1);
    QTRY_COMPARE(led().toolTip(), QString("ECU connected."));
    QCOMPARE(message(), QString());
}

void TestLinkSupervision::badDatagramDoesNotEndTheStream()
{
    QSignalSpy results(&window(), &TarvioWindow::measResultReceived);
    setCapture(true);
    mEcu->stream(mReceivePort, {1, 2, 3});
    streamMeasurement(9);
    QTRY_COMPARE(results.count(), 1);
    QCOMPARE(results.at(0).at(0).value<orv::OrvMeasurementResult>().measurementWord, 9U);
}

void TestLinkSupervision::recordingKeepsPollingAfterItsDialogIsClosed()
{
    QTimer::singleShot(0, &window(),
                       [] { qobject_cast<QDialog*>(QApplication::activeModalWidget())->reject(); });
    window().onEnvelopCurveRecording();
    QSignalSpy results(&window(), &TarvioWindow::measResultReceived);
    streamMeasurement(1);
    QTRY_COMPARE(results.count(), 1);
    QVERIFY(!window().findChild<QAction*>("actionCapture")->isChecked());
    setCapture(true);
    setCapture(false);
    streamMeasurement(2);
    window().onStatusTimeout();
    QCOMPARE(results.count(), 1);
}

QTEST_MAIN(TestLinkSupervision)
#include "test_link_supervision.moc"
