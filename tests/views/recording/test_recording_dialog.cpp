#include "tests/support/screenshots.h"
#include "tests/views/recording/RecordingFixture.h"

#include <QApplication>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QtTest>

#include <cmath>

namespace {

constexpr int kInformation = QMessageBox::Information;
constexpr int kWarning = QMessageBox::Warning;

// Stands for the window that forwards the results.
class Source : public QObject
{
    Q_OBJECT

signals:
    void measResultReceived(orv::OrvMeasurementResult result);
};

// Answers the next file dialog with a file name; an empty one cancels it.
void answerFileDialog(const QString& fileName, QStringList* seen = nullptr)
{
    QTimer::singleShot(0, qApp, [=] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        if (seen)
            *seen << dialog->windowTitle() << dialog->nameFilters();
        if (!fileName.isEmpty())
            dialog->selectFile(fileName);
        QMetaObject::invokeMethod(dialog, fileName.isEmpty() ? "reject" : "accept");
    });
}

} // namespace

class RecordingDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void opensWithTheDefaults();
    void sensorsAreListedByTheirNumber();
    void partsCarryTheirTexts();
    void everyFieldHasAName();

    void recordingStartsWithTheNextResult();
    void recordingWrites146RecordsThatAreNotPermanent();
    void endIsToldWithTheTimeItTook();
    void elapsedTimeIsShownInItsShortestForm_data();
    void elapsedTimeIsShownInItsShortestForm();
    void resultThatStartsTheRecordingIsNotRecorded();
    void samplesOfTheChosenSensorAreKeptUntilTheNextRecording();
    void progressFollowsThePosition();
    void stepOverTheEndFillsTheProgress();
    void settingsMayChangeWhileRecording();
    void thresholdsInUseAreDrawn();
    void failedWritesDoNotEndTheRecording();
    void recordingWithoutAClientWritesNothing();

    void stopTakesEffectWithTheNextResult();
    void stopWhileIdleShowsNothing();
    void recordAfterStopStartsAgain();
    void tailOfAStoppedRecordingIsSharedWithTheNextDialog();

    void watchdogWaitsTwoSeconds();
    void silenceBeforeTheFirstResultAborts();
    void silenceWhileRecordingAborts();
    void everyRecordedResultRestartsTheWatchdog();
    void watchdogRestsAfterStopAndEnd();

    void closingEndsTheRecording();
    void destroyedDialogReceivesNothing();
    void slotsStandInTheirOrder();

    void savesTheSamplesToTheChosenFile();
    void cancelledSaveWritesNothing();
    void unwritableFileIsReported();
    void maximumAndMeanAreSwitchedInThePlot();
    void recordedCurveLooksLikeThis();
};

void RecordingDialogTest::opensWithTheDefaults()
{
    const RecordingFixture fixture;
    QVERIFY(fixture.isIdle());
    QCOMPARE(fixture.sensor()->currentIndex(), 0);
    QVERIFY(fixture.find<QRadioButton>("mMaxRb")->isChecked());
    QCOMPARE(fixture.progress()->minimum(), 0);
    QCOMPARE(fixture.progress()->maximum(), 145);
    QCOMPARE(fixture.progress()->value(), 0);
    const auto range = [&](const char* name) {
        const QSpinBox* box = fixture.spinBox(name);
        return QVector<int>{box->minimum(), box->maximum(), box->value()};
    };
    QCOMPARE(range("mWindowLeftSb"), QVector<int>({0, 7, 0}));
    QCOMPARE(range("mWindowRightSb"), QVector<int>({0, 7, 2}));
    QCOMPARE(range("mLutStepSb"), QVector<int>({1, 5, 1}));
    QCOMPARE(range("mSamplesCountSb"), QVector<int>({1, 64, 3}));
}

void RecordingDialogTest::sensorsAreListedByTheirNumber()
{
    const RecordingFixture fixture;
    QCOMPARE(fixture.sensor()->count(), 12);
    QCOMPARE(fixture.sensor()->itemText(0), QString("Sensor 1"));
    QCOMPARE(fixture.sensor()->itemText(11), QString("Sensor 12"));
}

