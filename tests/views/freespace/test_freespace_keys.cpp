#include "tests/views/freespace/EditedPicture.h"

#include <QBackingStore>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QImage>
#include <QPushButton>
#include <QScrollBar>
#include <QtTest>

using picture::Announced;

namespace {

// As fast hands send them: several before anything else runs.
void postKeys(QWidget& widget, std::initializer_list<int> keys,
              Qt::KeyboardModifiers modifiers = {})
{
    for (int key : keys) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
            QCoreApplication::postEvent(&widget, new QKeyEvent(type, key, modifiers));
    }
    QCoreApplication::sendPostedEvents(&widget);
}

// Where the window was painted last, by itself.
QColor colorOnScreen(const QWidget& window, const QPoint& place)
{
    QCoreApplication::processEvents();
    const auto* screen = static_cast<const QImage*>(window.backingStore()->paintDevice());
    return screen->pixelColor(place * window.devicePixelRatioF());
}

} // namespace

class FreespaceKeysTest : public QObject
{
    Q_OBJECT

private slots:
    void pageKeysSelectTheSensorsInACircle()
    {
        EditedPicture view;
        picture::Announcements announcements(view);
        QTest::keyClick(&view, Qt::Key_PageUp);
        QTest::keyClick(&view, Qt::Key_PageDown);
        QTest::keyClick(&view, Qt::Key_PageDown);
        QCOMPARE(announcements.take(),
                 (Announced{{11, {0, 8500, 0, 0}}, {0, {0, -8000, 0, 0}}, {1, {0, -6500, 0, 0}}}));
        QCOMPARE(view.scene()->selectedItems().size(), 1);
    }

    void selectionByKeyComesIntoSight()
    {
        EditedPicture view;
        view.sensor(11).setPos(60000, 0);
        QTest::keyClick(&view, Qt::Key_PageUp);
        QVERIFY(view.viewport()->rect().contains(view.pixel(11)));
    }

    void pictureThatHasTheKeysIsFramed()
    {
        QWidget window;
        QHBoxLayout layout(&window);
        OrvgFreespaceGraphicsView view;
        QPushButton button;
        layout.addWidget(&view);
        layout.addWidget(&button);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const QColor highlight = view.palette().color(QPalette::Highlight);
        view.setFocus();
        for (const QPoint corner : {QPoint(0, 0), view.rect().bottomRight()})
            QCOMPARE(colorOnScreen(window, view.mapTo(&window, corner)), highlight);
        QTest::keyClick(&view, Qt::Key_Tab);
        QVERIFY(button.hasFocus());
        for (const QPoint corner : {QPoint(0, 0), view.rect().bottomRight()})
            QVERIFY(colorOnScreen(window, view.mapTo(&window, corner)) != highlight);
    }

    void pageKeysScrollInViewMode()
    {
        EditedPicture view;
        view.onSetEditMode(false);
        view.setInteractive(false);
        const int before = view.verticalScrollBar()->value();
        QTest::keyClick(&view, Qt::Key_PageDown);
        QVERIFY(view.verticalScrollBar()->value() > before);
        QVERIFY(view.scene()->selectedItems().isEmpty());
    }

    void pageKeysDoNothingWithoutSensors()
    {
        OrvgFreespaceGraphicsView view;
        view.onSetEditMode(true);
        QTest::keyClick(&view, Qt::Key_PageDown);
        QVERIFY(view.scene()->selectedItems().isEmpty());
    }

