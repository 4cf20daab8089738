#include "tests/views/recording/LiveRecording.h"

#include <QApplication>
#include <QtTest>

#include <chrono>

namespace {

constexpr int kInformation = QMessageBox::Information;
constexpr int kWarning = QMessageBox::Warning;

} // namespace

class RecordingEndingsTest : public QObject
{
    Q_OBJECT

private slots:
    void endIsToldWithTheTimeItTook();
    void resultsAreDeliveredWhileTheEndIsTold();
    void elapsedTimeIsShownInItsShortestForm_data();
    void elapsedTimeIsShownInItsShortestForm();

    void silenceBeforeTheFirstResultAborts();
    void silenceWhileRecordingAborts();
    void timeoutSlotAborts();
    void resultsAreDeliveredWhileTheTimeoutIsTold();
    void destroyedDialogReceivesNothing();
};

void RecordingEndingsTest::endIsToldWithTheTimeItTook()
{
    const MessageBoxWatcher watcher;
    TestClock clock;
    // Without an ECU nothing takes time but what the test lets go by.
    OrvgCurveRecordingDialog dialog(nullptr, nullptr);
    const auto* stop = dialog.findChild<QPushButton*>("mStopPb");
    const auto inject = [&](int count) {
        for (int i = 0; i < count; ++i)
            dialog.onNewMeasResult(aMeasurement());
    };
    dialog.onRecordClicked();
    inject(1);
    clock.advance(std::chrono::milliseconds(1254));
    inject(kResultsOfRecording - 2);
    QVERIFY(stop->isEnabled());
    QVERIFY(!QApplication::activeModalWidget());
    inject(1);
    QVERIFY(!stop->isEnabled());
    pass(clock, 10);
    QCOMPARE(watcher.boxes().size(), 1);
    const auto& box = watcher.boxes().front();
    QCOMPARE(int{box.icon}, kInformation);
    QCOMPARE(box.title, QString("Timings"));
    QCOMPARE(box.text, QString("Measurement done in 1.254 sec."));
}

// The window forwards the results from within the time-out of its poll timer.
void RecordingEndingsTest::resultsAreDeliveredWhileTheEndIsTold()
{
    LiveRecording live;
    live.fixture.record()->click();
    for (int result = 1; result < kResultsOfRecording; ++result)
        emit live.source.measResultReceived(aMeasurement());
    QVERIFY(live.fixture.isRecording());
    live.poll.start(0);
    QTRY_VERIFY(live.openBox());
    QCOMPARE(live.openBox()->windowTitle(), QString("Timings"));
    QVERIFY(live.fixture.isIdle());
    const int delivered = live.delivered;
    QTRY_VERIFY(live.delivered >= delivered + 10);
    QVERIFY(live.openBox());
}

void RecordingEndingsTest::elapsedTimeIsShownInItsShortestForm_data()
{
    QTest::addColumn<qint64>("elapsedMs");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << qint64{0} << "Measurement done in 0 sec.";
    QTest::newRow("one millisecond") << qint64{1} << "Measurement done in 0.001 sec.";
    QTest::newRow("whole seconds") << qint64{3000} << "Measurement done in 3 sec.";
    QTest::newRow("tenths") << qint64{12300} << "Measurement done in 12.3 sec.";
    QTest::newRow("milliseconds") << qint64{18437} << "Measurement done in 18.437 sec.";
    QTest::newRow("round") << qint64{100000} << "Measurement done in 100 sec.";
    QTest::newRow("long") << qint64{934567} << "Measurement done in 934.567 sec.";
}

void RecordingEndingsTest::elapsedTimeIsShownInItsShortestForm()
{
    QFETCH(qint64, elapsedMs);
    QTEST(OrvgCurveRecordingDialog::timingsText(elapsedMs), "text");
}

void RecordingEndingsTest::silenceBeforeTheFirstResultAborts()
{
    RecordingFixture fixture;
    TestClock clock;
    fixture.record()->click();
    pass(clock, 2200);
    pass(clock, 10);
    QCOMPARE(fixture.watcher.boxes().size(), 1);
    const auto& box = fixture.watcher.boxes().front();
    QCOMPARE(int{box.icon}, kWarning);
    QCOMPARE(box.title, QString("Timeout"));
    QCOMPARE(box.text, QString("Data receiving timeout. Recording is aborted."));
    QVERIFY(fixture.isIdle());
    fixture.inject(2);
    QVERIFY(fixture.ecu.requests().empty());
}

void RecordingEndingsTest::silenceWhileRecordingAborts()
{
    RecordingFixture fixture;
    TestClock clock;
    fixture.record()->click();
    fixture.inject(1);
    fixture.inject(1, aMeasurement().withEcho(0, 1200, 7));
    pass(clock, 2200);
    pass(clock, 10);
    QCOMPARE(fixture.watcher.boxes().size(), 1);
    QCOMPARE(fixture.watcher.boxes().front().title, QString("Timeout"));
    QVERIFY(fixture.isIdle());
    QCOMPARE(fixture.csv(), QByteArray("1200,7\n"));
}

void RecordingEndingsTest::timeoutSlotAborts()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1 + 10);
    fixture.dialog.onWatchdogTimeout();
    QVERIFY(fixture.isIdle());
    QTRY_COMPARE(fixture.watcher.boxes().size(), 1);
    QCOMPARE(fixture.watcher.boxes().front().title, QString("Timeout"));
}

void RecordingEndingsTest::resultsAreDeliveredWhileTheTimeoutIsTold()
{
    LiveRecording live;
    live.fixture.record()->click();
    {
        TestClock clock;
        pass(clock, 2200);
    }
    QTRY_VERIFY(live.openBox());
    QCOMPARE(live.openBox()->windowTitle(), QString("Timeout"));
    live.poll.start(0);
    QTRY_VERIFY(live.delivered >= 10);
    QVERIFY(live.openBox());
    QVERIFY(live.fixture.isIdle());
}

void RecordingEndingsTest::destroyedDialogReceivesNothing()
{
    Source source;
    RecordingFixture fixture;
    auto dialog = std::make_unique<OrvgCurveRecordingDialog>(&fixture.client, nullptr);
    connect(&source, &Source::measResultReceived, dialog.get(),
            &OrvgCurveRecordingDialog::onNewMeasResult);
    TestClock clock;
    dialog->onRecordClicked();
    for (int i = 0; i < 5; ++i)
        emit source.measResultReceived(aMeasurement());
    dialog.reset();
    fixture.ecu.forgetRequests();
    emit source.measResultReceived(aMeasurement());
    pass(clock, 2200);
    pass(clock, 10);
    QVERIFY(fixture.ecu.requests().empty());
    QVERIFY(fixture.watcher.boxes().isEmpty());
}

QTEST_MAIN(RecordingEndingsTest)
#include "test_recording_endings.moc"
