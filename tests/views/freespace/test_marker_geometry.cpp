#include "views/freespace/marker_geometry.h"

#include <QtTest>

#include <limits>

class MarkerGeometryTest : public QObject
{
    Q_OBJECT

private slots:
    void scenePointsBecomeWholeMillimetres()
    {
        const orv::OrvSensorPosition turned{.leadingWord = 7, .x = 1, .y = 2, .direction = 9};
        const auto moved = freespace::movedToScene(turned, {1000.6, -250.4});
        QVERIFY((moved == orv::OrvSensorPosition{7, 1001, 250, 9}));
    }

    void scenePointsBeyondAPositionStayAtItsEdge()
    {
        const auto far = freespace::movedToScene({}, {1e9, 1e9});
        QVERIFY((far == orv::OrvSensorPosition{0, 32767, -32768, 0}));
        QCOMPARE(freespace::boundedToVehicle({-1e9, -1e9}), QPointF(-32768, -32767));
        QCOMPARE(freespace::boundedToVehicle({12.5, -3.5}), QPointF(12.5, -3.5));
    }

    void directionsAreDegreesOfAFullTurn_data()
    {
        QTest::addColumn<double>("degrees");
        QTest::addColumn<int>("direction");
        QTest::newRow("ahead") << 0.0 << 0;
        QTest::newRow("smallest") << 0.01 << 1;
        QTest::newRow("truncated") << 90.0 << 16383;
        QTest::newRow("with a fraction") << 12.5 << 2275;
        QTest::newRow("whole units") << 24.0 << 4369;
        QTest::newRow("nearly round") << 359.99 << 65533;
        QTest::newRow("round") << 360.0 << 65535;
        QTest::newRow("above") << 360.01 << 0;
        QTest::newRow("below") << -0.01 << 65535;
    }

    void directionsAreDegreesOfAFullTurn()
    {
        QFETCH(double, degrees);
        QTEST(static_cast<int>(freespace::directionOf(degrees)), "direction");
    }

    void fullTurnIsTheLargestDirection()
    {
        QCOMPARE(freespace::directionInDegrees(65535), 360.0);
        QCOMPARE(freespace::directionInDegrees(0), 0.0);
        QCOMPARE(freespace::directionInDegrees(4369), 24.0);
    }

    void wheelTurnsBySixtiethsOfItsDelta_data()
    {
        QTest::addColumn<int>("direction");
        QTest::addColumn<int>("delta");
        QTest::addColumn<int>("turned");
        QTest::newRow("notch forward") << 0 << 120 << 364;
        QTest::newRow("notch back") << 4369 << -120 << 4004;
        QTest::newRow("fine wheel") << 0 << 15 << 45;
        QTest::newRow("no turn") << 12345 << 0 << 12345;
        QTest::newRow("up to the end") << 65535 - 364 << 119 << 65532;
        QTest::newRow("past 360") << 65400 << 120 << 0;
        QTest::newRow("past 0") << 100 << -120 << 65535;
        QTest::newRow("from 360") << 65535 << 120 << 0;
        QTest::newRow("from 0") << 0 << -120 << 65535;
        QTest::newRow("huge") << 1 << std::numeric_limits<int>::max() << 0;
        QTest::newRow("huge back") << 1 << std::numeric_limits<int>::min() << 65535;
    }

    void wheelTurnsBySixtiethsOfItsDelta()
    {
        QFETCH(int, direction);
        QFETCH(int, delta);
        QTEST(static_cast<int>(
                  freespace::turnedDirection(static_cast<std::uint16_t>(direction), delta)),
              "turned");
    }

    void pieOpensSymmetricallyAroundItsDirection()
    {
        QCOMPARE(freespace::pieAngles(0, 60).start, -480);
        QCOMPARE(freespace::pieAngles(0, 60).span, 960);
        QCOMPARE(freespace::pieAngles(16384, 60).start, 960); // 90.0014 degrees
        QCOMPARE(freespace::pieAngles(65535, 60).start, 5280);
        QCOMPARE(freespace::pieAngles(4369, 45).start, 24); // (24 - 22.5) * 16
    }

    void labelLiesOutAlongTheDirection()
    {
        const auto ahead = freespace::labelPosition(0, {40, 80});
        QVERIFY2(qAbs(ahead.x() - 80) < 1e-9 && qAbs(ahead.y() + 40) < 1e-9, "ahead");
        const auto left = freespace::labelPosition(16384, {40, 80}); // up in the picture
        QVERIFY2(qAbs(left.x() + 20) < 0.01 && qAbs(left.y() + 140) < 0.01, "left");
        const auto oddSize = freespace::labelPosition(0, {41, 81});
        QVERIFY2(qAbs(oddSize.x() - 79.5) < 1e-9 && qAbs(oddSize.y() + 40.5) < 1e-9, "odd size");
    }
};

QTEST_APPLESS_MAIN(MarkerGeometryTest)
#include "test_marker_geometry.moc"
