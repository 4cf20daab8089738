#include "tests/views/freespace/EditedPicture.h"
#include "tests/views/positions/PositionViewFixture.h"

#include <QScrollBar>
#include <QtTest>

namespace {

void dragWith(Qt::MouseButton button, const QGraphicsView& view, QPoint from, QPoint to)
{
    QTest::mousePress(view.viewport(), button, Qt::NoModifier, from);
    picture::moveMouse(view, (from + to) / 2, button);
    picture::moveMouse(view, to, button);
    QTest::mouseRelease(view.viewport(), button, Qt::NoModifier, to);
}

class Picture : public OrvgFreespaceGraphicsView
{
public:
    Picture()
    {
        resize(900, 600);
        show();
    }

    QPoint origin() { return mapFromScene(0, 0); }

    bool hasOriginInTheMiddle()
    {
        return (origin() - viewport()->rect().center()).manhattanLength() <= 2;
    }

    bool showsAllMarkers()
    {
        const auto markers = picture::itemsOf<OrvgSensorItem>(*this);
        return std::all_of(markers.begin(), markers.end(), [this](const OrvgSensorItem* marker) {
            const QRectF covered = marker->mapRectToScene(marker->childrenBoundingRect());
            return viewport()->rect().contains(mapFromScene(covered).boundingRect());
        });
    }
};

orv::SensorMountPositions spread(int stepMm)
{
    orv::SensorMountPositions positions;
    for (std::size_t id = 0; id < positions.size(); ++id)
        positions[id].x = static_cast<std::int16_t>(stepMm * (static_cast<int>(id) - 5));
    return positions;
}

} // namespace

Q_DECLARE_METATYPE(orv::SensorMountPositions)

class FreespaceNavigationTest : public QObject
{
    Q_OBJECT

private slots:
    void originStaysInTheMiddleOfAFreshView()
    {
        Picture view;
        QVERIFY(view.hasOriginInTheMiddle());
        view.resize(500, 400);
        QVERIFY(view.hasOriginInTheMiddle());
    }

    void viewThatTheUserMovedStaysThere_data()
    {
        QTest::addColumn<QString>("way");
        for (const char* way : {"wheel", "middle button", "arrow key", "scroll bar", "zoom"})
            QTest::newRow(way) << way;
    }

    void viewThatTheUserMovedStaysThere()
    {
        QFETCH(QString, way);
        Picture view;
        if (way == "wheel")
            picture::wheel(view, {10, 10}, 120);
        else if (way == "middle button")
            dragWith(Qt::MiddleButton, view, {100, 100}, {101, 101}); // as little as can be
        else if (way == "arrow key")
            QTest::keyClick(&view, Qt::Key_Left);
        else if (way == "scroll bar")
            QTest::keyClick(view.horizontalScrollBar(), Qt::Key_Left);
        else
            view.onZoomIn();
        const QPoint before = view.origin();
        view.resize(700, 500);
        QCOMPARE(view.origin(), before);
    }

    void viewThatAKeyScrolledToASensorStaysThere()
    {
        Picture view;
        view.setPositions(spread(6500));
        view.onSetEditMode(true);
        QTest::keyClick(&view, Qt::Key_PageDown); // 32.5 m behind the origin
        const QPoint before = view.origin();
        QVERIFY(!view.hasOriginInTheMiddle());
        view.resize(700, 500);
        QCOMPARE(view.origin(), before);
    }

    void selectingASensorInSightMovesNothing()
    {
        Picture view;
        view.setPositions(spread(500));
        view.onSetEditMode(true);
        QTest::keyClick(&view, Qt::Key_PageDown);
        view.resize(700, 500);
        QVERIFY(view.hasOriginInTheMiddle());
    }

    void middleButtonDragsThePicture_data()
    {
        QTest::addColumn<bool>("editMode");
        QTest::newRow("view mode") << false;
        QTest::newRow("edit mode") << true;
    }

    void middleButtonDragsThePicture()
    {
        QFETCH(bool, editMode);
        EditedPicture view;
        view.onSetEditMode(editMode);
        view.sensor(5).setSelected(true);
        const QPoint marker = view.pixel(3);
        dragWith(Qt::MiddleButton, view, marker, marker + QPoint(-70, 45)); // from above a marker
        QCOMPARE(view.pixel(3), marker + QPoint(-70, 45));
        QCOMPARE(view.sensor(3).pos(), QPointF(-3500, 0));
        QVERIFY2(view.sensor(5).isSelected(), "the selection stays");
    }

    void handGripsThePictureWhileItIsDragged()
    {
        Picture view;
        const Qt::CursorShape before = view.viewport()->cursor().shape();
        QTest::mousePress(view.viewport(), Qt::MiddleButton, Qt::NoModifier, {100, 100});
        QCOMPARE(view.viewport()->cursor().shape(), Qt::ClosedHandCursor);
        QTest::mouseRelease(view.viewport(), Qt::MiddleButton, Qt::NoModifier, {100, 100});
        QCOMPARE(view.viewport()->cursor().shape(), before);
        const QPoint origin = view.origin();
        picture::moveMouse(view, {150, 150});
        QCOMPARE(view.origin(), origin);
    }

