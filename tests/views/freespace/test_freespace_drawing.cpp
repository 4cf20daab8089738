#include "tests/support/FreespaceBuilder.h"
#include "tests/views/freespace/picture.h"

#include <QGraphicsPolygonItem>
#include <QHelpEvent>
#include <QToolTip>
#include <QtTest>

namespace {

orv::OrvFreespacePackage packageOf(const std::vector<std::uint8_t>& ids)
{
    orv::OrvFreespacePackage package{.valid = true, .entries = {}};
    for (std::uint8_t id : ids)
        package.entries.push_back(anEntry(id));
    return package;
}

void send(OrvgFreespaceGraphicsView& view, const orv::OrvFreespacePackage& package, int count)
{
    for (int i = 0; i < count; ++i)
        view.onNewFreespacePackage(package);
}

QGraphicsPolygonItem* outline(const FreespaceItem& item)
{
    return picture::child<QGraphicsPolygonItem>(item, 0);
}

QGraphicsPolygonItem* wedge(const FreespaceItem& item)
{
    return picture::child<QGraphicsPolygonItem>(item, 1);
}

const QLinearGradient* gradientOf(const QGraphicsPolygonItem& item)
{
    return static_cast<const QLinearGradient*>(item.brush().gradient());
}

// What appears when the mouse rests there.
QString toolTipAt(const QGraphicsView& view, double sceneX, double sceneY)
{
    const QPoint pixel = picture::pixelOf(view, sceneX, sceneY);
    QHelpEvent event(QEvent::ToolTip, pixel, view.viewport()->mapToGlobal(pixel));
    QApplication::sendEvent(view.viewport(), &event);
    return QToolTip::text();
}

struct Stop
{
    double position;
    QRgb colour;
};

void compareStops(const QLinearGradient& gradient, const QVector<Stop>& expected)
{
    const QGradientStops stops = gradient.stops();
    QCOMPARE(stops.size(), expected.size());
    for (int i = 0; i < stops.size(); ++i) {
        QCOMPARE(stops[i].first, expected[i].position);
        QCOMPARE(stops[i].second.rgba(), expected[i].colour);
    }
}

} // namespace

class FreespaceDrawingTest : public QObject
{
    Q_OBJECT

private slots:
    void emptyPictureShowsTheVehicleOrigin()
    {
        const OrvgFreespaceGraphicsView view;
        QCOMPARE(view.transform(), QTransform::fromScale(0.05, 0.05));
        QCOMPARE(view.transformationAnchor(), QGraphicsView::NoAnchor);
        QCOMPARE(view.resizeAnchor(), QGraphicsView::NoAnchor);
        QCOMPARE(view.backgroundBrush(), QBrush());
        QCOMPARE(view.scene()->backgroundBrush(), QBrush(QColor(240, 240, 250)));
        QCOMPARE(picture::itemsOf<QGraphicsLineItem>(view).size(), 6);
        QCOMPARE(picture::itemsOf<QGraphicsEllipseItem>(view).size(), 2);
    }

    void originIsARedCircleAroundAGrayOne()
    {
        const OrvgFreespaceGraphicsView view;
        for (const QGraphicsEllipseItem* circle : picture::itemsOf<QGraphicsEllipseItem>(view)) {
            const bool isOuter = circle->rect().width() > 50;
            QCOMPARE(circle->rect(),
                     isOuter ? QRectF(-50, -50, 100, 100) : QRectF(-15, -15, 30, 30));
            QCOMPARE(circle->pen(), isOuter ? QPen(Qt::red, 5) : QPen(Qt::black, 1));
            QCOMPARE(circle->brush(), isOuter ? QBrush() : QBrush(Qt::gray));
        }
    }

    void axesPointRightAndUp()
    {
        const OrvgFreespaceGraphicsView view;
        QVector<QLineF> lines;
        for (const QGraphicsLineItem* item : picture::itemsOf<QGraphicsLineItem>(view)) {
            QCOMPARE(item->pen(), QPen(Qt::gray, 10));
            lines << item->line();
        }
        for (const QLineF& line :
             {QLineF(0, 0, 500, 0), QLineF(500, 0, 450, 30), QLineF(500, 0, 450, -30),
              QLineF(0, 0, 0, -500), QLineF(0, -500, 30, -450), QLineF(0, -500, -30, -450)})
            QVERIFY(lines.contains(line));
    }