void RecordingDialogTest::partsCarryTheirTexts()
{
    const RecordingFixture fixture;
    QCOMPARE(fixture.dialog.windowTitle(), QString("Envelope curve recording"));
    QStringList texts;
    for (const QGroupBox* group : fixture.dialog.findChildren<QGroupBox*>())
        texts << group->title();
    for (const QLabel* label : fixture.dialog.findChildren<QLabel*>())
        texts << label->text();
    for (const QAbstractButton* button : fixture.dialog.findChildren<QAbstractButton*>())
        texts << button->text();
    texts.sort();
    QCOMPARE(texts,
             QStringList({"&Mid avg", "Control", "Echos:", "Left", "Lut step:", "Max", "Record",
                          "Right", "Samples per step:", "Save...", "Sensor", "Stop", "Window:"}));
}

void RecordingDialogTest::everyFieldHasAName()
{
    const RecordingFixture fixture;
    for (const QLabel* label : fixture.dialog.findChildren<QLabel*>())
        QVERIFY2(label->buddy(), qPrintable(label->text()));
    for (const char* name : {"mSensorCb", "mWindowLeftSb", "mWindowRightSb", "mLutStepSb",
                             "mSamplesCountSb", "mProgressBar", "mPlot"})
        QVERIFY2(!fixture.find<QWidget>(name)->accessibleName().isEmpty(), name);
}

void RecordingDialogTest::recordingStartsWithTheNextResult()
{
    RecordingFixture fixture;
    fixture.inject(5);
    QVERIFY(fixture.isIdle());
    fixture.record()->click();
    QVERIFY(fixture.isRecording());
    fixture.inject(1);
    QVERIFY(fixture.ecu.requests().empty());
    fixture.inject(1);
    QCOMPARE(fixture.ecu.requests().size(), std::size_t{1});
}

void RecordingDialogTest::recordingWrites146RecordsThatAreNotPermanent()
{
    RecordingFixture fixture;
    fixture.sensor()->setCurrentIndex(4);
    fixture.record()->click();
    fixture.inject(kResultsOfRecording);
    const auto requests = fixture.ecu.requests();
    QCOMPARE(requests.size(), std::size_t{146});
    using Bytes = std::vector<std::uint8_t>;
    const Bytes first = {2,    4,    0x00, 0x8F, 0x5B, 0xFF, 0xFF, 0xFF,
                         0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0};
    const Bytes last = {2,    4,    0xFF, 0xFF, 0xFF, 0xFF, 0xDF, 0x5F,
                        0x1F, 0x00, 0x8F, 0x5B, 0xFF, 0xFF, 0};
    QVERIFY(requests.front().payload == first);
    QVERIFY(requests.back().payload == last);
    for (const auto& request : requests) {
        QCOMPARE(int{request.code}, 1);
        QCOMPARE(int{request.payload.at(0)}, 2);
        QCOMPARE(int{request.payload.at(1)}, 4);
    }
}

void RecordingDialogTest::endIsToldWithTheTimeItTook()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(kResultsOfRecording - 1);
    QVERIFY(fixture.isRecording());
    QVERIFY(fixture.watcher.boxes().isEmpty());
    fixture.inject(1);
    QVERIFY(fixture.isIdle());
    QCOMPARE(fixture.watcher.boxes().size(), 1);
    const auto& box = fixture.watcher.boxes().front();
    QCOMPARE(int{box.icon}, kInformation);
    QCOMPARE(box.title, QString("Timings"));
    const QRegularExpression text(
        QRegularExpression::anchoredPattern(R"(Measurement done in \d+(\.\d{1,3})? sec\.)"));
    QVERIFY2(text.match(box.text).hasMatch(), qPrintable(box.text));
}

void RecordingDialogTest::elapsedTimeIsShownInItsShortestForm_data()
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

void RecordingDialogTest::elapsedTimeIsShownInItsShortestForm()
{
    QFETCH(qint64, elapsedMs);
    QTEST(OrvgCurveRecordingDialog::timingsText(elapsedMs), "text");
}

void RecordingDialogTest::resultThatStartsTheRecordingIsNotRecorded()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1, aMeasurement().withEcho(0, 1200, 7));
    QCOMPARE(fixture.csv(), QByteArray());
    fixture.inject(1, aMeasurement().withEcho(0, 1200, 9));
    QCOMPARE(fixture.csv(), QByteArray("1200,9\n"));
}

