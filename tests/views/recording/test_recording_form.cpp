#include "tests/views/recording/RecordingFixture.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QtTest>

class RecordingFormTest : public QObject
{
    Q_OBJECT

private slots:
    void opensWithTheDefaults();
    void sensorsAreListedByTheirNumber();
    void partsCarryTheirTexts();
    void everyFieldHasAName();
    void windowFieldsTellTheirMilliseconds();
    void slotsStandInTheirOrder();

    void recordingStartsWithTheNextResult();
    void stopTakesEffectWithTheNextResult();
    void stopWhileIdleShowsNothing();
    void recordAfterStopStartsAgain();
    void tailOfAStoppedRecordingIsSharedWithTheNextDialog();

    void recordHandsTheFocusToStop();
    void keysStopTheRecordingAndChangeNoField_data();
    void keysStopTheRecordingAndChangeNoField();
    void enterInAFieldPressesNoButton();
    void endLeavesTheFocusOnSave();
};

void RecordingFormTest::opensWithTheDefaults()
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

void RecordingFormTest::sensorsAreListedByTheirNumber()
{
    const RecordingFixture fixture;
    QCOMPARE(fixture.sensor()->count(), 12);
    QCOMPARE(fixture.sensor()->itemText(0), QString("Sensor 1"));
    QCOMPARE(fixture.sensor()->itemText(11), QString("Sensor 12"));
}

void RecordingFormTest::partsCarryTheirTexts()
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

void RecordingFormTest::everyFieldHasAName()
{
    const RecordingFixture fixture;
    for (const QLabel* label : fixture.dialog.findChildren<QLabel*>())
        QVERIFY2(label->buddy(), qPrintable(label->text()));
    for (const char* name : {"mSensorCb", "mWindowLeftSb", "mWindowRightSb", "mLutStepSb",
                             "mSamplesCountSb", "mProgressBar", "mPlot"})
        QVERIFY2(!fixture.find<QWidget>(name)->accessibleName().isEmpty(), name);
}

void RecordingFormTest::windowFieldsTellTheirMilliseconds()
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

void RecordingFormTest::slotsStandInTheirOrder()
{
    const QMetaObject& meta = OrvgCurveRecordingDialog::staticMetaObject;
    QList<QByteArray> slotNames;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        slotNames << meta.method(i).methodSignature();
    QCOMPARE(slotNames,
             QList<QByteArray>({"onNewMeasResult(orv::OrvMeasurementResult)", "onRecordClicked()",
                                "onStopClicked()", "onSaveClicked()", "onWatchdogTimeout()"}));
}

void RecordingFormTest::recordingStartsWithTheNextResult()
{
    RecordingFixture fixture;
    fixture.inject(5);
    QVERIFY(fixture.isIdle());
    fixture.record()->click();
    QVERIFY(fixture.isRecording());
    fixture.inject(1);
    QVERIFY(fixture.isRecording());
    QVERIFY(fixture.ecu.requests().empty());
    fixture.inject(1);
    QVERIFY(fixture.isRecording());
    QCOMPARE(fixture.ecu.requests().size(), std::size_t{1});
}

void RecordingFormTest::stopTakesEffectWithTheNextResult()
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
    QVERIFY(fixture.ecu.requests().empty());
    QVERIFY(fixture.watcher.boxes().isEmpty());
}

void RecordingFormTest::stopWhileIdleShowsNothing()
{
    RecordingFixture fixture;
    fixture.dialog.onStopClicked();
    QVERIFY(fixture.isIdle());
    fixture.inject(1);
    QVERIFY(fixture.isIdle());
    QVERIFY(fixture.watcher.boxes().isEmpty());
}

void RecordingFormTest::recordAfterStopStartsAgain()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1 + 10);
    fixture.stop()->click();
    fixture.record()->click();
    QVERIFY(fixture.isRecording());
    fixture.inject(1 + 1);
    QVERIFY(fixture.isRecording());
}

void RecordingFormTest::tailOfAStoppedRecordingIsSharedWithTheNextDialog()
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

void RecordingFormTest::recordHandsTheFocusToStop()
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

void RecordingFormTest::keysStopTheRecordingAndChangeNoField_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("space") << int{Qt::Key_Space};
    QTest::newRow("return") << int{Qt::Key_Return};
    QTest::newRow("enter") << int{Qt::Key_Enter};
}

void RecordingFormTest::keysStopTheRecordingAndChangeNoField()
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

void RecordingFormTest::enterInAFieldPressesNoButton()
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

void RecordingFormTest::endLeavesTheFocusOnSave()
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

QTEST_MAIN(RecordingFormTest)
#include "test_recording_form.moc"