    void reportingSensorGetsAMarkerAndTwoPolygons()
    {
        OrvgFreespaceGraphicsView view;
        view.onNewFreespacePackage(aPackage({anEntry(7).at(2500, 300, 16384)}));

        const auto markers = picture::itemsOf<OrvgSensorItem>(view);
        QCOMPARE(markers.size(), 1);
        QCOMPARE(markers[0]->pos(), QPointF(2500, -300));
        QCOMPARE(markers[0]->zValue(), 2.0);
        const auto drawings = picture::freespaces(view);
        QCOMPARE(drawings.size(), 1);
        QCOMPARE(drawings[0]->childItems().size(), 2);
        QCOMPARE(outline(*drawings[0])->group(), drawings[0]);
        QCOMPARE(wedge(*drawings[0])->group(), drawings[0]);
        QCOMPARE(outline(*drawings[0])->polygon()[1], QPointF(2100, -500));
        QCOMPARE(wedge(*drawings[0])->polygon()[0], QPointF(100, 500));
    }

    void polygonsHaveTheirPensAndGradients()
    {
        OrvgFreespaceGraphicsView view;
        view.onNewFreespacePackage(aPackage({anEntry(7)}));
        const FreespaceItem& drawing = *picture::freespaces(view)[0];

        const QPen pen = outline(drawing)->pen();
        QVERIFY(pen.isCosmetic());
        QCOMPARE(pen.width(), 1);
        QCOMPARE(pen.color(), QColor(170, 90, 200, 76));
        QCOMPARE(wedge(drawing)->pen().color().rgba(), qRgba(0, 0, 0, 13));
        QVERIFY(wedge(drawing)->pen().isCosmetic());
        QCOMPARE(wedge(drawing)->pen().width(), 1);

        const auto* distance = gradientOf(*outline(drawing));
        QCOMPARE(distance->start(), QPointF(2100, -500));
        QCOMPARE(distance->finalStop(), QPointF(2100, 500));
        compareStops(*distance, {{0.0, qRgba(255, 165, 0, 3)},
                                 {0.2, qRgba(255, 165, 0, 26)},
                                 {0.5, qRgba(255, 165, 0, 128)},
                                 {0.8, qRgba(255, 165, 0, 26)},
                                 {1.0, qRgba(255, 165, 0, 3)}});
        const auto* area = gradientOf(*wedge(drawing));
        QCOMPARE(area->start(), QPointF(1100, -500));
        QCOMPARE(area->finalStop(), QPointF(1100, 500));
        compareStops(*area, {{0.0, qRgba(144, 238, 144, 13)},
                             {0.3, qRgba(144, 238, 144, 51)},
                             {0.5, qRgba(144, 238, 144, 128)},
                             {0.7, qRgba(144, 238, 144, 51)},
                             {1.0, qRgba(144, 238, 144, 13)}});
    }

    void sensorsSixApartShareAColour()
    {
        OrvgFreespaceGraphicsView view;
        view.onNewFreespacePackage(packageOf({0, 1, 2, 3, 4, 5, 6, 11}));
        const QVector<QColor> colours = {
            QColor(255, 69, 0, 76),   QColor(170, 90, 200, 76),  QColor(0, 128, 0, 76),
            QColor(70, 130, 180, 76), QColor(255, 127, 255, 76), QColor(0, 128, 128, 76),
        };
        for (const OrvgSensorItem* sensor : picture::itemsOf<OrvgSensorItem>(view)) {
            const auto* pie = picture::child<QGraphicsEllipseItem>(*sensor, 0);
            QCOMPARE(pie->brush(), QBrush(colours[sensor->id() % 6]));
        }
    }

