#include "orv_decoder/metatypes.h"
#include "views/freespace/OrvgSensorParameterWidget.h"

#include <QDoubleSpinBox>
#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QtTest>

namespace {

class Widget : public OrvgSensorParameterWidget
{
public:
    template<typename Editor>
    Editor& editor(const char* name)
    {
        return *findChild<Editor*>(QLatin1String(name));
    }

    QSpinBox& x() { return editor<QSpinBox>("mXSB"); }
    QSpinBox& y() { return editor<QSpinBox>("mYSB"); }
    QDoubleSpinBox& angle() { return editor<QDoubleSpinBox>("mAngleSpinBox"); }
    QSlider& slider() { return editor<QSlider>("mAngleSlider"); }

    std::vector<orv::OrvSensorPosition> takeEmitted()
    {
        std::vector<orv::OrvSensorPosition> positions;
        while (!mEmitted.isEmpty())
            positions.push_back(mEmitted.takeFirst()[0].value<orv::OrvSensorPosition>());
        return positions;
    }

    // Every signal of one user action carries the same values.
    bool emittedOnly(const orv::OrvSensorPosition& expected)
    {
        const auto emitted = takeEmitted();
        return !emitted.empty() &&
               std::all_of(emitted.begin(), emitted.end(),
                           [&](const auto& position) { return position == expected; });
    }

private:
    QSignalSpy mEmitted{this, &OrvgSensorParameterWidget::sensorParameterChanged};
};

void type(QAbstractSpinBox& editor, const char* text)
{
    editor.selectAll();
    QTest::keyClicks(&editor, QLatin1String(text));
    QTest::keyClick(&editor, Qt::Key_Return);
}

} // namespace

class SensorParameterWidgetTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { orv::registerMetaTypes(); }

    void startsWithoutASensor()
    {
        Widget widget;
        QVERIFY(!widget.isEnabled());
        QCOMPARE(widget.title(), QString("Sensor configuration  "));
    }

    void editorsHaveTheirRanges()
    {
        Widget widget;
        QCOMPARE(widget.x().minimum(), -30000);
        QCOMPARE(widget.x().maximum(), 30000);
        QCOMPARE(widget.y().minimum(), -30000);
        QCOMPARE(widget.y().maximum(), 30000);
        QCOMPARE(widget.x().suffix(), QString(" mm"));
        QCOMPARE(widget.angle().maximum(), 360.0);
        QCOMPARE(widget.angle().minimum(), 0.0);
        QCOMPARE(widget.angle().suffix(), QString(QChar(0x00B0)));
        QCOMPARE(widget.slider().maximum(), 360);
        QCOMPARE(widget.slider().tickInterval(), 36);
        QCOMPARE(widget.slider().tickPosition(), QSlider::TicksBothSides);
    }

    void labelsBelongToTheirEditors()
    {
        Widget widget;
        QStringList texts;
        for (const QLabel* label : widget.findChildren<QLabel*>()) {
            QVERIFY(label->buddy());
            texts << label->text();
        }
        texts.sort();
        QCOMPARE(texts, QStringList({"Beam angle:", "X:", "Y:"}));
    }

    void shownSensorFillsTheEditors()
    {
        Widget widget;
        widget.showSensor(11, {0, 2500, -900, 16400});
        QVERIFY(widget.isEnabled());
        QCOMPARE(widget.title(), QString("Sensor 12 "));
        QCOMPARE(widget.x().value(), 2500);
        QCOMPARE(widget.y().value(), -900);
        QCOMPARE(widget.angle().value(), 90.09);
        QCOMPARE(widget.slider().value(), 90);
    }

    void sliderShowsTheWholeDegreesOfTheShownAngle()
    {
        Widget widget;
        widget.showSensor(3, {0, 1, 2, 16383}); // 89.996 degrees
        QCOMPARE(widget.angle().value(), 90.0);
        QCOMPARE(widget.slider().value(), 90);
    }

    void shownSensorIsNotChangedByBeingShown()
    {
        Widget widget;
        widget.showSensor(3, {0, 1, 2, 16400});
        widget.showSensor(4, {0, 30001, -30001, 40000});
        QVERIFY(widget.takeEmitted().empty());
    }

    void noSensorDisablesTheEditors()
    {
        Widget widget;
        widget.showSensor(3, {0, 1, 2, 3});
        widget.showSensor(255, {});
        QVERIFY(!widget.isEnabled());
        QCOMPARE(widget.title(), QString("Sensor configuration  "));
        widget.showSensor(12, {});
        QVERIFY(!widget.isEnabled());
    }

    void typedCoordinatesAreReported()
    {
        Widget widget;
        widget.showSensor(3, {0, 100, 200, 4369});
        type(widget.x(), "-1500");
        QVERIFY((widget.takeEmitted().back() == orv::OrvSensorPosition{0, -1500, 200, 4369}));
        type(widget.y(), "30000");
        QVERIFY((widget.takeEmitted().back() == orv::OrvSensorPosition{0, -1500, 30000, 4369}));
    }

    void arrowKeysStepACoordinate()
    {
        Widget widget;
        widget.showSensor(3, {0, 100, 200, 4369});
        QTest::keyClick(&widget.x(), Qt::Key_Up);
        QVERIFY(widget.emittedOnly({0, 101, 200, 4369}));
    }

    void typedAngleMovesTheSlider()
    {
        Widget widget;
        widget.showSensor(3, {0, 1, 2, 0});
        widget.angle().setValue(12.5);
        QCOMPARE(widget.slider().value(), 12);
        QCOMPARE(widget.angle().value(), 12.5);
        QVERIFY(widget.emittedOnly({0, 1, 2, 2275}));
    }

    void sliderMovesTheAngle()
    {
        Widget widget;
        widget.showSensor(3, {0, 1, 2, 0});
        widget.slider().setValue(24);
        QCOMPARE(widget.angle().value(), 24.0);
        QVERIFY(widget.emittedOnly({0, 1, 2, 4369}));
    }

    void keysMoveTheSlider()
    {
        Widget widget;
        widget.showSensor(3, {0, 1, 2, 0});
        QTest::keyClick(&widget.slider(), Qt::Key_End);
        QCOMPARE(widget.angle().value(), 360.0);
        QVERIFY(widget.emittedOnly({0, 1, 2, 65535}));
    }

    void anglesAboveTheFullTurnCannotBeTyped()
    {
        Widget widget;
        widget.showSensor(3, {0, 1, 2, 0});
        type(widget.angle(), "400");
        QCOMPARE(widget.angle().value(), 40.0);
        type(widget.angle(), "360");
        QVERIFY((widget.takeEmitted().back() == orv::OrvSensorPosition{0, 1, 2, 65535}));
    }
};

QTEST_MAIN(SensorParameterWidgetTest)
#include "test_sensor_parameter_widget.moc"
