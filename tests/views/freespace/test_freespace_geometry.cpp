#include "tests/support/FreespaceBuilder.h"
#include "views/freespace/freespace_geometry.h"

#include <QtTest>

#include <limits>

namespace {

QPolygonF polygon(std::initializer_list<QPointF> points)
{
    return QVector<QPointF>(points);
}

// anEntry() without distances: the corners as they appear in the scene.
const QPolygonF kCorners = polygon({{100, -500}, {2100, -500}, {2100, 500}, {100, 500}});

QPolygonF outlineAround(const QPolygonF& chain)
{
    return kCorners + chain + polygon({{100, -500}});
}

QPolygonF wedgeAround(const QPolygonF& chain)
{
    return polygon({{100, 500}}) + chain + polygon({{100, -500}, {100, 500}});
}

void compareChain(const orv::OrvFreespaceEntry& entry, const QPolygonF& chain)
{
    const freespace::Shape shape = freespace::shapeOf(entry);
    QCOMPARE(shape.outline, outlineAround(chain));
    QCOMPARE(shape.wedge, wedgeAround(chain));
}

} // namespace

class FreespaceGeometryTest : public QObject
{
    Q_OBJECT

private slots:
    void entryWithoutDistancesIsItsFieldOfView() { compareChain(anEntry(0), {}); }

    void obstaclesAreChainedFromRightToLeftWithTheirPointsSwapped()
    {
        compareChain(
            anEntry(0)
                .withDistance(0, 900, {900, 400}, {900, 150})
                .withDistance(1, 800, {800, 100}, {800, -100})
                .withDistance(2, 700, {700, -150}, {700, -400}),
            polygon({{700, 400}, {700, 150}, {800, 100}, {800, -100}, {900, -150}, {900, -400}}));
    }

    void wedgesWithoutObstacleFollowTheArc()
    {
        compareChain(
            anEntry(0).withDistance(0, 0).withDistance(1, 0).withDistance(2, 0),
            polygon(
                {{2100, 500}, {2300, 200}, {2300, 200}, {2300, -200}, {2300, -200}, {2100, -500}}));
    }

    void absentDistanceLeavesAGap()
    {
        compareChain(anEntry(0).withDistance(0, 900, {900, 400}, {900, 150}).withDistance(2, 0),
                     polygon({{2100, 500}, {2300, 200}, {900, -150}, {900, -400}}));
    }

    void firstPointOnTheAxisOfTheVehicleCountsAsNoObstacle()
    {
        compareChain(anEntry(0).withDistance(1, 800, {0, 100}, {800, -100}),
                     polygon({{2300, 200}, {2300, -200}}));
    }

    void pairThatStartsAtTheOriginIsLeftOut()
    {
        compareChain(anEntry(0).withDistance(1, 800, {800, 100}, {0, 0}), {});
        orv::OrvFreespaceEntry entry = anEntry(0).withDistance(0, 0).withDistance(2, 0);
        entry.corners[2] = {};
        QCOMPARE(freespace::shapeOf(entry).wedge,
                 wedgeAround(polygon({{2300, -200}, {2100, -500}})));
    }

    void pairThatStartsOnAnAxisIsKept()
    {
        compareChain(anEntry(0).withDistance(1, 800, {800, 100}, {0, 7}),
                     polygon({{0, -7}, {800, -100}}));
    }

    void gradientsRunAcrossTheFieldOfView()
    {
        orv::OrvFreespaceEntry entry = anEntry(0);
        entry.corners = {{{101, 500}, {2100, 503}, {2100, -500}, {-101, -505}}};
        const freespace::Shape shape = freespace::shapeOf(entry);
        QCOMPARE(shape.distanceGradient, QLineF(2100, -503, 2100, 500));
        QCOMPARE(shape.areaGradient, QLineF(1100, -501, 999, 502));
    }

