#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/modal_dialogs.h"
#include "tests/support/screenshots.h"
#include "tests/views/thresholds/ThresholdViewFixture.h"
#include "views/thresholds/CalibrationDialog.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QtTest>

namespace {

CalibrationDialog* openDialog()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* dialog = qobject_cast<CalibrationDialog*>(widget))
            return dialog;
    }
    return nullptr;
}

// Counts how often a widget is painted.
class PaintCounter : public QObject
{
    Q_OBJECT

public:
    explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }

    int count() const { return mCount; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        mCount += event->type() == QEvent::Paint;
        return false;
    }

private:
    int mCount = 0;
};

} // namespace

class ThresholdCalibrationTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mFixture = std::make_unique<ThresholdViewFixture>();
        mHost = new QWidget;
        mFixture->view.setParent(mHost);
        mBoxes = std::make_unique<MessageBoxWatcher>();
    }

    void cleanup()
    {
        mBoxes.reset();
        mFixture.reset();
        delete mHost;
        QVERIFY(!openDialog());
    }

    void sendsTheSelectedSensor()
    {
        mFixture->setCurrent(4);
        mFixture->click("mCalibrateTb"); // no reply
        QCOMPARE(requests().size(), 1U);
        QCOMPARE(requests()[0][0], std::uint8_t{5});
        QCOMPARE(requests()[0][1], std::uint8_t{0});
        QCOMPARE(requests()[0][2], std::uint8_t{4});
    }

    void sendsNoSensorWithoutASelection()
    {
        mFixture->view.onAutoCalibrationStart();
        QCOMPARE(requests()[0][2], std::uint8_t{255});
    }

    void refusedStartIsShownAndKeepsThePeaks()
    {
        mFixture->socket.queueReply(5, {}, 3);
        mFixture->setCurrent(4);
        mFixture->receiveEcho(4, 15000);
        mFixture->view.onAutoCalibrationStart();
        expectOneBox("Communication error", "ECU error (3)");
        QVERIFY(mFixture->plotHasStickAt(15000));
        QVERIFY(!openDialog());
    }

    void dialogIsABusyIndicatorOverTheParent()
    {
        start(4, {0});
        const CalibrationDialog* dialog = openDialog();
        QVERIFY(dialog);
        QCOMPARE(dialog->parentWidget(), mHost);
        QCOMPARE(dialog->windowModality(), Qt::WindowModal);
        QCOMPARE(dialog->windowTitle(), QString("Tarvio"));
        QCOMPARE(dialog->labelText(), QString("Auto calibrating thresholds..."));
        QCOMPARE(dialog->findChild<QPushButton*>()->text(), QString("Abort"));
        QCOMPARE(dialog->minimum(), 0);
        QCOMPARE(dialog->maximum(), 100);
        QCOMPARE(dialog->value(), 0);
        QVERIFY(!dialog->findChild<QProgressBar*>()->isTextVisible());
        QVERIFY(!dialog->autoClose());
        QVERIFY(!dialog->autoReset());
        QVERIFY(dialog->isVisible());
    }

    void dialogIsPaintedBeforeTheFirstStep()
    {
        start(4, {0});
        PaintCounter label(openDialog()->findChild<QLabel*>());
        PaintCounter bar(openDialog()->findChild<QProgressBar*>());
        PaintCounter button(openDialog()->findChild<QPushButton*>());
        QTRY_VERIFY(label.count() && bar.count() && button.count());
        QCOMPARE(mFixture->clock.elapsedMs(), 0);
    }

    void barSwingsBackInverted()
    {
        start(4, {1, 0});
        const auto* bar = openDialog()->findChild<QProgressBar*>();
        mFixture->clock.runTo(1490);
        QCOMPARE(openDialog()->value(), 99);
        QVERIFY(!bar->invertedAppearance());
        mFixture->clock.runTo(1500);
        QCOMPARE(openDialog()->value(), 100);
        QVERIFY(bar->invertedAppearance());
        mFixture->clock.runTo(2490);
        QCOMPARE(openDialog()->value(), 1);
        QVERIFY(bar->invertedAppearance());
    }

    void barIsFilledFromTheSideItStartsAt()
    {
        start(4, {1, 0});
        mFixture->clock.runTo(800);
        const bool rising = isFilled(0.1) && !isFilled(0.9);
        QVERIFY(rising);
        mFixture->clock.runTo(2200);
        QCOMPARE(openDialog()->value(), 30);
        const bool falling = isFilled(0.9) && !isFilled(0.1);
        QVERIFY(falling);
    }

    void startEmptiesThePeaks()
    {
        mFixture->setCurrent(4);
        mFixture->receiveEcho(4, 15000);
        QVERIFY(mFixture->plotHasStickAt(15000));
        start(4, {-1});
        QVERIFY(!mFixture->plotHasStickAt(15000));
    }

    void liveEchoesAreShownMeanwhile()
    {
        start(4, {0});
        QTimer::singleShot(0, &mFixture->view, [this] { mFixture->receiveEcho(4, 15000); });
        QTRY_VERIFY(mFixture->plotHasStickAt(15000));
        QVERIFY(openDialog());
    }

    void finishedCalibrationReadsAndShowsTheNewThresholds()
    {
        start(4, {1, 0});
        mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(4, 0x5F, 3));
        runToItsEnd();
        QVERIFY(mBoxes->boxes().isEmpty());
        QCOMPARE(mFixture->model().record(4).entries[0], std::uint8_t{0x5F});
        QCOMPARE(mFixture->scaleBox().currentText(), QString("100%"));
        const QImage shown = mFixture->plot().grab().toImage();
        OrvgPlotWidget expected;
        expected.resize(mFixture->plot().size());
        expected.setThresholdColor("orange");
        expected.setThresholds(mFixture->model().record(4).entries);
        expected.setThresholdsShown(true);
        expected.setMarkedColumn(0);
        QCOMPARE(shown, expected.grab().toImage());
        expectSelected(4);
    }

    void finishedCalibrationWhoseReadFailsIsShown()
    {
        start(4, {0});
        runToItsEnd();
        expectOneBox("Communication error", "socket: receive timeout");
        expectSelected(4);
    }

    void finishedCalibrationWithoutASelectionAsksForOne()
    {
        start(-1, {0});
        runToItsEnd();
        expectOneBox("Read Thresholds", "Please select sensor first.");
        QVERIFY(!mFixture->table().currentIndex().isValid());
    }

    void abortByTheEcuIsShown()
    {
        start(4, {1, -1});
        runToItsEnd();
        expectOneBox("Calibration error",
                     "Calibration was aborted!\nPlease check sensor connection.");
        expectSelected(4);
    }

    void failedExchangeIsShown()
    {
        start(4, {1});
        runToItsEnd();
        expectOneBox("Communication error", "socket: receive timeout");
        QCOMPARE(requests().size(), 3U);
        expectSelected(4);
    }

    // The link is probed meanwhile, for one.
    void failedExchangeIsToldWithItsOwnError()
    {
        start(4, {1});
        mFixture->clock.runTo(60'000);
        orv::FirmwareVersion version;
        mFixture->socket.queueReply(2, {1}, 7);
        QVERIFY(!mFixture->client.readFirmwareVersion(version));
        QCoreApplication::processEvents();
        expectOneBox("Communication error", "socket: receive timeout");
    }

    void endlessCalibrationTimesOutAfterTwentyOneSweeps()
    {
        start(4, std::vector<std::int8_t>(30, 1));
        runToItsEnd();
        expectOneBox("Calibration error", "Calibration time out.");
        QCOMPARE(requests().size(), 22U);
        QCOMPARE(mFixture->clock.elapsedMs(), 21500);
        expectSelected(4);
    }

    void dialogIsGoneWhenTheEndIsTold()
    {
        start(4, {-1});
        mBoxes.reset();
        QString open = "no box";
        whenOpened<QMessageBox>(mHost, [&](QMessageBox& box) {
            open = openDialog() ? "dialog and box" : "box alone";
            box.accept();
        });
        runToItsEnd();
        QCOMPARE(open, QString("box alone"));
    }

    void endIsToldAfterTheTickThatEndedIt()
    {
        start(4, {-1});
        mBoxes.reset();
        bool isTicking = true;
        QString told;
        whenOpened<QMessageBox>(mHost, [&](QMessageBox& box) {
            told = isTicking ? "inside the tick" : "after it";
            box.accept();
        });
        mFixture->clock.runTo(60'000);
        isTicking = false;
        QTRY_COMPARE(told, QString("after it"));
    }

    void abortButtonEscapeAndCloseDoNotEndIt()
    {
        start(4, {1, 0});
        mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(4));
        int visible = 0;
        connect(&mFixture->clock, &CalibrationClock::ticked, mHost, [&] {
            CalibrationDialog* dialog = openDialog();
            if (!dialog)
                return;
            QTest::mouseClick(dialog->findChild<QPushButton*>(), Qt::LeftButton);
            QTest::keyClick(dialog, Qt::Key_Escape);
            dialog->close();
            visible += dialog->isVisible();
        });
        runToItsEnd();
        QCOMPARE(visible, 249);
        QVERIFY(mBoxes->boxes().isEmpty());
        QCOMPARE(mFixture->model().record(4).scale, std::uint8_t{1});
    }

    void windowIsBlockedMeanwhile()
    {
        mHost->resize(mFixture->view.size());
        mHost->show();
        mFixture->socket.queueReply(5, {});
        mFixture->setCurrent(4);
        clickThroughTheWindow("mResetTb");
        clickThroughTheWindow("mCalibrateTb");
        QVERIFY(openDialog());
        QCOMPARE(requests().size(), 1U);
        clickThroughTheWindow("mWriteTb");
        clickThroughTheWindow("mCalibrateTb");
        QCOMPARE(requests().size(), 1U);
    }

    void secondStartWhileOneRunsIsIgnored()
    {
        start(4, {0});
        mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(4));
        CalibrationDialog* dialog = openDialog();
        mFixture->view.onAutoCalibrationStart();
        QCOMPARE(openDialog(), dialog);
        runToItsEnd();
        QCOMPARE(requests().size(), 3U);
        QVERIFY(mBoxes->boxes().isEmpty());
    }

    void anotherCalibrationFollows()
    {
        start(4, {-1});
        runToItsEnd();
        start(4, {-1});
        QVERIFY(openDialog());
        runToItsEnd();
        QCOMPARE(mBoxes->boxes().size(), 2);
    }

    void destroyedWithItsWindowOrAlone_data()
    {
        QTest::addColumn<bool>("alone");
        QTest::newRow("window and all") << false;
        QTest::newRow("view alone") << true;
    }

    void destroyedWithItsWindowOrAlone()
    {
        QFETCH(bool, alone);
        ScriptedControlSocket socket;
        socket.queueReply(5, {});
        orv::OrvCtrlClient client(&socket);
        ManualClock clock;
        auto host = std::make_unique<QWidget>();
        auto* view = new OrvgThresholdView(host.get(), &clock);
        view->setCtrlClient(&client);
        view->onAutoCalibrationStart();
        QVERIFY(openDialog());
        clock.runTo(700);
        if (alone)
            delete view;
        else
            host.reset();
        QVERIFY(!openDialog());
        clock.runTo(3000);
        QCOMPARE(socket.requests().size(), 1U);
        QVERIFY(mBoxes->boxes().isEmpty());
    }

    void guidePictureShowsABarOnItsWay()
    {
        start(4, {-1});
        mFixture->clock.runTo(1100);
        QCOMPARE(openDialog()->value(), 60);
        QVERIFY(isFilled(0.5));
        QVERIFY(!isFilled(0.7));
        saveScreenshot(*openDialog(), "thresholds-calibration");
    }

