#include "tests/support/FullDisk.h"
#include "tests/support/modal_dialogs.h"
#include "tests/support/screenshots.h"
#include "tests/views/recording/RecordingFixture.h"

#include <QApplication>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QtTest>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kInformation = QMessageBox::Information;
constexpr int kWarning = QMessageBox::Warning;

// Stands for the window that forwards the results.
class Source : public QObject
{
    Q_OBJECT

signals:
    void measResultReceived(const orv::OrvMeasurementResult& result);
};

// A recording whose results come from a poll; nobody answers its boxes.
struct LiveRecording
{
    LiveRecording()
    {
        fixture.watcher.rest();
        QObject::connect(&source, &Source::measResultReceived, &fixture.dialog,
                         &OrvgCurveRecordingDialog::onNewMeasResult);
        QObject::connect(&source, &Source::measResultReceived, &source, [this] { ++delivered; });
        QObject::connect(&poll, &QTimer::timeout, &source,
                         [this] { emit source.measResultReceived(aMeasurement()); });
    }

    QMessageBox* openBox() const
    {
        return qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    }

    QStringList boxTitles() const
    {
        QStringList titles;
        for (const QMessageBox* box : fixture.dialog.findChildren<QMessageBox*>()) {
            if (box->isVisible())
                titles << box->windowTitle();
        }
        return titles;
    }

    RecordingFixture fixture;
    Source source;
    QTimer poll;
    int delivered = 0;
};

// The pixels of the stick at about this time of flight.
int stickHeight(OrvgPlotWidget& plot, int timeOfFlightUs)
{
    const QImage picture = plot.grab().toImage();
    int highest = 0;
    const int middle = picture.width() * timeOfFlightUs / 30000;
    for (int x = middle - 4; x <= middle + 4; ++x) {
        int height = 0;
        while (picture.pixelColor(x, picture.height() - 1 - height) == QColor(Qt::yellow))
            ++height;
        highest = std::max(highest, height);
    }
    return highest;
}