void RecordingDialogTest::samplesOfTheChosenSensorAreKeptUntilTheNextRecording()
{
    RecordingFixture fixture;
    fixture.sensor()->setCurrentIndex(2);
    fixture.record()->click();
    fixture.inject(1);
    fixture.inject(1, aMeasurement().withEcho(2, 1200, 7).withEcho(3, 1400, 1));
    fixture.inject(1, aMeasurement().withEcho(2, 1200, 9).withEcho(2, 800, 3));
    fixture.stop()->click();
    fixture.inject(3, aMeasurement().withEcho(2, 1200, 8));
    QCOMPARE(fixture.csv(), QByteArray("800,3\n1200,7,9\n"));
    fixture.record()->click();
    QCOMPARE(fixture.csv(), QByteArray("800,3\n1200,7,9\n"));
    fixture.inject(1);
    QCOMPARE(fixture.csv(), QByteArray());
}

void RecordingDialogTest::progressFollowsThePosition()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1 + 3);
    QCOMPARE(fixture.progress()->value(), 0);
    fixture.inject(1);
    QCOMPARE(fixture.progress()->value(), 1);
    fixture.inject(kResultsOfRecording - 5);
    QCOMPARE(fixture.progress()->value(), 145);
}

void RecordingDialogTest::stepOverTheEndFillsTheProgress()
{
    RecordingFixture fixture;
    fixture.spinBox("mLutStepSb")->setValue(4);
    fixture.record()->click();
    fixture.inject(1 + 37 * 3 + 17);
    QCOMPARE(fixture.ecu.requests().size(), std::size_t{38});
    QCOMPARE(fixture.progress()->value(), 145);
    QCOMPARE(fixture.watcher.boxes().size(), 1);
    QVERIFY(fixture.isIdle());
}

void RecordingDialogTest::settingsMayChangeWhileRecording()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1 + 1);
    fixture.spinBox("mLutStepSb")->setValue(5);
    fixture.spinBox("mSamplesCountSb")->setValue(1);
    fixture.spinBox("mWindowLeftSb")->setValue(3);
    fixture.spinBox("mWindowRightSb")->setValue(6);
    fixture.ecu.forgetRequests();
    // Samples left: 2, then 1, which is as many as a position takes now.
    fixture.inject(2);
    QCOMPARE(fixture.ecu.requests().size(), std::size_t{1});
    fixture.inject(1);
    const auto payload = fixture.ecu.requests().back().payload;
    const std::vector<std::uint8_t> expected = {2,    0,    0x5F, 0x1F, 0x60, 0x8F, 0xDB, 0xFF,
                                                0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0};
    QVERIFY(payload == expected);
    QCOMPARE(fixture.progress()->value(), 5);
}

void RecordingDialogTest::thresholdsInUseAreDrawn()
{
    RecordingFixture fixture;
    const QImage before = fixture.plot()->grab().toImage();
    fixture.record()->click();
    fixture.inject(1 + 1);
    const QImage atStart = fixture.plot()->grab().toImage();
    QVERIFY(atStart != before);
    fixture.inject(3 * 20);
    QVERIFY(fixture.plot()->grab().toImage() != atStart);
}

void RecordingDialogTest::failedWritesDoNotEndTheRecording()
{
    RecordingFixture fixture;
    fixture.ecu.answerAll({}, 7);
    fixture.record()->click();
    fixture.inject(kResultsOfRecording);
    QCOMPARE(fixture.ecu.requests().size(), std::size_t{146});
    QCOMPARE(fixture.watcher.boxes().size(), 1);
    QCOMPARE(fixture.watcher.boxes().front().title, QString("Timings"));
}

void RecordingDialogTest::recordingWithoutAClientWritesNothing()
{
    MessageBoxWatcher watcher;
    OrvgCurveRecordingDialog dialog(nullptr, nullptr);
    dialog.onRecordClicked();
    for (int i = 0; i < kResultsOfRecording; ++i)
        dialog.onNewMeasResult(aMeasurement());
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().front().title, QString("Timings"));
}

void RecordingDialogTest::stopTakesEffectWithTheNextResult()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1 + 10);
    fixture.stop()->click();
    QVERIFY(fixture.record()->isEnabled());
    QVERIFY(fixture.stop()->isEnabled());
    QVERIFY(!fixture.save()->isEnabled());
    QVERIFY(!fixture.sensor()->isEnabled());
    fixture.ecu.forgetRequests();
    fixture.inject(1);
    QVERIFY(fixture.isIdle());
    fixture.inject(10);
    QVERIFY(fixture.ecu.requests().empty());
    QVERIFY(fixture.watcher.boxes().isEmpty());
}