private:
    const std::vector<std::vector<std::uint8_t>>& requests() const
    {
        return mFixture->socket.requests();
    }

    // Lets the start succeed and the state reads give `states`; no sensor for -1.
    void start(int sensor, const std::vector<std::int8_t>& states)
    {
        mFixture->socket.queueReply(5, {});
        for (const std::int8_t state : states)
            mFixture->socket.queueReply(5, {static_cast<std::uint8_t>(state)});
        mFixture->setCurrent(sensor);
        mFixture->click("mCalibrateTb");
    }

    // What follows the end comes from the event loop.
    void runToItsEnd()
    {
        mFixture->clock.runTo(60'000);
        QCoreApplication::processEvents();
    }

    // Whether the bar is filled at this fraction of its width.
    static bool isFilled(double place)
    {
        const QImage bar = openDialog()->findChild<QProgressBar*>()->grab().toImage();
        const QColor color =
            bar.pixelColor(static_cast<int>(place * bar.width()), bar.height() / 2);
        return color.saturation() > 100;
    }

    // As the window system delivers it: a blocked window gets nothing.
    void clickThroughTheWindow(const char* button)
    {
        const auto& target = mFixture->part<QToolButton>(button);
        QTest::mouseClick(mHost->windowHandle(), Qt::LeftButton, {},
                          target.mapTo(mHost, target.rect().center()));
    }

    void expectOneBox(const QString& title, const QString& text)
    {
        QCOMPARE(mBoxes->boxes().size(), 1);
        QCOMPARE(mBoxes->boxes()[0].title, title);
        QCOMPARE(mBoxes->boxes()[0].text, text);
    }

    void expectSelected(int row)
    {
        QVERIFY(mFixture->table().selectionModel()->isRowSelected(row, {}));
    }

    std::unique_ptr<ThresholdViewFixture> mFixture;
    std::unique_ptr<MessageBoxWatcher> mBoxes;
    QWidget* mHost = nullptr;
};

QTEST_MAIN(ThresholdCalibrationTest)
#include "test_threshold_calibration.moc"