    void laterPackageReusesTheItems()
    {
        OrvgFreespaceGraphicsView view;
        view.onNewFreespacePackage(aPackage({anEntry(7).at(2500, 300, 0)}));
        const auto before = view.scene()->items();
        orv::OrvFreespaceEntry changed = anEntry(7).at(-2500, 0, 0);
        changed.corners[1] = {4000, 700};
        view.onNewFreespacePackage(aPackage({changed}));

        QCOMPARE(view.scene()->items().size(), before.size());
        QCOMPARE(outline(*picture::freespaces(view)[0])->polygon()[1], QPointF(4000, -700));
        QCOMPARE(gradientOf(*outline(*picture::freespaces(view)[0]))->start(), QPointF(4000, -700));
        QCOMPARE(picture::itemsOf<OrvgSensorItem>(view)[0]->pos(), QPointF(-2500, 0));
    }

    void sensorUpdatedLastIsOnTop()
    {
        OrvgFreespaceGraphicsView view;
        send(view, packageOf({3, 8}), 2);
        view.onNewFreespacePackage(packageOf({8, 3}));
        for (const FreespaceItem* drawing : picture::freespaces(view)) {
            const bool isThird = outline(*drawing)->pen().color() == QColor(70, 130, 180, 76);
            QCOMPARE(drawing->zValue(), isThird ? 1.0 : 0.0);
        }
    }

    void newDrawingLeavesTheOrderAsItIs()
    {
        OrvgFreespaceGraphicsView view;
        send(view, packageOf({3}), 2);
        send(view, packageOf({8}), 1);
        for (const FreespaceItem* drawing : picture::freespaces(view)) {
            const bool isThird = outline(*drawing)->pen().color() == QColor(70, 130, 180, 76);
            QCOMPARE(drawing->zValue(), isThird ? 1.0 : 0.0);
        }
    }

    void emptyPackageChangesNothingNotEvenAges()
    {
        OrvgFreespaceGraphicsView view;
        send(view, packageOf({3}), 2);
        send(view, packageOf({}), 1000);
        QCOMPARE(picture::freespaces(view).size(), 1);
    }

    void silentSensorFadesAfterSixtyTwoPackages()
    {
        OrvgFreespaceGraphicsView view;
        send(view, packageOf({3, 8}), 2);
        send(view, packageOf({8}), 62);
        QCOMPARE(picture::freespaces(view).size(), 2);
        send(view, packageOf({8}), 1);
        QCOMPARE(picture::freespaces(view).size(), 1);
        QVERIFY2(picture::itemsOf<OrvgSensorItem>(view).size() == 2, "the marker stays");
    }

    void returningSensorIsDrawnAgain()
    {
        OrvgFreespaceGraphicsView view;
        send(view, packageOf({3, 8}), 2);
        send(view, packageOf({8}), 100);
        send(view, packageOf({3, 8}), 1);
        QCOMPARE(picture::freespaces(view).size(), 2);
        // It climbed by 12 alone.
        send(view, packageOf({8}), 12);
        QCOMPARE(picture::freespaces(view).size(), 2);
        send(view, packageOf({8}), 1);
        QCOMPARE(picture::freespaces(view).size(), 1);
    }

    void editModeRemovesTheDrawingsButNotTheMarkers()
    {
        OrvgFreespaceGraphicsView view;
        send(view, packageOf({3, 8}), 2);
        view.onSetEditMode(true);
        QCOMPARE(picture::freespaces(view).size(), 0);
        QCOMPARE(picture::itemsOf<OrvgSensorItem>(view).size(), 2);
        view.onSetEditMode(false);
        QCOMPARE(picture::freespaces(view).size(), 0);
        send(view, packageOf({3}), 1);
        QCOMPARE(picture::freespaces(view).size(), 1);
    }

    void packageInEditModeChangesNothingNotEvenAges()
    {
        OrvgFreespaceGraphicsView view;
        send(view, aPackage({anEntry(3).at(1000, 0, 0)}), 2); // age 62
        view.onSetEditMode(true);
        send(view, aPackage({anEntry(8)}), 40);
        send(view, aPackage({anEntry(3).at(2000, 0, 0)}), 1);
        QCOMPARE(picture::itemsOf<OrvgSensorItem>(view).size(), 1);
        QCOMPARE(picture::itemsOf<OrvgSensorItem>(view)[0]->pos(), QPointF(1000, 0));

        view.onSetEditMode(false);
        send(view, packageOf({3, 8}), 1); // still 62
        send(view, packageOf({8}), 62);
        QCOMPARE(picture::freespaces(view).size(), 2);
        send(view, packageOf({8}), 1);
        QCOMPARE(picture::freespaces(view).size(), 1);
    }

