#include "app/OrvgStatusWidget.h"
#include "app/TarvioWindow.h"
#include "orv_decoder/metatypes.h"
#include "tests/support/LoopbackEcu.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/TestClock.h"

#include <QAction>
#include <QDialog>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTableView>
#include <QTableWidget>
#include <QToolButton>
#include <QtTest>

#include <algorithm>

namespace {

using orv::ControlRequest;

constexpr int kTickMs = 11;

// What the simulated start-up reads, as far as a reply of any size will do.
LoopbackEcu::Frame payloadFor(const ControlRequest& request)
{
    const bool isRead = !request.payload.empty() && request.payload[0] == 1;
    switch (request.code) {
    case 0:
        return isRead ? LoopbackEcu::Frame{0} : LoopbackEcu::Frame{};
    case 1: {
        LoopbackEcu::Frame record(14);
        record[0] = request.payload[1];
        return isRead ? record : LoopbackEcu::Frame{};
    }
    case 2:
        return {2, 14, 0};
    case 4:
        return LoopbackEcu::Frame(isRead ? 144 : 0);
    default:
        return {};
    }
}

// One echo of sensor 1 at 5.12 ms.
const LoopbackEcu::Frame kMeasurement = {1, 0, 0, 0, 1, 0, 2, 0, 1, 0, 1, 100, 0, 7, 0};

// Sensor 1 with an obstacle at 515 mm in its left third.
LoopbackEcu::Frame freespace()
{
    LoopbackEcu::Frame datagram(1 + 40 + 10);
    datagram[0] = 1;
    datagram[40] = 6; // middle and right are absent
    datagram[41] = 3;
    datagram[42] = 2;
    return datagram;
}

} // namespace

/// What the window shows of its link, with the time in the hand of the test.
class TestWindowLink : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { orv::registerMetaTypes(); }
    void init();
    void cleanup();

    void silentEcuShowsDisconnectedWithoutAMessage();
    void foundEcuIsToldForFiveSeconds();
    void lostEcuIsToldUntilSomethingElseIs();
    void openMenuDoesNotWipeOutTheMessage();
    void firstContactReadsEverythingOnceWithoutABox();
    void missedPortIsToldWhileItLasts();
    void capturedRecordsReachEveryView();
    void captureOffShowsNothing();
    void recordingIsFedByItsOwnPoll();
    void readAllIsToldForTenSeconds();
    void transmitAllIsToldForTenSeconds();
    void editModeOfTheFreespacesRaisesThePositions();
    void slotsOfTheWindowDoTheWork();

private:
    void openWindow();
    void pass(int milliseconds);
    void answer();
    void stream(const LoopbackEcu::Frame& datagram, std::uint16_t port);
    void setCapture(bool on) { child<QAction>("actionCapture")->setChecked(on); }
    OrvgStatusWidget& led() { return *mWindow->findChild<OrvgStatusWidget*>(); }
    QString message() { return mWindow->statusBar()->currentMessage(); }
    int requestsWithCode(std::uint8_t code) const;
    QString distanceOfSensor1() { return child<QTableWidget>("mTable")->item(0, 0)->text(); }
    QString echoOfSensor1() { return child<QTableWidget>("echoTable")->item(0, 0)->text(); }

    template<typename Child>
    Child* child(const char* name)
    {
        return mWindow->findChild<Child*>(QString::fromLatin1(name));
    }

    std::unique_ptr<TemporaryProfile> mProfile;
    std::unique_ptr<LoopbackEcu> mEcu;
    std::unique_ptr<TarvioWindow> mWindow;
    std::unique_ptr<TestClock> mClock;
    std::uint16_t mReceivePort = 0;
    std::uint16_t mFreespacePort = 0;
};

void TestWindowLink::init()
{
    mEcu = std::make_unique<LoopbackEcu>(LoopbackEcu::Serving::OnDemand);
    mReceivePort = freeUdpPort();
    mFreespacePort = freeUdpPort();
    mProfile = std::make_unique<TemporaryProfile>();
    mProfile->setNetwork(mEcu->port(), mReceivePort, mFreespacePort);
}

void TestWindowLink::cleanup()
{
    mWindow.reset();
    mClock.reset();
    mEcu.reset();
}

void TestWindowLink::openWindow()
{
    mClock = std::make_unique<TestClock>();
    mClock->whileReceiving([this] { mEcu->serveWaiting(); });
    mWindow = std::make_unique<TarvioWindow>();
    mWindow->show();
    pass(0);
}

void TestWindowLink::pass(int milliseconds)
{
    mClock->advance(std::chrono::milliseconds(milliseconds));
    QCoreApplication::processEvents();
}