    void secondClickOfADoubleClickGripsToo()
    {
        Picture view;
        const QPoint origin = view.origin();
        QTest::mouseClick(view.viewport(), Qt::MiddleButton, Qt::NoModifier, {100, 100});
        const QPoint place(100, 100);
        QMouseEvent second(QEvent::MouseButtonDblClick, place, view.viewport()->mapToGlobal(place),
                           Qt::MiddleButton, Qt::MiddleButton, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &second);
        picture::moveMouse(view, {110, 100}, Qt::MiddleButton);
        QCOMPARE(view.origin(), origin + QPoint(10, 0));
    }

    void gripEndsWithoutItsRelease()
    {
        Picture view;
        const QPoint origin = view.origin();
        QTest::mousePress(view.viewport(), Qt::MiddleButton, Qt::NoModifier, {100, 100});
        picture::moveMouse(view, {120, 100}, Qt::RightButton); // the middle one is up
        picture::moveMouse(view, {140, 100}, Qt::MiddleButton);
        QCOMPARE(view.origin(), origin);
        QVERIFY(view.viewport()->cursor().shape() != Qt::ClosedHandCursor);
    }

    void gripEndsWhenTheViewIsHidden()
    {
        Picture view;
        QTest::mousePress(view.viewport(), Qt::MiddleButton, Qt::NoModifier, {100, 100});
        view.hide();
        QVERIFY(view.viewport()->cursor().shape() != Qt::ClosedHandCursor);
    }

    void middleButtonDoesNotDisturbADrag()
    {
        EditedPicture view;
        const QPoint start = view.pixel(3);
        const QPointF corner = view.mapToScene(0, 0);
        picture::press(view, start);
        QMouseEvent press(QEvent::MouseButtonPress, start, view.viewport()->mapToGlobal(start),
                          Qt::MiddleButton, Qt::LeftButton | Qt::MiddleButton, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &press);
        picture::moveMouse(view, start + QPoint(10, 0), Qt::LeftButton | Qt::MiddleButton);
        QCOMPARE(view.sensor(3).pos(), QPointF(-3300, 0));
        QCOMPARE(view.mapToScene(0, 0), corner);
        picture::release(view, start + QPoint(10, 0));
    }

    void homeShowsTheWholeVehicle_data()
    {
        QTest::addColumn<orv::SensorMountPositions>("positions");
        QTest::newRow("car") << PositionViewFixture::aCar();
        QTest::newRow("train") << spread(6500);
        QTest::newRow("all in one place") << orv::SensorMountPositions{};
    }

    void homeShowsTheWholeVehicle()
    {
        QFETCH(orv::SensorMountPositions, positions);
        Picture view;
        view.setPositions(positions);
        view.centerOn(40000, 40000);
        QTest::keyClick(&view, Qt::Key_Home);
        QVERIFY(view.showsAllMarkers());
        view.resize(400, 700);
        QVERIFY2(view.showsAllMarkers(), "in a view of another size");
    }

    void vehicleFillsTheViewButForAMargin()
    {
        Picture view;
        view.setPositions(PositionViewFixture::aCar()); // 4550 mm long
        QTest::keyClick(&view, Qt::Key_Home);
        const double share = 4550 * view.transform().m11() / view.viewport()->width();
        QVERIFY2(share > 0.6 && share < 0.95, qPrintable(QString::number(share)));
    }

    void homeWithoutMarkersShowsTheOrigin()
    {
        Picture view;
        view.setTransform(QTransform::fromScale(0.5, 0.5));
        view.centerOn(40000, 40000);
        QTest::keyClick(&view, Qt::Key_Home);
        QVERIFY(view.hasOriginInTheMiddle());
        QCOMPARE(view.transform().m11(), 0.05);
    }

    void homeEndsAZoomThatIsRunning()
    {
        Picture view;
        view.setPositions(PositionViewFixture::aCar());
        view.onZoomIn();
        QTest::keyClick(&view, Qt::Key_Home);
        const QTransform shown = view.transform();
        QVERIFY(view.findChildren<QTimeLine*>().isEmpty());
        view.scalingTime();
        QCOMPARE(view.transform(), shown);
    }

    void placeThatTheUserLooksAtAfterHomeStays()
    {
        Picture view;
        view.setPositions(PositionViewFixture::aCar());
        QTest::keyClick(&view, Qt::Key_Home);
        dragWith(Qt::MiddleButton, view, {100, 100}, {130, 120});
        const QPoint before = view.origin();
        view.resize(700, 500);
        QCOMPARE(view.origin(), before);
    }
};

QTEST_MAIN(FreespaceNavigationTest)
#include "test_freespace_navigation.moc"