    void unknownSensorsArePassedOver()
    {
        OrvgFreespaceGraphicsView view;
        const auto empty = view.scene()->items().size();
        view.onNewFreespacePackage(packageOf({12, 255, 128}));
        QCOMPARE(view.scene()->items().size(), empty);
        view.onNewFreespacePackage(packageOf({12, 11, 255}));
        QCOMPARE(picture::itemsOf<OrvgSensorItem>(view).size(), 1);
    }

    void unknownSensorsStillLetTheOthersAge()
    {
        OrvgFreespaceGraphicsView view;
        send(view, packageOf({3}), 2);
        send(view, packageOf({200}), 63);
        QCOMPARE(picture::freespaces(view).size(), 0);
    }

    void largestHostilePackagesDoNotGrowThePicture()
    {
        OrvgFreespaceGraphicsView view;
        orv::OrvFreespacePackage package;
        for (int i = 0; i < 255; ++i) {
            orv::OrvFreespaceEntry entry =
                anEntry(static_cast<std::uint8_t>(i))
                    .at(-32768, -32768, static_cast<std::uint16_t>(i * 257))
                    .withDistance(0, 65535, {-32768, -32768}, {32767, 32767})
                    .withDistance(2, 0, {1, 0}, {-32768, 0});
            entry.corners.fill({static_cast<std::int16_t>(i % 3 - 1), -32768});
            package.entries.push_back(entry);
            package.entries.back().sensorId = static_cast<std::uint8_t>(i % 14);
        }
        view.resize(900, 600);
        view.onNewFreespacePackage(package);
        const auto items = view.scene()->items().size();
        send(view, package, 50);
        QCOMPARE(view.scene()->items().size(), items);
        QCOMPARE(picture::freespaces(view).size(), 12);
        QVERIFY(!view.grab().isNull());
    }

    void sensorTwiceInAPackageShowsItsLastEntry()
    {
        OrvgFreespaceGraphicsView view;
        view.onNewFreespacePackage(aPackage({anEntry(3).at(1, 0, 0), anEntry(3).at(2, 0, 0)}));
        QCOMPARE(picture::freespaces(view).size(), 1);
        QCOMPARE(picture::itemsOf<OrvgSensorItem>(view)[0]->pos(), QPointF(2, 0));
    }

    void polygonWithoutExtentIsDrawn()
    {
        OrvgFreespaceGraphicsView view;
        orv::OrvFreespaceEntry entry;
        entry.distances.fill({.mode = 1, .distanceMm = 0, .firstPoint = {}, .secondPoint = {}});
        view.onNewFreespacePackage(aPackage({entry}));
        QCOMPARE(outline(*picture::freespaces(view)[0])->polygon(),
                 QPolygonF(QVector<QPointF>(5, QPointF(0, 0))));
        QVERIFY(!view.grab().isNull());
    }

    void positionsPlaceAllTwelveMarkers()
    {
        OrvgFreespaceGraphicsView view;
        orv::SensorMountPositions positions;
        positions[4] = {.x = 2500, .y = -900, .height = 400, .yaw = 4369, .pitch = 1, .roll = 2};
        view.setPositions(positions);
        const auto markers = picture::itemsOf<OrvgSensorItem>(view);
        QCOMPARE(markers.size(), 12);
        for (const OrvgSensorItem* marker : markers) {
            const bool isMoved = marker->id() == 4;
            QCOMPARE(marker->pos(), isMoved ? QPointF(2500, 900) : QPointF(0, 0));
            QCOMPARE(marker->zValue(), 2.0);
            QCOMPARE(marker->position().direction, std::uint16_t(isMoved ? 4369 : 0));
        }
        view.setPositions({});
        QCOMPARE(picture::itemsOf<OrvgSensorItem>(view).size(), 12);
        QCOMPARE(markers[0]->pos(), QPointF(0, 0));
    }