void writeFile(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QByteArray contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

// Answers the next file dialog with a file name; an empty one cancels it.
void answerFileDialog(QObject* context, const QString& fileName, QStringList* seen = nullptr)
{
    whenOpened<QFileDialog>(context, [=](QFileDialog& dialog) {
        if (seen)
            *seen << dialog.windowTitle() << dialog.nameFilters();
        if (!fileName.isEmpty())
            dialog.selectFile(fileName);
        QMetaObject::invokeMethod(&dialog, fileName.isEmpty() ? "reject" : "accept");
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
    void windowFieldsTellTheirMilliseconds();

    void recordingStartsWithTheNextResult();
    void recordingWrites146RecordsThatAreNotPermanent();
    void endIsToldWithTheTimeItTook();
    void resultsAreDeliveredWhileTheEndIsTold();
    void elapsedTimeIsShownInItsShortestForm_data();
    void elapsedTimeIsShownInItsShortestForm();
    void resultThatStartsTheRecordingIsNotRecorded();
    void samplesOfTheChosenSensorAreKeptUntilTheNextRecording();
    void progressFollowsThePosition();
    void stepOverTheEndFillsTheProgress();
    void settingsMayChangeWhileRecording();
    void thresholdsInUseAreDrawn();
    void thresholdsAreDrawnInTheirColour();
    void failedWritesDoNotEndTheRecording();
    void recordingWithoutAClientWritesNothing();

    void stopTakesEffectWithTheNextResult();
    void stopWhileIdleShowsNothing();
    void recordAfterStopStartsAgain();
    void tailOfAStoppedRecordingIsSharedWithTheNextDialog();

    void recordHandsTheFocusToStop();
    void keysStopTheRecordingAndChangeNoField_data();
    void keysStopTheRecordingAndChangeNoField();
    void enterInAFieldPressesNoButton();
    void endLeavesTheFocusOnSave();

    void watchdogWaitsTwoSeconds();
    void silenceBeforeTheFirstResultAborts();
    void silenceWhileRecordingAborts();
    void everyRecordedResultRestartsTheWatchdog();
    void watchdogRestsAfterStopAndEnd();
    void resultsAreDeliveredWhileTheTimeoutIsTold();

    void closingAsksBeforeItDiscards_data();
    void closingAsksBeforeItDiscards();
    void recordingGoesOnWhileTheQuestionIsOpen();
    void endOfTheRecordingTakesTheQuestionAway();
    void silenceTakesTheQuestionAway();
    void enterAndEscapeKeepTheRecording_data();
    void enterAndEscapeKeepTheRecording();
    void closingAsksOnce();
    void closingWithoutARecordingAsksNothing_data();
    void closingWithoutARecordingAsksNothing();
    void requestedStopIsStillARecording();
    void destroyedDialogReceivesNothing();
    void slotsStandInTheirOrder();

    void savesTheSamplesToTheChosenFile();
    void csvIsAddedWhereItIsMissing_data();
    void csvIsAddedWhereItIsMissing();
    void existingFileIsReplacedAfterAQuestionOnly_data();
    void existingFileIsReplacedAfterAQuestionOnly();
    void fullDiskLeavesTheFormerFileWhole();
    void cancelledSaveWritesNothing();
    void unwritableFileIsReported();
    void maximumAndMeanAreSwitchedInThePlot();
    void guidePictureShowsTwoObstacles();
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

void RecordingDialogTest::windowFieldsTellTheirMilliseconds()
{
    const RecordingFixture fixture;
    const QStringList durations = {"0.2048 ms", "0.4096 ms", "0.8192 ms", "1.2288 ms",
                                   "1.6384 ms", "2.6624 ms", "4.096 ms",  "6.144 ms"};
    QCOMPARE(fixture.spinBox("mWindowLeftSb")->toolTip(), durations[0]);
    QCOMPARE(fixture.spinBox("mWindowRightSb")->toolTip(), durations[2]);
    for (int index = 0; index < durations.size(); ++index) {
        fixture.spinBox("mWindowLeftSb")->setValue(index);
        QCOMPARE(fixture.spinBox("mWindowLeftSb")->toolTip(), durations[index]);
        fixture.spinBox("mWindowRightSb")->setValue(index);
        QCOMPARE(fixture.spinBox("mWindowRightSb")->toolTip(), durations[index]);
    }
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
    QTRY_COMPARE(fixture.watcher.boxes().size(), 1);
    const auto& box = fixture.watcher.boxes().front();
    QCOMPARE(int{box.icon}, kInformation);
    QCOMPARE(box.title, QString("Timings"));
    const QRegularExpression text(
        QRegularExpression::anchoredPattern(R"(Measurement done in \d+(\.\d{1,3})? sec\.)"));
    QVERIFY2(text.match(box.text).hasMatch(), qPrintable(box.text));
}

// The window forwards the results from within the time-out of its poll timer.
void RecordingDialogTest::resultsAreDeliveredWhileTheEndIsTold()
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
    QTRY_COMPARE(fixture.watcher.boxes().size(), 1);
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

void RecordingDialogTest::thresholdsAreDrawnInTheirColour()
{
    RecordingFixture fixture;
    const auto count = [&](const QColor& color) {
        const QImage picture = fixture.plot()->grab().toImage();
        int pixels = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                pixels += picture.pixelColor(x, y) == color;
        return pixels;
    };
    QCOMPARE(count(QColor("orange")), 0);
    fixture.record()->click();
    fixture.inject(1 + 1);
    QVERIFY(count(QColor("orange")) > 100);
    QCOMPARE(count(Qt::black), 0);
}

void RecordingDialogTest::failedWritesDoNotEndTheRecording()
{
    RecordingFixture fixture;
    fixture.ecu.answerAll({}, 7);
    fixture.record()->click();
    fixture.inject(kResultsOfRecording);
    QCOMPARE(fixture.ecu.requests().size(), std::size_t{146});
    QTRY_COMPARE(fixture.watcher.boxes().size(), 1);
    QCOMPARE(fixture.watcher.boxes().front().title, QString("Timings"));
}

void RecordingDialogTest::recordingWithoutAClientWritesNothing()
{
    MessageBoxWatcher watcher;
    OrvgCurveRecordingDialog dialog(nullptr, nullptr);
    dialog.onRecordClicked();
    for (int i = 0; i < kResultsOfRecording; ++i)
        dialog.onNewMeasResult(aMeasurement());
    QTRY_COMPARE(watcher.boxes().size(), 1);
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

void RecordingDialogTest::recordHandsTheFocusToStop()
{
    RecordingFixture fixture;
    QVERIFY(fixture.show());
    QTest::mouseClick(fixture.record(), Qt::LeftButton);
    QVERIFY(fixture.stop()->hasFocus());
    fixture.stop()->click();
    // Not every desktop gives a clicked button the focus.
    fixture.spinBox("mLutStepSb")->setFocus();
    fixture.record()->click();
    QVERIFY(fixture.stop()->hasFocus());
}

void RecordingDialogTest::keysStopTheRecordingAndChangeNoField_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("space") << int{Qt::Key_Space};
    QTest::newRow("return") << int{Qt::Key_Return};
    QTest::newRow("enter") << int{Qt::Key_Enter};
}

void RecordingDialogTest::keysStopTheRecordingAndChangeNoField()
{
    QFETCH(int, key);
    RecordingFixture fixture;
    QVERIFY(fixture.show());
    fixture.record()->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(fixture.isRecording());
    fixture.inject(1 + 10);
    for (const int other : {int{Qt::Key_3}, int{Qt::Key_PageUp}})
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(other));
    QVERIFY(fixture.isRecording());
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
    fixture.inject(1);
    QVERIFY(fixture.isIdle());
    QCOMPARE(fixture.spinBox("mLutStepSb")->value(), 1);
    QCOMPARE(fixture.spinBox("mSamplesCountSb")->value(), 3);
    QCOMPARE(fixture.spinBox("mWindowLeftSb")->value(), 0);
}

void RecordingDialogTest::enterInAFieldPressesNoButton()
{
    RecordingFixture fixture;
    QVERIFY(fixture.show());
    for (const bool recording : {false, true}) {
        if (recording)
            fixture.record()->click();
        fixture.inject(recording ? 1 + 10 : 0);
        fixture.spinBox("mSamplesCountSb")->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QVERIFY(fixture.dialog.isVisible());
        QCOMPARE(fixture.isRecording(), recording);
    }
}

void RecordingDialogTest::endLeavesTheFocusOnSave()
{
    RecordingFixture fixture;
    QVERIFY(fixture.show());
    QTest::mouseClick(fixture.record(), Qt::LeftButton);
    fixture.inject(1 + 10);
    fixture.stop()->click();
    fixture.inject(1);
    QVERIFY(fixture.isIdle());
    QVERIFY(fixture.save()->hasFocus());
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

void RecordingDialogTest::resultsAreDeliveredWhileTheTimeoutIsTold()
{
    LiveRecording live;
    live.fixture.dialog.setWatchdogInterval(1);
    live.fixture.record()->click();
    QTRY_VERIFY(live.openBox());
    QCOMPARE(live.openBox()->windowTitle(), QString("Timeout"));
    live.poll.start(0);
    QTRY_VERIFY(live.delivered >= 10);
    QVERIFY(live.openBox());
    QVERIFY(live.fixture.isIdle());
}

void RecordingDialogTest::closingAsksBeforeItDiscards_data()
{
    QTest::addColumn<bool>("byEscape");
    QTest::addColumn<bool>("discard");
    QTest::newRow("Escape, Yes") << true << true;
    QTest::newRow("Escape, No") << true << false;
    QTest::newRow("close, Yes") << false << true;
    QTest::newRow("close, No") << false << false;
}

void RecordingDialogTest::closingAsksBeforeItDiscards()
{
    QFETCH(bool, byEscape);
    QFETCH(bool, discard);
    RecordingFixture fixture;
    QVERIFY(fixture.show());
    fixture.watcher.setAnswer(discard ? QMessageBox::Yes : QMessageBox::No);
    QTest::mouseClick(fixture.record(), Qt::LeftButton);
    fixture.inject(1 + 10);
    if (byEscape)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    else
        fixture.dialog.close();
    QVERIFY(fixture.dialog.isVisible());
    QTRY_COMPARE(fixture.watcher.boxes().size(), 1);
    const auto& box = fixture.watcher.boxes().front();
    QCOMPARE(int{box.icon}, int{QMessageBox::Question});
    QCOMPARE(box.title, QString("Envelope curve recording"));
    QCOMPARE(box.text, QString("The recording is still running. Discard what was recorded?"));
    QCOMPARE(box.buttons, QMessageBox::Yes | QMessageBox::No);
    QTRY_COMPARE(fixture.dialog.isVisible(), !discard);
    fixture.ecu.forgetRequests();
    fixture.inject(10);
    QCOMPARE(fixture.isRecording(), !discard);
    QCOMPARE(fixture.ecu.requests().empty(), discard);
    QCOMPARE(fixture.watchdog()->isActive(), !discard);
}

void RecordingDialogTest::recordingGoesOnWhileTheQuestionIsOpen()
{
    LiveRecording live;
    QVERIFY(live.fixture.show());
    live.fixture.record()->click();
    live.fixture.inject(1);
    live.fixture.dialog.close();
    QTRY_VERIFY(live.openBox());
    live.fixture.inject(2, aMeasurement().withEcho(0, 1200, 7));
    QVERIFY(live.fixture.isRecording());
    QVERIFY(live.fixture.watchdog()->isActive());
    live.openBox()->button(QMessageBox::No)->click();
    QTRY_VERIFY(!live.openBox());
    QCOMPARE(live.fixture.csv(), QByteArray("1200,7,7\n"));
    QVERIFY(live.fixture.isRecording());
}

void RecordingDialogTest::endOfTheRecordingTakesTheQuestionAway()
{
    LiveRecording live;
    QVERIFY(live.fixture.show());
    live.fixture.record()->click();
    live.fixture.inject(kResultsOfRecording - 1);
    live.fixture.dialog.close();
    QTRY_VERIFY(live.openBox());
    live.fixture.inject(1);
    QTRY_COMPARE(live.boxTitles(), QStringList("Timings"));
    QVERIFY(live.fixture.dialog.isVisible());
    QVERIFY(live.fixture.isIdle());
}

void RecordingDialogTest::silenceTakesTheQuestionAway()
{
    LiveRecording live;
    QVERIFY(live.fixture.show());
    live.fixture.record()->click();
    live.fixture.inject(1 + 10);
    live.fixture.dialog.close();
    QTRY_VERIFY(live.openBox());
    live.fixture.dialog.setWatchdogInterval(1);
    QTRY_COMPARE(live.boxTitles(), QStringList("Timeout"));
    QVERIFY(live.fixture.dialog.isVisible());
    QVERIFY(live.fixture.isIdle());
}

void RecordingDialogTest::enterAndEscapeKeepTheRecording_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Enter") << int{Qt::Key_Return};
    QTest::newRow("Escape") << int{Qt::Key_Escape};
    QTest::newRow("Space") << int{Qt::Key_Space};
}

void RecordingDialogTest::enterAndEscapeKeepTheRecording()
{
    QFETCH(int, key);
    LiveRecording live;
    QVERIFY(live.fixture.show());
    live.fixture.record()->click();
    live.fixture.inject(1 + 10);
    QTest::keyClick(&live.fixture.dialog, Qt::Key_Escape);
    QTRY_VERIFY(live.openBox());
    live.openBox()->activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), live.openBox());
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
    QTRY_VERIFY(!live.openBox());
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
    QTRY_VERIFY(!live.openBox());
    QVERIFY(live.fixture.dialog.isVisible());
    QVERIFY(live.fixture.isRecording());
}

void RecordingDialogTest::closingAsksOnce()
{
    LiveRecording live;
    QVERIFY(live.fixture.show());
    live.fixture.record()->click();
    live.fixture.inject(1 + 10);
    // In one go, as a key that is held down sends them.
    for (int i = 0; i < 5; ++i)
        QCoreApplication::postEvent(
            &live.fixture.dialog, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
    live.fixture.dialog.close();
    QTRY_VERIFY(live.openBox());
    QCoreApplication::processEvents();
    QCOMPARE(live.boxTitles(), QStringList("Envelope curve recording"));
    live.openBox()->button(QMessageBox::No)->click();
    QVERIFY(live.boxTitles().isEmpty());
    live.fixture.dialog.close();
    QCOMPARE(live.boxTitles(), QStringList("Envelope curve recording"));
}

void RecordingDialogTest::closingWithoutARecordingAsksNothing_data()
{
    QTest::addColumn<int>("results");
    QTest::addColumn<bool>("withRecord");
    QTest::newRow("never recorded") << 0 << false;
    QTest::newRow("before the first result") << 0 << true;
    QTest::newRow("finished") << kResultsOfRecording << true;
}

void RecordingDialogTest::closingWithoutARecordingAsksNothing()
{
    QFETCH(int, results);
    QFETCH(bool, withRecord);
    RecordingFixture fixture;
    QVERIFY(fixture.show());
    if (withRecord)
        fixture.record()->click();
    fixture.inject(results);
    QTRY_COMPARE(fixture.watcher.boxes().size(), results ? 1 : 0);
    fixture.watcher.forget();
    QTRY_VERIFY(!QApplication::activeModalWidget());
    fixture.dialog.close();
    QVERIFY(!fixture.dialog.isVisible());
    QVERIFY(fixture.isIdle());
    QVERIFY(!fixture.watchdog()->isActive());
    QCoreApplication::processEvents();
    QVERIFY(fixture.watcher.boxes().isEmpty());
}

void RecordingDialogTest::requestedStopIsStillARecording()
{
    LiveRecording live;
    QVERIFY(live.fixture.show());
    live.fixture.record()->click();
    live.fixture.inject(1 + 10);
    live.fixture.stop()->click();
    live.fixture.dialog.close();
    QVERIFY(live.fixture.dialog.isVisible());
    QTRY_VERIFY(live.openBox());
    live.fixture.inject(1);
    QTRY_VERIFY(live.boxTitles().isEmpty());
    QVERIFY(live.fixture.isIdle());
    live.fixture.dialog.close();
    QVERIFY(!live.fixture.dialog.isVisible());
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
    answerFileDialog(&fixture.dialog, folder.filePath("curve.csv"), &seen);
    fixture.save()->click();
    QCOMPARE(seen, QStringList({"Select file", "CSV files(*.csv)"}));
    QFile file(folder.filePath("curve.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("1200,7,7\n"));
}

void RecordingDialogTest::csvIsAddedWhereItIsMissing_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("written");
    QTest::newRow("no extension") << "curve"
                                  << "curve.csv";
    QTest::newRow("something like one") << "bumper v1.2"
                                        << "bumper v1.2.csv";
    QTest::newRow("another one") << "curve.txt"
                                 << "curve.txt.csv";
    QTest::newRow("in capitals") << "CURVE.CSV"
                                 << "CURVE.CSV";
}

void RecordingDialogTest::csvIsAddedWhereItIsMissing()
{
    QFETCH(QString, typed);
    RecordingFixture fixture;
    const QTemporaryDir folder;
    answerFileDialog(&fixture.dialog, folder.filePath(typed));
    fixture.save()->click();
    QFETCH(QString, written);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList(written));
}

void RecordingDialogTest::existingFileIsReplacedAfterAQuestionOnly_data()
{
    QTest::addColumn<bool>("replace");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

void RecordingDialogTest::existingFileIsReplacedAfterAQuestionOnly()
{
    QFETCH(bool, replace);
    RecordingFixture fixture;
    fixture.watcher.setAnswer(replace ? QMessageBox::Yes : QMessageBox::No);
    const QTemporaryDir folder;
    writeFile(folder.filePath("curve.csv"), "former");
    whenOpened<QFileDialog>(&fixture.dialog, [&](QFileDialog& dialog) {
        dialog.selectFile(folder.filePath("curve"));
        QMetaObject::invokeMethod(&dialog, "accept");
        if (!replace) // it opens again
            answerFileDialog(&fixture.dialog, QString());
    });
    fixture.save()->click();
    QCOMPARE(fixture.watcher.boxes().size(), 1);
    QCOMPARE(contentOf(folder.filePath("curve.csv")), QByteArray(replace ? "" : "former"));
}

void RecordingDialogTest::fullDiskLeavesTheFormerFileWhole()
{
    RecordingFixture fixture;
    fixture.watcher.setAnswer(QMessageBox::Yes);
    fixture.record()->click();
    fixture.inject(1);
    fixture.inject(2, aMeasurement().withEcho(0, 1200, 7));
    fixture.stop()->click();
    fixture.inject(1);
    const QTemporaryDir folder;
    writeFile(folder.filePath("curve.csv"), "former");
    answerFileDialog(&fixture.dialog, folder.filePath("curve.csv"));
    {
        const FullDisk disk(4);
        fixture.save()->click();
    }
    QCOMPARE(fixture.watcher.boxes().size(), 2);
    QCOMPARE(fixture.watcher.boxes().last().title, QString("File error"));
    QCOMPARE(fixture.watcher.boxes().last().text, QString("Can't write to file."));
    QCOMPARE(contentOf(folder.filePath("curve.csv")), QByteArray("former"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList("curve.csv"));
}

void RecordingDialogTest::cancelledSaveWritesNothing()
{
    RecordingFixture fixture;
    QStringList seen;
    answerFileDialog(&fixture.dialog, QString(), &seen);
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
    answerFileDialog(&fixture.dialog, folder.filePath("gone/curve.csv"));
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

void RecordingDialogTest::guidePictureShowsTwoObstacles()
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
    QVERIFY(stickHeight(*fixture.plot(), 8000) > stickHeight(*fixture.plot(), 17000));
    QVERIFY(stickHeight(*fixture.plot(), 17000) > stickHeight(*fixture.plot(), 12500));
    QCOMPARE(stickHeight(*fixture.plot(), 12500), 0);
    saveScreenshot(fixture.dialog, "envelope-recording");
}

QTEST_MAIN(RecordingDialogTest)
#include "test_recording_dialog.moc"
