#include "tests/support/FreespaceBuilder.h"
#include "views/freespace/freespace_shape.h"

#include <QtTest>

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

class FreespaceShapeTest : public QObject
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
};

QTEST_APPLESS_MAIN(FreespaceShapeTest)
#include "test_freespace_shape.moc"
