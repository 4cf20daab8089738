#include "tests/views/freespace/EditedPicture.h"

#include <QDialog>
#include <QScrollBar>
#include <QTimeLine>
#include <QtTest>

#include <limits>
#include <memory>

using picture::Announced;

namespace {

bool isClose(double a, double b)
{
    return qAbs(a - b) < 1e-9;
}

} // namespace

class FreespaceInteractionTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QVERIFY2(!QApplication::overrideCursor(), "the hover cursor leaked"); }

    void clickSelectsASensorAndShowsIt()
    {
        EditedPicture view;
        picture::Announcements announcements(view);
        picture::press(view, view.pixel(3));
        picture::release(view, view.pixel(3));
        QCOMPARE(announcements.take(), (Announced{{3, {0, -3500, 0, 0}}}));
        const auto* pie = picture::child<QGraphicsEllipseItem>(view.sensor(3), 0);
        QCOMPARE(pie->pen(), QPen(Qt::red, 20));
    }

    void clickOnTheGroundSelectsNobody()
    {
        EditedPicture view;
        view.sensor(3).setSelected(true);
        picture::Announcements announcements(view);
        picture::press(view, {10, 10});
        picture::release(view, {10, 10});
        QCOMPARE(announcements.take(), (Announced{{255, {0, 0, 0, 0}}}));
        const auto* pie = picture::child<QGraphicsEllipseItem>(view.sensor(3), 0);
        QCOMPARE(pie->pen(), QPen(Qt::black, 10));
    }

    void dragIsAnnouncedOneEventBehindThePointer()
    {
        EditedPicture view;
        const QPoint start = view.pixel(3);
        picture::press(view, start);
        picture::Announcements announcements(view);
        picture::moveMouse(view, start + QPoint(10, 0), Qt::LeftButton);
        QCOMPARE(announcements.take(), (Announced{{3, {0, -3500, 0, 0}}}));
        QVERIFY((view.sensor(3).position() == orv::OrvSensorPosition{0, -3300, 0, 0}));
        picture::moveMouse(view, start + QPoint(10, 5), Qt::LeftButton);
        QCOMPARE(announcements.take(), (Announced{{3, {0, -3300, 0, 0}}}));
        QVERIFY((view.sensor(3).position() == orv::OrvSensorPosition{0, -3300, -100, 0}));
    }

    void endOfTheDragAnnouncesWhereTheSensorIs()
    {
        EditedPicture view;
        const QPoint start = view.pixel(3);
        picture::press(view, start);
        picture::moveMouse(view, start + QPoint(10, 0), Qt::LeftButton);
        picture::Announcements announcements(view);
        picture::release(view, start + QPoint(10, 0));
        QCOMPARE(announcements.take(), (Announced{{3, {0, -3300, 0, 0}}}));
    }

    void dragOfSeveralSensorsAnnouncesThemAllAtItsEnd()
    {
        EditedPicture view;
        view.sensor(5).setSelected(true);
        view.sensor(3).setSelected(true);
        const QPoint start = view.pixel(5);
        picture::press(view, start);
        picture::moveMouse(view, start + QPoint(0, 10), Qt::LeftButton);
        picture::Announcements announcements(view);
        picture::release(view, start + QPoint(0, 10));
        QCOMPARE(announcements.take(),
                 (Announced{{5, {0, -500, -200, 0}}, {3, {0, -3500, -200, 0}}}));
    }

    void pointerAboveSensorsAnnouncesNothingAfterTheDrag()
    {
        EditedPicture view;
        const QPoint start = view.pixel(3);
        picture::press(view, start);
        picture::release(view, start);
        picture::Announcements announcements(view);
        picture::moveMouse(view, start + QPoint(1, 0));
        picture::moveMouse(view, {5, 5});
        QCOMPARE(announcements.take(), Announced());
    }

    void releaseBesideTheItemEndsTheDragToo()
    {
        EditedPicture view;
        const QPoint origin = view.mapFromScene(250, 0); // the x axis cannot be moved
        view.sensor(3).setSelected(true);
        picture::press(view, origin);
        picture::release(view, {10, 10});
        view.sensor(3).setSelected(true);
        picture::Announcements announcements(view);
        picture::moveMouse(view, {20, 20}, Qt::LeftButton);
        QCOMPARE(announcements.take(), Announced());
    }

    void pressOnTheGroundDragsNobody()
    {
        EditedPicture view;
        picture::press(view, {10, 10});
        view.sensor(3).setSelected(true);
        picture::Announcements announcements(view);
        picture::moveMouse(view, {40, 40}, Qt::LeftButton);
        picture::release(view, {40, 40});
        QCOMPARE(announcements.take(), Announced());
        QCOMPARE(view.sensor(3).pos(), QPointF(-3500, 0));
    }

    void otherButtonsDoNotDrag_data()
    {
        QTest::addColumn<int>("button");
        QTest::newRow("right") << int(Qt::RightButton);
        QTest::newRow("middle") << int(Qt::MiddleButton);
    }

    void otherButtonsDoNotDrag()
    {
        QFETCH(int, button);
        const auto held = static_cast<Qt::MouseButton>(button);
        EditedPicture view;
        const QPoint start = view.pixel(3);
        QTest::mousePress(view.viewport(), held, Qt::NoModifier, start);
        view.sensor(3).setSelected(true);
        view.sensor(5).setSelected(true);
        picture::Announcements announcements(view);
        picture::moveMouse(view, start + QPoint(9, 0), held);
        picture::moveMouse(view, start + QPoint(18, 0), held);
        QCOMPARE(view.sensor(3).pos(), QPointF(-3500, 0));
        QCOMPARE(announcements.take(), Announced());
        QTest::mouseRelease(view.viewport(), held, Qt::NoModifier, start + QPoint(18, 0));
        QCOMPARE(announcements.take(), Announced());
    }

    void otherButtonsDoNotEndADrag()
    {
        EditedPicture view;
        const QPoint start = view.pixel(3);
        picture::press(view, start);
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            const Qt::MouseButtons held = type == QEvent::MouseButtonPress
                                              ? Qt::LeftButton | Qt::RightButton
                                              : Qt::LeftButton;
            QMouseEvent right(type, start, view.viewport()->mapToGlobal(start), Qt::RightButton,
                              held, Qt::NoModifier);
            QApplication::sendEvent(view.viewport(), &right);
        }
        picture::moveMouse(view, start + QPoint(10, 0), Qt::LeftButton);
        picture::Announcements announcements(view);
        picture::moveMouse(view, start + QPoint(20, 0), Qt::LeftButton);
        QCOMPARE(announcements.take(), (Announced{{3, {0, -3300, 0, 0}}}));
    }

    // A popup takes the release, for example.
    void dragWhoseReleaseIsLostEndsWithTheButton_data() { otherButtonsDoNotDrag_data(); }

    void dragWhoseReleaseIsLostEndsWithTheButton()
    {
        QFETCH(int, button);
        const auto held = static_cast<Qt::MouseButton>(button);
        EditedPicture view;
        const QPoint start = view.pixel(3);
        picture::press(view, start);
        picture::moveMouse(view, start + QPoint(10, 0), Qt::LeftButton);
        picture::Announcements announcements(view);
        picture::moveMouse(view, start + QPoint(20, 0), held);
        QCOMPARE(announcements.take(), (Announced{{3, {0, -3300, 0, 0}}})); // where it ended
        picture::moveMouse(view, start + QPoint(30, 0), held);
        picture::moveMouse(view, start + QPoint(40, 0), Qt::LeftButton);
        QCOMPARE(announcements.take(), Announced());
    }

    void viewModeLetsNobodyBeMoved()
    {
        EditedPicture view;
        view.onSetEditMode(false);
        view.setInteractive(false);
        picture::Announcements announcements(view);
        const QPoint start = view.pixel(3);
        picture::press(view, start);
        picture::moveMouse(view, start + QPoint(10, 0), Qt::LeftButton);
        picture::release(view, start + QPoint(10, 0));
        QCOMPARE(announcements.take(), Announced());
        QCOMPARE(view.sensor(3).pos(), QPointF(-3500, 0));
        QVERIFY(!QApplication::overrideCursor());
    }

    void leavingEditModeEndsADrag()
    {
        EditedPicture view;
        const QPoint start = view.pixel(3);
        picture::press(view, start);
        view.onSetEditMode(false);
        view.setInteractive(false);
        picture::release(view, start);
        view.setInteractive(true);
        view.onSetEditMode(true);
        picture::moveMouse(view, start + QPoint(50, 0), Qt::LeftButton);
        QCOMPARE(view.sensor(3).pos(), QPointF(-3500, 0));
    }

    void wheelTurnsTheSelectedSensorByTwoDegrees()
    {
        EditedPicture view;
        view.sensor(3).setSelected(true);
        picture::Announcements announcements(view);
        QVERIFY(picture::wheel(view, {10, 10}, 120));
        QCOMPARE(announcements.take(), (Announced{{3, {0, -3500, 0, 364}}}));
        QCOMPARE(picture::child<QGraphicsEllipseItem>(view.sensor(3), 0)->startAngle(), -448);
    }

    void pictureStandsStillWhileTheWheelTurnsASensor()
    {
        EditedPicture view;
        view.sensor(3).setSelected(true);
        const QPointF corner = view.mapToScene(0, 0);
        for (const int delta : {120, 120, -120, -120, -120})
            picture::wheel(view, {10, 10}, delta);
        QCOMPARE(view.mapToScene(0, 0), corner);
    }

    void turningWrapsRound()
    {
        EditedPicture view;
        view.sensor(3).setSelected(true);
        picture::wheel(view, {10, 10}, -120);
        QCOMPARE(view.sensor(3).position().direction, std::uint16_t(65535));
        picture::wheel(view, {10, 10}, 120);
        QCOMPARE(view.sensor(3).position().direction, std::uint16_t(0));
    }

    void wheelScrollsWhenNobodyIsSelected()
    {
        EditedPicture view;
        const int before = view.verticalScrollBar()->value();
        picture::wheel(view, {10, 10}, -120);
        QVERIFY(view.verticalScrollBar()->value() > before);
        QCOMPARE(view.sensor(3).position().direction, std::uint16_t(0));
    }

    void selectedPositionMovesTheSelectedSensorAlone()
    {
        EditedPicture view;
        view.setSelectedPosition({0, 1, 2, 3});
        QCOMPARE(view.sensor(0).pos(), QPointF(-8000, 0));
        view.sensor(3).setSelected(true);
        view.setSelectedPosition({0, 1, 2, 4369});
        QCOMPARE(view.sensor(3).pos(), QPointF(1, -2));
        QCOMPARE(view.sensor(3).position().direction, std::uint16_t(4369));
    }

    void handAppearsAboveASensorAndGoesWithThePointer()
    {
        EditedPicture view;
        picture::moveMouse(view, view.pixel(3));
        QVERIFY(QApplication::overrideCursor());
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::PointingHandCursor);
        picture::moveMouse(view, {10, 10});
        QVERIFY(!QApplication::overrideCursor());
    }

    void handGoesWhenTheModeChanges()
    {
        EditedPicture view;
        picture::moveMouse(view, view.pixel(3));
        QVERIFY(QApplication::overrideCursor());
        view.onSetEditMode(false);
        view.setInteractive(false);
        QVERIFY(!QApplication::overrideCursor());
        picture::moveMouse(view, {10, 10}); // the scene's late farewell restores nothing more
    }

    void handGoesWhenTheViewIsHidden()
    {
        EditedPicture view;
        picture::moveMouse(view, view.pixel(3));
        QVERIFY(QApplication::overrideCursor());
        view.hide();
        QVERIFY(!QApplication::overrideCursor());
    }

    void handGoesWhenADialogOpens()
    {
        EditedPicture view;
        picture::moveMouse(view, view.pixel(3));
        QVERIFY(QApplication::overrideCursor());
        QDialog dialog;
        dialog.setModal(true);
        dialog.show();
        QVERIFY(!QApplication::overrideCursor());
    }

    void handGoesWithTheView()
    {
        auto view = std::make_unique<EditedPicture>();
        picture::moveMouse(*view, view->pixel(3));
        QVERIFY(QApplication::overrideCursor());
        view.reset();
        QVERIFY(!QApplication::overrideCursor());
    }

    void handOfOthersIsLeftAlone()
    {
        EditedPicture view;
        QApplication::setOverrideCursor(Qt::WaitCursor);
        view.onSetEditMode(false);
        view.hide();
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        QApplication::restoreOverrideCursor();
    }

    void selectedSensorOfADyingViewIsNotAnnounced()
    {
        auto view = std::make_unique<EditedPicture>();
        view->sensor(3).setSelected(true);
        picture::Announcements announcements(*view);
        view.reset();
        QCOMPARE(announcements.take(), Announced());
    }

    void buttonsZoomByThreeSteps()
    {
        EditedPicture view;
        view.onZoomIn();
        QVERIFY(isClose(view.zoomOfNextStep(), 1.01));
        view.onZoomIn();
        QVERIFY(isClose(view.zoomOfNextStep(), 1.02));
        view.onZoomOut();
        QVERIFY(isClose(view.zoomOfNextStep(), 0.99));
    }

    void buttonsZoomAboutTheMiddleBeforeTheFirstWheel()
    {
        EditedPicture view;
        const QPoint middle = view.viewport()->rect().center();
        view.centerOn(3000, 1000);
        QVERIFY(view.driftAfterZoom([&view] { view.onZoomIn(); }, middle) < 1.0);
    }

    void buttonsZoomAboutThePlaceOfTheLastWheel()
    {
        EditedPicture view;
        const QPoint pointer(200, 450);
        picture::wheel(view, pointer, 120, Qt::ControlModifier);
        QVERIFY(view.driftAfterZoom([&view] { view.onZoomIn(); }, pointer) < 1.0);
    }

    void zoomOutTakesBackAPendingZoomIn()
    {
        EditedPicture view;
        view.onZoomIn();
        view.onZoomOut();
        QCOMPARE(view.runningZooms(), 2);
        QVERIFY(isClose(view.zoomOfNextStep(), 1.0));
    }

    void notchOfTheWheelZoomsByOneStep()
    {
        EditedPicture view;
        QVERIFY(picture::wheel(view, {100, 100}, 120, Qt::ControlModifier));
        QVERIFY(isClose(view.zoomOfNextStep(), 1.0 + 1 / 300.0));
        picture::wheel(view, {100, 100}, -360, Qt::ControlModifier);
        QVERIFY(isClose(view.zoomOfNextStep(), 1.0 - 4 / 300.0)); // 1 - 5 pending
    }

    void fractionOfAStepStartsNothing()
    {
        EditedPicture view;
        QVERIFY(picture::wheel(view, {100, 100}, 63, Qt::ControlModifier));
        QCOMPARE(view.runningZooms(), 0);
    }

    void zoomDoesNotTurnTheSelectedSensor()
    {
        EditedPicture view;
        view.sensor(3).setSelected(true);
        picture::wheel(view, {100, 100}, 120, Qt::ControlModifier);
        QCOMPARE(view.sensor(3).position().direction, std::uint16_t(0));
        QCOMPARE(view.runningZooms(), 1);
    }

    void placeUnderThePointerStaysThere_data()
    {
        QTest::addColumn<int>("delta");
        QTest::newRow("in") << 1200;
        QTest::newRow("out") << -1200;
    }

    void placeUnderThePointerStaysThere()
    {
        QFETCH(int, delta);
        EditedPicture view;
        const QPoint pointer(200, 450);
        const auto zoom = [&] { picture::wheel(view, pointer, delta, Qt::ControlModifier); };
        QVERIFY(view.driftAfterZoom(zoom, pointer) < 1.0);
        QVERIFY(!isClose(view.zoom(), 0.05));
    }

    void everyRequestedZoomRuns()
    {
        EditedPicture view;
        for (int notch = 0; notch < 60; ++notch)
            picture::wheel(view, {100, 100}, 120, Qt::ControlModifier);
        QCOMPARE(view.runningZooms(), 60);
        QVERIFY(isClose(view.zoomOfNextStep(), 1.2));
        QTRY_COMPARE(view.runningZooms(), 0);
    }

    void zoomTakesFifteenStepsOfTenMilliseconds()
    {
        EditedPicture view;
        view.onZoomIn();
        const auto* timeLine = view.findChild<QTimeLine*>();
        QCOMPARE(timeLine->duration(), 150);
        QCOMPARE(timeLine->updateInterval(), 10);
        QCOMPARE(timeLine->state(), QTimeLine::Running);
    }

    void zoomRunsByItselfAndEnds()
    {
        EditedPicture view;
        view.onZoomIn();
        QTRY_COMPARE(view.runningZooms(), 0);
        QVERIFY(view.zoom() > 0.05);
        QVERIFY(isClose(view.zoomOfNextStep(), 1.0 + 2 / 300.0)); // one step taken back
    }

    void zoomIsRefusedAtTheEnds()
    {
        EditedPicture view;
        view.setTransform(QTransform::fromScale(2.0, 2.0));
        view.onZoomIn();
        QCOMPARE(view.runningZooms(), 0);
        view.setTransform(QTransform::fromScale(0.01, 0.01));
        view.onZoomOut();
        QCOMPARE(view.runningZooms(), 0);
        view.onZoomIn();
        QCOMPARE(view.runningZooms(), 1);
    }

    void runawayWheelCannotLoseThePicture_data()
    {
        QTest::addColumn<int>("delta");
        QTest::newRow("in") << std::numeric_limits<int>::max();
        QTest::newRow("out") << std::numeric_limits<int>::min();
    }

    void runawayWheelCannotLoseThePicture()
    {
        QFETCH(int, delta);
        EditedPicture view;
        for (int event = 0; event < 1000; ++event) {
            picture::wheel(view, {450, 300}, delta, Qt::ControlModifier);
            view.scalingTime();
        }
        QVERIFY2(view.zoom() >= 0.001 && view.zoom() <= 20,
                 qPrintable(QString::number(view.zoom())));
        QTRY_COMPARE(view.runningZooms(), 0);
        QVERIFY2(view.zoom() >= 0.001 && view.zoom() <= 20,
                 qPrintable(QString::number(view.zoom())));
    }
};

QTEST_MAIN(FreespaceInteractionTest)
#include "test_freespace_interaction.moc"