void RecordingDialogTest::stopWhileIdleShowsNothing()
{
    RecordingFixture fixture;
    fixture.dialog.onStopClicked();
    QVERIFY(fixture.isIdle());
    fixture.inject(1);
    QVERIFY(fixture.isIdle());
    fixture.inject(5);
    QVERIFY(fixture.ecu.requests().empty());
}

void RecordingDialogTest::recordAfterStopStartsAgain()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1 + 10);
    fixture.stop()->click();
    fixture.record()->click();
    QVERIFY(fixture.isRecording());
    fixture.ecu.forgetRequests();
    fixture.inject(1 + 1);
    QCOMPARE(int{fixture.ecu.requests().back().payload.at(2)}, 0x00);
}

void RecordingDialogTest::tailOfAStoppedRecordingIsSharedWithTheNextDialog()
{
    RecordingFixture stopped;
    stopped.record()->click();
    stopped.inject(1 + 145 * 3 + 5);
    stopped.stop()->click();
    stopped.inject(1);

    RecordingFixture next;
    next.record()->click();
    next.inject(1 + 145 * 3 + 11);
    QVERIFY(next.isRecording());
    next.inject(1);
    QVERIFY(next.isIdle());
}

void RecordingDialogTest::watchdogWaitsTwoSeconds()
{
    const RecordingFixture fixture;
    QCOMPARE(fixture.watchdog()->interval(), 2000);
    QVERIFY(!fixture.watchdog()->isActive());
}

void RecordingDialogTest::silenceBeforeTheFirstResultAborts()
{
    RecordingFixture fixture;
    fixture.dialog.setWatchdogInterval(1);
    fixture.record()->click();
    QTRY_COMPARE(fixture.watcher.boxes().size(), 1);
    const auto& box = fixture.watcher.boxes().front();
    QCOMPARE(int{box.icon}, kWarning);
    QCOMPARE(box.title, QString("Timeout"));
    QCOMPARE(box.text, QString("Data receiving timeout. Recording is aborted."));
    QVERIFY(fixture.isIdle());
    QVERIFY(!fixture.watchdog()->isActive());
    fixture.inject(2);
    QVERIFY(fixture.ecu.requests().empty());
}

void RecordingDialogTest::silenceWhileRecordingAborts()
{
    RecordingFixture fixture;
    fixture.dialog.setWatchdogInterval(1);
    fixture.record()->click();
    fixture.inject(1);
    fixture.inject(1, aMeasurement().withEcho(0, 1200, 7));
    QTRY_COMPARE(fixture.watcher.boxes().size(), 1);
    QVERIFY(fixture.isIdle());
    QCOMPARE(fixture.csv(), QByteArray("1200,7\n"));
}

void RecordingDialogTest::everyRecordedResultRestartsTheWatchdog()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1);
    for (int result = 0; result < 3; ++result) {
        fixture.watchdog()->stop();
        fixture.inject(1);
        QVERIFY(fixture.watchdog()->isActive());
    }
}

void RecordingDialogTest::watchdogRestsAfterStopAndEnd()
{
    RecordingFixture fixture;
    fixture.record()->click();
    QVERIFY(fixture.watchdog()->isActive());
    fixture.stop()->click();
    fixture.inject(1);
    QVERIFY(!fixture.watchdog()->isActive());
    fixture.record()->click();
    fixture.inject(kResultsOfRecording);
    QVERIFY(!fixture.watchdog()->isActive());
}

void RecordingDialogTest::closingEndsTheRecording()
{
    RecordingFixture fixture;
    fixture.dialog.show();
    fixture.record()->click();
    fixture.inject(1 + 10);
    fixture.dialog.close();
    QVERIFY(!fixture.dialog.isVisible());
    QVERIFY(!fixture.watchdog()->isActive());
    fixture.ecu.forgetRequests();
    fixture.inject(10);
    QVERIFY(fixture.ecu.requests().empty());
    QVERIFY(fixture.isIdle());
    QVERIFY(fixture.watcher.boxes().isEmpty());
}