void TestWindowLink::answer()
{
    mEcu->setHandler([](const ControlRequest& request) {
        return orv::encodeReply(request.code, payloadFor(request), 0);
    });
}

void TestWindowLink::stream(const LoopbackEcu::Frame& datagram, std::uint16_t port)
{
    mEcu->stream(port, datagram);
    pass(kTickMs);
}

int TestWindowLink::requestsWithCode(std::uint8_t code) const
{
    return static_cast<int>(std::ranges::count(mEcu->requests(), code, &ControlRequest::code));
}

void TestWindowLink::silentEcuShowsDisconnectedWithoutAMessage()
{
    openWindow();
    pass(100);
    QCOMPARE(requestsWithCode(2), 1);
    QCOMPARE(led().toolTip(), QString("ECU disconnected."));
    QCOMPARE(message(), QString());
    QVERIFY(!QApplication::activeModalWidget());
    pass(3000);
    QCOMPARE(requestsWithCode(2), 2);
    QCOMPARE(message(), QString());
}

void TestWindowLink::foundEcuIsToldForFiveSeconds()
{
    answer();
    openWindow();
    pass(100);
    QCOMPARE(message(), QString("ECU (re)connected. Firmware version: 2.14.0"));
    QCOMPARE(led().firmwareVersion(), QString("2.14.0"));
    QCOMPARE(led().toolTip(), QString("ECU online, but not sending live data."));
    pass(4500);
    QCOMPARE(message(), QString("ECU (re)connected. Firmware version: 2.14.0"));
    pass(1000);
    QCOMPARE(message(), QString());
}

void TestWindowLink::lostEcuIsToldUntilSomethingElseIs()
{
    answer();
    openWindow();
    pass(100);
    mEcu->beSilent();
    pass(3000);
    QCOMPARE(led().toolTip(), QString("ECU disconnected."));
    for (int minute = 0; minute < 3; ++minute) {
        QCOMPARE(message(), QString("Connection to ECU lost"));
        pass(60000);
    }
    answer();
    pass(3000);
    QCOMPARE(message(), QString("ECU (re)connected. Firmware version: 2.14.0"));
}

void TestWindowLink::openMenuDoesNotWipeOutTheMessage()
{
    answer();
    openWindow();
    pass(100);
    mEcu->beSilent();
    pass(3000);
    QMenu* menu = mWindow->menuBar()->actions().first()->menu();
    QTest::keyClick(mWindow.get(), Qt::Key_L, Qt::AltModifier);
    QVERIFY(menu->isVisible());
    QTest::keyClick(menu, Qt::Key_Down);
    QCOMPARE(message(), QString("Connection to ECU lost"));
    QTest::keyClick(menu, Qt::Key_Escape);
    QCOMPARE(message(), QString("Connection to ECU lost"));
}

void TestWindowLink::firstContactReadsEverythingOnceWithoutABox()
{
    answer();
    const MessageBoxWatcher watcher;
    openWindow();
    pass(100);
    QCOMPARE(requestsWithCode(1), 12);
    QCOMPARE(requestsWithCode(0), 1);
    QCOMPARE(requestsWithCode(4), 1);
    mEcu->beSilent();
    pass(3000);
    answer();
    pass(3000);
    QCOMPARE(message(), QString("ECU (re)connected. Firmware version: 2.14.0"));
    QCOMPARE(requestsWithCode(1), 12);
    QVERIFY(watcher.boxes().isEmpty());
}

void TestWindowLink::missedPortIsToldWhileItLasts()
{
    auto holder = std::make_unique<LoopbackPeer>();
    mProfile->setNetwork(mEcu->port(), holder->port(), mFreespacePort);
    const QString trouble =
        QString("Can't receive on port %1: Address already in use").arg(holder->port());
    QTest::ignoreMessage(QtWarningMsg, qPrintable(trouble));
    openWindow();
    QCOMPARE(message(), trouble);
    QCOMPARE(led().toolTip(), "ECU disconnected.\n" + trouble);
    answer();
    pass(100);
    QCOMPARE(message(), QString("ECU (re)connected. Firmware version: 2.14.0"));
    QCOMPARE(led().toolTip(), "ECU online, but not sending live data.\n" + trouble);
    pass(5500);
    QCOMPARE(message(), trouble);
    mWindow->statusBar()->showMessage("else");
    setCapture(true);
    QCOMPARE(message(), trouble);
    holder.reset();
    pass(3000);
    QCOMPARE(message(), QString());
    QCOMPARE(led().toolTip(), QString("ECU online, but not sending live data."));
}