    void markerOpensAlongItsDirection()
    {
        const OrvgSensorItem marker(8, {0, 1000, 200, 4369}, Qt::green);
        QCOMPARE(marker.pos(), QPointF(1000, -200));
        const auto* pie = picture::child<QGraphicsEllipseItem>(marker, 0);
        QCOMPARE(pie->rect(), QRectF(-150, -150, 300, 300));
        QCOMPARE(pie->pen(), QPen(Qt::black, 10));
        QCOMPARE(pie->startAngle(), -96); // 24 - 30 degrees
        QCOMPARE(pie->spanAngle(), 960);
        const auto* label = picture::child<QGraphicsTextItem>(marker, 1);
        QCOMPARE(label->toPlainText(), QString("9"));
        QCOMPARE(label->font().pixelSize(), 70);
        QCOMPARE(label->defaultTextColor(), QColor(0, 0, 0, 200));
        QCOMPARE(label->acceptedMouseButtons(), Qt::MouseButtons(Qt::NoButton));
        QVERIFY(!label->acceptHoverEvents());
        const QSize size = label->boundingRect().toRect().size();
        const QPointF middle = label->pos() + QPointF(size.width() / 2.0, size.height() / 2.0);
        QVERIFY(qAbs(middle.x() - 91.3545) < 0.001 && qAbs(middle.y() + 40.6737) < 0.001);
    }

    void movedMarkerKeepsDirectionAndLeadingWord()
    {
        OrvgSensorItem marker(8, {5, 1000, 200, 4369}, Qt::green);
        marker.setPos(-300.4, 900.6);
        QVERIFY((marker.position() == orv::OrvSensorPosition{5, -300, -901, 4369}));
    }

    void toolTipTellsWhereTheMarkerIs()
    {
        OrvgFreespaceGraphicsView view;
        view.resize(900, 600);
        view.show();
        view.onSetEditMode(false);
        view.onNewFreespacePackage(aPackage({anEntry(8).at(1000, -200, 4369)}));
        QCOMPARE(toolTipAt(view, 1000, 200),
                 QString("Sensor 9\nX: 1000 mm\nY: -200 mm\nDirection: 24.00\u00B0"));
        view.onNewFreespacePackage(aPackage({anEntry(8).at(1500, -200, 65535)}));
        QCOMPARE(toolTipAt(view, 1500, 200),
                 QString("Sensor 9\nX: 1500 mm\nY: -200 mm\nDirection: 360.00\u00B0"));
        picture::sensor(view, 8)->moveBy(0, -70);
        QCOMPARE(toolTipAt(view, 1500, 130),
                 QString("Sensor 9\nX: 1500 mm\nY: -130 mm\nDirection: 360.00\u00B0"));
    }

    void toolTipBesideTheMarkersIsThatOfThePicture()
    {
        OrvgFreespaceGraphicsView view;
        view.setToolTip("what can be done");
        view.resize(900, 600);
        view.show();
        QCOMPARE(toolTipAt(view, -3000, -3000), QString("what can be done"));
        QVERIFY(QToolTip::isVisible());
    }

    void selectedMarkersHaveNoBoxAroundThem()
    {
        OrvgFreespaceGraphicsView view;
        view.resize(900, 600);
        view.setTransform(QTransform::fromScale(0.5, 0.5));
        view.setPositions({}); // all open to the right
        view.centerOn(0, 0);
        const QImage before = view.viewport()->grab().toImage();
        for (OrvgSensorItem* marker : picture::itemsOf<OrvgSensorItem>(view))
            marker->setSelected(true);
        const QImage after = view.viewport()->grab().toImage();
        const QRect leftHalf(QPoint(0, 0), QSize(view.viewport()->width() / 2 - 10, 600));
        QCOMPARE(after.copy(leftHalf), before.copy(leftHalf));
        QVERIFY(after != before); // the red pens
    }

    void markerCannotLeaveTheRangeOfAPosition()
    {
        OrvgSensorItem marker(8, {}, Qt::green);
        marker.setPos(1e6, -1e6);
        QVERIFY((marker.position() == orv::OrvSensorPosition{0, 32767, 32767, 0}));
        QCOMPARE(marker.pos(), QPointF(32767, -32767));
    }
};

QTEST_MAIN(FreespaceDrawingTest)
#include "test_freespace_drawing.moc"