void RecordingDialogTest::destroyedDialogReceivesNothing()
{
    Source source;
    RecordingFixture fixture;
    auto dialog = std::make_unique<OrvgCurveRecordingDialog>(&fixture.client, nullptr);
    connect(&source, &Source::measResultReceived, dialog.get(),
            &OrvgCurveRecordingDialog::onNewMeasResult);
    dialog->setWatchdogInterval(0);
    dialog->onRecordClicked();
    for (int i = 0; i < 5; ++i)
        emit source.measResultReceived(aMeasurement());
    dialog.reset();
    fixture.ecu.forgetRequests();
    emit source.measResultReceived(aMeasurement());
    QCoreApplication::processEvents();
    QVERIFY(fixture.ecu.requests().empty());
    QVERIFY(fixture.watcher.boxes().isEmpty());
}

void RecordingDialogTest::slotsStandInTheirOrder()
{
    const QMetaObject& meta = OrvgCurveRecordingDialog::staticMetaObject;
    QList<QByteArray> slotNames;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        slotNames << meta.method(i).methodSignature();
    QCOMPARE(slotNames,
             QList<QByteArray>({"onNewMeasResult(orv::OrvMeasurementResult)", "onRecordClicked()",
                                "onStopClicked()", "onSaveClicked()", "onWatchdogTimeout()"}));
}

void RecordingDialogTest::savesTheSamplesToTheChosenFile()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1);
    fixture.inject(2, aMeasurement().withEcho(0, 1200, 7));
    fixture.stop()->click();
    fixture.inject(1);
    const QTemporaryDir folder;
    QStringList seen;
    answerFileDialog(folder.filePath("curve.csv"), &seen);
    fixture.save()->click();
    QCOMPARE(seen, QStringList({"Select file", "CSV files(*.csv)"}));
    QFile file(folder.filePath("curve.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("1200,7,7\n"));
}

void RecordingDialogTest::cancelledSaveWritesNothing()
{
    RecordingFixture fixture;
    QStringList seen;
    answerFileDialog(QString(), &seen);
    fixture.save()->click();
    QCOMPARE(seen.value(0), QString("Select file"));
    QVERIFY(fixture.watcher.boxes().isEmpty());
}

void RecordingDialogTest::unwritableFileIsReported()
{
    RecordingFixture fixture;
    const QTemporaryDir folder;
    // A folder that goes away between the choice and the writing.
    QDir(folder.path()).mkdir("gone");
    answerFileDialog(folder.filePath("gone/curve.csv"));
    QTimer::singleShot(0, &fixture.dialog, [&] { QDir(folder.path()).rmdir("gone"); });
    fixture.save()->click();
    QCOMPARE(fixture.watcher.boxes().size(), 1);
    QCOMPARE(fixture.watcher.boxes().front().title, QString("File error"));
    QCOMPARE(fixture.watcher.boxes().front().text, QString("Can't write to file."));
}

void RecordingDialogTest::maximumAndMeanAreSwitchedInThePlot()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1);
    fixture.inject(1, aMeasurement().withEcho(0, 15000, 15));
    fixture.inject(1, aMeasurement().withEcho(0, 15000, 0));
    const QImage maximum = fixture.plot()->grab().toImage();
    fixture.find<QRadioButton>("mMidAvgRb")->click();
    QVERIFY(fixture.plot()->grab().toImage() != maximum);
    fixture.find<QRadioButton>("mMaxRb")->click();
    QCOMPARE(fixture.plot()->grab().toImage(), maximum);
}

void RecordingDialogTest::recordedCurveLooksLikeThis()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1);
    // Two obstacles, the second one fainter, seen through the window as it passes.
    for (int result = 0; result < 110 * 3; ++result) {
        const double time = 205 * (result / 3) + 51 * (result % 3);
        const double near = 14 * std::exp(-std::pow((time - 8000) / 900, 2));
        const double far = 10 * std::exp(-std::pow((time - 17000) / 1400, 2));
        if (near + far > 0.7)
            fixture.inject(1, aMeasurement().withEcho(0, static_cast<std::uint16_t>(time),
                                                      static_cast<std::uint8_t>(near + far)));
        else
            fixture.inject(1);
    }
    fixture.dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&fixture.dialog));
    QVERIFY(fixture.isRecording());
    QCOMPARE(fixture.progress()->value(), 109);
    saveScreenshot(fixture.dialog, "envelope-recording");
}

QTEST_MAIN(RecordingDialogTest)
#include "test_recording_dialog.moc"