void TestWindowLink::capturedRecordsReachEveryView()
{
    answer();
    openWindow();
    pass(100);
    QSignalSpy results(mWindow.get(), &TarvioWindow::measResultReceived);
    QSignalSpy packages(mWindow.get(), &TarvioWindow::freespaceReceived);
    auto* plot = mWindow->findChild<QWidget*>("mPlot");
    child<QTableView>("mTableView")->selectRow(0);
    const QImage emptyPlot = plot->grab().toImage();
    setCapture(true);
    stream(kMeasurement, mReceivePort);
    QCOMPARE(results.count(), 1);
    QCOMPARE(echoOfSensor1(), QString("5.12"));
    QVERIFY(plot->grab().toImage() != emptyPlot);
    stream(freespace(), mFreespacePort);
    QCOMPARE(packages.count(), 1);
    QCOMPARE(distanceOfSensor1(), QString("515 mm"));
    QCOMPARE(led().toolTip(), QString("ECU connected."));
}

void TestWindowLink::captureOffShowsNothing()
{
    answer();
    openWindow();
    pass(100);
    setCapture(true);
    setCapture(false);
    stream(kMeasurement, mReceivePort);
    stream(freespace(), mFreespacePort);
    QCOMPARE(echoOfSensor1(), QString());
    QCOMPARE(distanceOfSensor1(), QString());
    pass(3000);
    QCOMPARE(led().toolTip(), QString("ECU connected."));
    QCOMPARE(echoOfSensor1(), QString());
}

void TestWindowLink::recordingIsFedByItsOwnPoll()
{
    answer();
    openWindow();
    pass(100);
    QTimer::singleShot(0, mWindow.get(), [this] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        dialog->findChild<QPushButton*>("mRecordPb")->click();
        for (int i = 0; i < 4; ++i)
            stream(kMeasurement, mReceivePort);
        dialog->findChild<QPushButton*>("mStopPb")->click();
        stream(kMeasurement, mReceivePort);
        dialog->reject();
    });
    const int before = requestsWithCode(1);
    child<QAction>("actionEnvelopCurveRecording")->trigger();
    QVERIFY(requestsWithCode(1) > before);
    // The views share the poll, which goes on; toggling capture ends it.
    QCOMPARE(echoOfSensor1(), QString("5.12"));
    QVERIFY(!child<QAction>("actionCapture")->isChecked());
    QSignalSpy results(mWindow.get(), &TarvioWindow::measResultReceived);
    stream(kMeasurement, mReceivePort);
    QCOMPARE(results.count(), 1);
    setCapture(true);
    setCapture(false);
    stream(kMeasurement, mReceivePort);
    QCOMPARE(results.count(), 1);
}

void TestWindowLink::readAllIsToldForTenSeconds()
{
    answer();
    openWindow();
    pass(100);
    const MessageBoxWatcher watcher(QMessageBox::Yes);
    QTimer::singleShot(0, mWindow.get(),
                       [this] { child<QAction>("actionSyncFromECU")->trigger(); });
    pass(100);
    QCOMPARE(message(), QString("ECU data sync: SUCCESS!"));
    pass(9400);
    QCOMPARE(message(), QString("ECU data sync: SUCCESS!"));
    pass(1100);
    QCOMPARE(message(), QString());
}

void TestWindowLink::transmitAllIsToldForTenSeconds()
{
    answer();
    openWindow();
    pass(100);
    child<QToolButton>("addStepTb")->click();
    child<QAction>("actionTransmitToECU")->trigger();
    QCOMPARE(message(), QString("Setting successfully transmitted to ECU!"));
    pass(9400);
    QCOMPARE(message(), QString("Setting successfully transmitted to ECU!"));
    pass(1100);
    QCOMPARE(message(), QString());
}

void TestWindowLink::editModeOfTheFreespacesRaisesThePositions()
{
    openWindow();
    const auto* dock = child<QDockWidget>("sensorPositionDock");
    QVERIFY(dock->visibleRegion().isEmpty());
    child<QToolButton>("mModeButton")->click();
    QCoreApplication::processEvents();
    QVERIFY(!dock->visibleRegion().isEmpty());
}

void TestWindowLink::slotsOfTheWindowDoTheWork()
{
    openWindow();
    mWindow->onStatusTimeout();
    QCOMPARE(requestsWithCode(2), 1);
    QVERIFY(!mWindow->checkConnection());
    answer();
    QVERIFY(mWindow->checkConnection());
    QSignalSpy results(mWindow.get(), &TarvioWindow::measResultReceived);
    mEcu->stream(mReceivePort, kMeasurement);
    mWindow->pollingSlot();
    QCOMPARE(results.count(), 1);
}

QTEST_MAIN(TestWindowLink)
#include "test_window_link.moc"
