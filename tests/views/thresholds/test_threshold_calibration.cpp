#include "tests/support/screenshots.h"
#include "tests/views/thresholds/ThresholdViewFixture.h"
#include "views/thresholds/CalibrationDialog.h"

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
        QVERIFY(!openDialog());
        mBoxes.reset();
        mFixture.reset();
        delete mHost;
    }

    void sendsTheSelectedSensor()
    {
        mFixture->select(4);
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
        mFixture->select(4);
        mFixture->receiveEcho(4, 15000);
        mFixture->view.onAutoCalibrationStart();
        expectOneBox("Communication error", "ECU error (3)");
        QVERIFY(mFixture->plotHasStickAt(15000));
    }

    void dialogIsABusyIndicatorOverTheParent()
    {
        start(4, {0});
        mFixture->view.setCalibrationWaiting([this](int ms) {
            if (ms != 500)
                return;
            CalibrationDialog* dialog = openDialog();
            QVERIFY(dialog);
            QCOMPARE(dialog->parentWidget(), mHost);
            QCOMPARE(dialog->windowModality(), Qt::WindowModal);
            QCOMPARE(dialog->labelText(), QString("Auto calibrating thresholds..."));
            QCOMPARE(dialog->findChild<QPushButton*>()->text(), QString("Abort"));
            QCOMPARE(dialog->minimum(), 0);
            QCOMPARE(dialog->maximum(), 100);
            QCOMPARE(dialog->value(), 0);
            QVERIFY(!dialog->findChild<QProgressBar*>()->isTextVisible());
            QVERIFY(!dialog->autoClose());
            QVERIFY(!dialog->autoReset());
            QVERIFY(dialog->isVisible());
            mWasChecked = true;
        });
        mFixture->view.onAutoCalibrationStart();
        QVERIFY(mWasChecked);
    }

    void barSwingsBackInverted()
    {
        start(4, {1, 0});
        int lastValue = -1;
        bool lastInverted = false;
        mFixture->view.setCalibrationWaiting([&](int) {
            lastValue = openDialog()->value();
            lastInverted = openDialog()->findChild<QProgressBar*>()->invertedAppearance();
        });
        mFixture->view.onAutoCalibrationStart();
        QCOMPARE(lastValue, 1);
        QVERIFY(lastInverted);
    }

    void startEmptiesThePeaks()
    {
        start(4, {-1});
        mFixture->receiveEcho(4, 15000);
        mFixture->view.onAutoCalibrationStart();
        QVERIFY(!mFixture->plotHasStickAt(15000));
    }

    void finishedCalibrationReadsAndShowsTheNewThresholds()
    {
        start(4, {1, 0});
        mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(4, 0x5F, 3));
        mFixture->view.onAutoCalibrationStart();
        QVERIFY(mBoxes->boxes().isEmpty());
        QCOMPARE(mFixture->model().record(4).entries[0], std::uint8_t{0x5F});
        QCOMPARE(mFixture->scaleBox().currentText(), QString("100%"));
        expectSelected(4);
    }

    void finishedCalibrationWhoseReadFailsIsShown()
    {
        start(4, {0});
        mFixture->view.onAutoCalibrationStart();
        expectOneBox("Communication error", "socket: receive timeout");
        expectSelected(4);
    }

    void finishedCalibrationWithoutASelectionAsksForOne()
    {
        mFixture->socket.queueReply(5, {});
        mFixture->socket.queueReply(5, {0});
        mFixture->view.onAutoCalibrationStart();
        expectOneBox("Read Thresholds", "Please select sensor first.");
        QVERIFY(!mFixture->table().currentIndex().isValid());
    }

    void abortByTheEcuIsShown()
    {
        start(4, {1, -1});
        mFixture->view.onAutoCalibrationStart();
        expectOneBox("Calibration error",
                     "Calibration was aborted!\nPlease check sensor connection.");
        expectSelected(4);
    }

    void failedExchangeIsShown()
    {
        start(4, {1});
        mFixture->view.onAutoCalibrationStart();
        expectOneBox("Communication error", "socket: receive timeout");
        QCOMPARE(requests().size(), 3U);
        expectSelected(4);
    }

    void endlessCalibrationTimesOutAfterTwentyOneSweeps()
    {
        start(4, std::vector<std::int8_t>(30, 1));
        int waitedMs = 0;
        mFixture->view.setCalibrationWaiting([&](int ms) { waitedMs += ms; });
        mFixture->view.onAutoCalibrationStart();
        expectOneBox("Calibration error", "Calibration time out.");
        QCOMPARE(requests().size(), 22U);
        QCOMPARE(waitedMs, 21500);
        expectSelected(4);
    }

    void abortButtonEscapeAndCloseDoNotEndIt()
    {
        start(4, {1, 0});
        mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(4));
        int visibleSteps = 0;
        mFixture->view.setCalibrationWaiting([&](int) {
            CalibrationDialog* dialog = openDialog();
            dialog->findChild<QPushButton*>()->click();
            QTest::keyClick(dialog, Qt::Key_Escape);
            dialog->close();
            visibleSteps += dialog->isVisible();
        });
        mFixture->view.onAutoCalibrationStart();
        QCOMPARE(visibleSteps, 201);
        QVERIFY(mBoxes->boxes().isEmpty());
        QCOMPARE(mFixture->model().record(4).scale, std::uint8_t{1});
    }

    void secondStartWhileOneRunsIsIgnored()
    {
        start(4, {0});
        mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(4));
        mFixture->view.setCalibrationWaiting(
            [this](int) { mFixture->view.onAutoCalibrationStart(); });
        mFixture->view.onAutoCalibrationStart();
        QCOMPARE(requests().size(), 3U);
        QVERIFY(mBoxes->boxes().isEmpty());
    }

    void closedWindowEndsTheWaitingQuietly()
    {
        start(4, std::vector<std::int8_t>(30, 1));
        mHost->show();
        int steps = 0;
        mFixture->view.setCalibrationWaiting([&](int) {
            if (++steps == 50)
                mHost->close();
        });
        mFixture->view.onAutoCalibrationStart();
        QCOMPARE(steps, 50);
        QVERIFY(mBoxes->boxes().isEmpty());
        expectSelected(4);
    }

    void viewDestroyedMeanwhileIsSurvived_data()
    {
        QTest::addColumn<bool>("byAnEvent");
        QTest::newRow("by an event of the dialog") << true;
        QTest::newRow("between two steps") << false;
    }

    void viewDestroyedMeanwhileIsSurvived()
    {
        QFETCH(bool, byAnEvent);
        ScriptedControlSocket socket;
        socket.queueReply(5, {});
        orv::OrvCtrlClient client(&socket);
        QPointer<QWidget> host(new QWidget);
        auto* view = new OrvgThresholdView(host);
        view->setCtrlClient(&client);
        view->setCalibrationWaiting([=](int) {
            if (byAnEvent)
                QTimer::singleShot(0, host, [host] { delete host; });
            else
                delete host;
        });
        view->onAutoCalibrationStart();
        QVERIFY(!host);
        QCOMPARE(socket.requests().size(), 1U);
    }

    void looksAsInTheGuide()
    {
        start(4, {-1});
        mFixture->view.setCalibrationWaiting([](int) {
            if (openDialog()->value() == 60)
                saveScreenshot(*openDialog(), "thresholds-calibration");
        });
        mFixture->view.onAutoCalibrationStart();
        QCOMPARE(mBoxes->boxes().size(), 1);
    }

private:
    const std::vector<std::vector<std::uint8_t>>& requests() const
    {
        return mFixture->socket.requests();
    }

    // Lets the start succeed and the state reads give `states`.
    void start(int sensor, const std::vector<std::int8_t>& states)
    {
        mFixture->socket.queueReply(5, {});
        for (const std::int8_t state : states)
            mFixture->socket.queueReply(5, {static_cast<std::uint8_t>(state)});
        mFixture->select(sensor);
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
    bool mWasChecked = false;
};

QTEST_MAIN(ThresholdCalibrationTest)
#include "test_threshold_calibration.moc"
