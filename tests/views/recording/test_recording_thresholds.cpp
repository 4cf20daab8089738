#include "tests/views/recording/RecordingFixture.h"

#include <QtTest>

class RecordingThresholdsTest : public QObject
{
    Q_OBJECT

private slots:
    void sensorIsTheChosenOne();
    void settingsMayChangeWhileRecording();
    void progressFollowsThePosition();
    void stepOverTheEndFillsTheProgress();

    void thresholdsInUseAreDrawn();
    void thresholdsAreDrawnInTheirColour();
};

void RecordingThresholdsTest::sensorIsTheChosenOne()
{
    RecordingFixture fixture;
    fixture.sensor()->setCurrentIndex(4);
    fixture.record()->click();
    fixture.inject(1 + 1);
    QCOMPARE(int{fixture.ecu.requests().back().code}, 1);
    QCOMPARE(int{fixture.ecu.requests().back().payload.at(1)}, 4);
}

void RecordingThresholdsTest::settingsMayChangeWhileRecording()
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

void RecordingThresholdsTest::progressFollowsThePosition()
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

void RecordingThresholdsTest::stepOverTheEndFillsTheProgress()
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

void RecordingThresholdsTest::thresholdsInUseAreDrawn()
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

void RecordingThresholdsTest::thresholdsAreDrawnInTheirColour()
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

QTEST_MAIN(RecordingThresholdsTest)
#include "test_recording_thresholds.moc"