    void arrowKeysMoveTheSelectedSensorByTenMillimetres_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QPoint>("place"); // on the vehicle
        QTest::newRow("left") << int(Qt::Key_Left) << 0 << QPoint(-3510, 0);
        QTest::newRow("right") << int(Qt::Key_Right) << 0 << QPoint(-3490, 0);
        QTest::newRow("up") << int(Qt::Key_Up) << 0 << QPoint(-3500, 10);
        QTest::newRow("down") << int(Qt::Key_Down) << 0 << QPoint(-3500, -10);
        QTest::newRow("far") << int(Qt::Key_Up) << int(Qt::ShiftModifier) << QPoint(-3500, 100);
        QTest::newRow("keypad") << int(Qt::Key_Up) << int(Qt::KeypadModifier) << QPoint(-3500, 10);
    }

    void arrowKeysMoveTheSelectedSensorByTenMillimetres()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(QPoint, place);
        EditedPicture view;
        view.sensor(3).setSelected(true);
        picture::Announcements announcements(view);
        const QPointF corner = view.mapToScene(0, 0);
        QTest::keyClick(&view, static_cast<Qt::Key>(key),
                        static_cast<Qt::KeyboardModifiers>(modifiers));
        QCOMPARE(announcements.take(), (Announced{{3,
                                                   {0, static_cast<std::int16_t>(place.x()),
                                                    static_cast<std::int16_t>(place.y()), 0}}}));
        QCOMPARE(view.sensor(3).pos(), QPointF(place.x(), -place.y()));
        QCOMPARE(view.sensor(4).pos(), QPointF(-2000, 0));
        QVERIFY2(view.mapToScene(0, 0) == corner, "the picture scrolled");
    }

    void everyArrowOfABatchCounts()
    {
        EditedPicture view;
        view.sensor(3).setSelected(true);
        postKeys(view, {Qt::Key_Right, Qt::Key_Right, Qt::Key_Up, Qt::Key_Right});
        QVERIFY((view.sensor(3).position() == orv::OrvSensorPosition{0, -3470, 10, 0}));
    }

    void keysInABatchReachTheSensorThatIsSelectedThen()
    {
        EditedPicture view;
        postKeys(view, {Qt::Key_PageDown, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_Down});
        QCOMPARE(view.sensor(0).pos(), QPointF(-8000, -10));
        QCOMPARE(view.sensor(1).pos(), QPointF(-6500, 10));
    }

    void arrowKeysMoveAllSelectedSensors()
    {
        EditedPicture view;
        view.sensor(5).setSelected(true);
        view.sensor(3).setSelected(true);
        picture::Announcements announcements(view);
        QTest::keyClick(&view, Qt::Key_Up);
        QCOMPARE(announcements.take(), (Announced{{5, {0, -500, 10, 0}}, {3, {0, -3500, 10, 0}}}));
    }

    void arrowKeysStopAtTheEdgeOfWhatAPositionHolds()
    {
        EditedPicture view;
        view.sensor(3).setPosition({0, 32760, -32767, 0});
        view.sensor(3).setSelected(true);
        postKeys(view, {Qt::Key_Right, Qt::Key_Right, Qt::Key_Down, Qt::Key_Down});
        QVERIFY((view.sensor(3).position() == orv::OrvSensorPosition{0, 32767, -32768, 0}));
    }

    void sensorThatArrowKeysMoveStaysInSight()
    {
        EditedPicture view;
        view.sensor(3).setPosition({0, 0, 5800, 0});
        view.sensor(3).setSelected(true);
        postKeys(view, {Qt::Key_Up, Qt::Key_Up, Qt::Key_Up, Qt::Key_Up}, Qt::ShiftModifier);
        QVERIFY(view.viewport()->rect().contains(view.pixel(3)));
    }

    void arrowKeysScrollWhenNobodyIsSelected()
    {
        EditedPicture view;
        const int before = view.verticalScrollBar()->value();
        QTest::keyClick(&view, Qt::Key_Down);
        QVERIFY(view.verticalScrollBar()->value() > before);
    }

    void arrowKeysScrollInViewMode()
    {
        EditedPicture view;
        view.onSetEditMode(false);
        view.sensor(3).setSelected(true);
        const int before = view.horizontalScrollBar()->value();
        QTest::keyClick(&view, Qt::Key_Right);
        QVERIFY(view.horizontalScrollBar()->value() > before);
        QCOMPARE(view.sensor(3).pos(), QPointF(-3500, 0));
    }

    void shortcutsOfOthersMoveNobody()
    {
        EditedPicture view;
        view.sensor(3).setSelected(true);
        QTest::keyClick(&view, Qt::Key_Up, Qt::ControlModifier);
        QTest::keyClick(&view, Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(view.sensor(3).pos(), QPointF(-3500, 0));
    }

    void escapeSelectsNobody()
    {
        EditedPicture view;
        view.sensor(3).setSelected(true);
        picture::Announcements announcements(view);
        QTest::keyClick(&view, Qt::Key_Escape);
        QCOMPARE(announcements.take(), (Announced{{255, {0, 0, 0, 0}}}));
        QTest::keyClick(&view, Qt::Key_Escape);
        QCOMPARE(announcements.take(), Announced());
    }

    void plusAndMinusZoomAsTheButtonsDo()
    {
        EditedPicture view;
        postKeys(view, {Qt::Key_Plus, Qt::Key_Plus});
        QVERIFY(qAbs(view.zoomOfNextStep() - 1.02) < 1e-9);
        postKeys(view, {Qt::Key_Minus, Qt::Key_Minus});
        QVERIFY(qAbs(view.zoomOfNextStep() - 0.98) < 1e-9); // 6 - 3 is replaced, then -3 more
    }
};

QTEST_MAIN(FreespaceKeysTest)
#include "test_freespace_keys.moc"