    void halvesAreTakenBeforeTheAxisIsTurned()
    {
        orv::OrvFreespaceEntry entry = anEntry(0);
        entry.corners = {{{0, -3}, {0, 0}, {-3, 3}, {0, 0}}};
        QCOMPARE(freespace::shapeOf(entry).areaGradient, QLineF(0, 1, -1, -1));
    }

    void extremePointsAreNotWrapped()
    {
        orv::OrvFreespaceEntry entry = anEntry(0);
        entry.corners.fill({-32768, -32768});
        const freespace::Shape shape = freespace::shapeOf(entry);
        QCOMPARE(shape.outline[0], QPointF(-32768, 32768));
        QCOMPARE(shape.areaGradient, QLineF(-32768, 32768, -32768, 32768));
    }

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

    void wheelDeltasBecomeWholeSteps()
    {
        QCOMPARE(freespace::zoomSteps(120), 1);
        QCOMPARE(freespace::zoomSteps(-120), -1);
        QCOMPARE(freespace::zoomSteps(63), 0);
        QCOMPARE(freespace::zoomSteps(-63), 0);
        QCOMPARE(freespace::zoomSteps(-128), -2);
    }

    void zoomIsRefusedAtTheEnds()
    {
        QVERIFY(!freespace::canZoom(0.01, -1));
        QVERIFY(freespace::canZoom(0.0101, -1));
        QVERIFY(freespace::canZoom(0.01, 1));
        QVERIFY(!freespace::canZoom(2.0, 1));
        QVERIFY(freespace::canZoom(1.99, 1));
        QVERIFY(freespace::canZoom(2.0, -1));
        QVERIFY(!freespace::canZoom(0.05, 0));
    }

    void stepsAgainstThePendingOnesReplaceThemUnlessTheyWin_data()
    {
        QTest::addColumn<int>("pending");
        QTest::addColumn<int>("steps");
        QTest::addColumn<int>("after");
        QTest::newRow("first") << 0 << 3 << 3;
        QTest::newRow("more") << 3 << 3 << 6;
        QTest::newRow("taken back") << 3 << -3 << 0;
        QTest::newRow("replaced") << 6 << -3 << -3;
        QTest::newRow("outvoted") << 1 << -3 << -2;
        QTest::newRow("replaced, inwards") << -6 << 3 << 3;
        QTest::newRow("at most") << 99 << 3 << 100;
        QTest::newRow("huge") << 100 << std::numeric_limits<int>::max() << 100;
        QTest::newRow("huge back") << -100 << std::numeric_limits<int>::min() << -100;
    }

    void stepsAgainstThePendingOnesReplaceThemUnlessTheyWin()
    {
        QFETCH(int, pending);
        QFETCH(int, steps);
        QTEST(freespace::pendingStepsAfter(pending, steps), "after");
    }

    void animationsTakePendingStepsTowardsZero()
    {
        QCOMPARE(freespace::pendingStepsAfterAnimation(3), 2);
        QCOMPARE(freespace::pendingStepsAfterAnimation(-3), -2);
        QCOMPARE(freespace::pendingStepsAfterAnimation(0), 1);
    }

    void zoomFactorGrowsWithThePendingSteps()
    {
        QCOMPARE(freespace::zoomFactor(3, 0.05), 1.01);
        QCOMPARE(freespace::zoomFactor(-30, 0.05), 0.9);
        QCOMPARE(freespace::zoomFactor(0, 0.05), 1.0);
    }

    void pictureNeverVanishes()
    {
        QCOMPARE(freespace::zoomFactor(-100, 0.0011), 1.0);
        QCOMPARE(freespace::zoomFactor(100, 19.0), 1.0);
        QCOMPARE(freespace::zoomFactor(3, 2.0), 1.01);
        QCOMPARE(freespace::zoomFactor(-3, 0.01), 0.99);
    }
};

QTEST_APPLESS_MAIN(FreespaceGeometryTest)
#include "test_freespace_geometry.moc"
