#include "app/TarvioApplication.h"
#include "tests/app/scenes/Stage.h"
#include "views/freespace/OrvgFreespaceGraphicsView.h"
#include "views/freespace/OrvgSensorItem.h"
#include "views/live/OrvgSignalLineWidget.h"
#include "views/live/OrvgSignalWidget.h"
#include "views/recording/OrvgCurveRecordingDialog.h"

#include <QAction>
#include <QComboBox>
#include <QDockWidget>
#include <QDoubleSpinBox>
#include <QGraphicsScene>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableView>
#include <QTableWidget>
#include <QTimeLine>
#include <QToolButton>
#include <QtTest>

/// What the mouse can do, done by keys alone: each goes to the part that has the focus, and the
/// focus is moved by keys.
///
/// What Qt leaves to the mouse is arranging: floating and moving docks, and dividing views. Several
/// sensors in the picture are moved one after the other.
class TestKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void init() { mStage = std::make_unique<Stage>(); }
    void cleanup() { mStage.reset(); }

    void menusDoWhatTheToolBarDoes();
    void viewsAndDocksComeToTheFront();
    void aSlotOfEachTimelineIsShown();
    void tabStopsAtTheTimelineOfTheSelectedSensorAlone();
    void aSensorIsSelectedMovedAndTurnedInThePicture();
    void thePictureIsZoomedAndScrolled();
    void aThresholdIsEdited();
    void aStepIsAddedEditedAndRemoved();
    void aPositionIsEdited();
    void aRecordingIsMade();

private:
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void tabTo(const QWidget& part);
    bool leadsTo(Qt::Key key, const QWidget& part);
    QString firstEcho() const;
    OrvgSignalLineWidget& timeline(int sensor);

    std::unique_ptr<Stage> mStage;
};

void TestKeyboard::press(int key, Qt::KeyboardModifiers modifiers)
{
    QWidget* focused = QApplication::activePopupWidget();
    if (focused && focused->focusWidget())
        focused = focused->focusWidget();
    if (!focused)
        focused = QApplication::focusWidget();
    QVERIFY(focused);
    QTest::keyClick(focused, static_cast<Qt::Key>(key), modifiers);
    mStage->pass(0);
}

bool TestKeyboard::leadsTo(Qt::Key key, const QWidget& part)
{
    for (int presses = 0; presses < 60 && QApplication::focusWidget() != &part; ++presses)
        press(key);
    return QApplication::focusWidget() == &part;
}

void TestKeyboard::tabTo(const QWidget& part)
{
    QVERIFY2(leadsTo(Qt::Key_Tab, part), qPrintable(part.objectName()));
}

QString TestKeyboard::firstEcho() const
{
    return mStage->part<QTableWidget>("echoTable").item(0, 0)->text();
}

OrvgSignalLineWidget& TestKeyboard::timeline(int sensor)
{
    return *mStage->window().findChildren<OrvgSignalLineWidget*>().at(sensor);
}

void TestKeyboard::menusDoWhatTheToolBarDoes()
{
    auto& capture = mStage->part<QAction>("actionCapture");
    press(Qt::Key_C, Qt::AltModifier); // the menu E&CU
    QVERIFY(QApplication::activePopupWidget());
    press(Qt::Key_C); // &Capture
    QVERIFY(capture.isChecked());
    for (const QAction* action : mStage->part<QWidget>("mainToolBar").actions()) {
        bool isInMenu = action->isSeparator();
        for (const auto* menu : mStage->window().findChildren<QMenu*>())
            isInMenu |= menu->actions().contains(const_cast<QAction*>(action));
        QVERIFY2(isInMenu, qPrintable(action->text()));
    }
}

void TestKeyboard::viewsAndDocksComeToTheFront()
{
    auto& area = mStage->part<QMdiArea>("mMdiArea");
    QCOMPARE(area.currentSubWindow(), area.subWindowList().at(0));
    press(Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(area.currentSubWindow(), area.subWindowList().at(1));
    const auto isSeen = [this](const char* dock) {
        return !mStage->part<QDockWidget>(dock).visibleRegion().isEmpty();
    };
    QVERIFY(!isSeen("mseqDock"));
    press(Qt::Key_M, Qt::AltModifier);
    QVERIFY(isSeen("mseqDock"));
    press(Qt::Key_N, Qt::AltModifier);
    QVERIFY(isSeen("sensorPositionDock"));
}

void TestKeyboard::aSlotOfEachTimelineIsShown()
{
    auto& first = mStage->part<QRadioButton>("0");
    tabTo(first);
    press(Qt::Key_Down);
    QVERIFY(mStage->part<QRadioButton>("1").isChecked());
    tabTo(timeline(1));
    press(Qt::Key_Left);
    QCOMPARE(firstEcho(), QString("5.22")); // sensor 2's
    press(Qt::Key_Down);
    QCOMPARE(QApplication::focusWidget(), &timeline(2));
    press(Qt::Key_Space);
    QCOMPARE(firstEcho(), QString("5.32"));
    press(Qt::Key_Up);
    press(Qt::Key_End);
    QCOMPARE(firstEcho(), QString("5.22"));
    // The oldest slot has no echoes: the table keeps what it shows, the picture is empty.
    press(Qt::Key_Home);
    auto& large = mStage->part<OrvgSignalWidget>("signalWidget");
    QVERIFY(large.echoes().empty());
}

void TestKeyboard::tabStopsAtTheTimelineOfTheSelectedSensorAlone()
{
    tabTo(mStage->part<QRadioButton>("0"));
    for (int sensor = 0; sensor < 4; ++sensor)
        press(Qt::Key_Down);
    QVERIFY(mStage->part<QRadioButton>("4").isChecked());
    press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), &timeline(4));
    press(Qt::Key_Tab);
    QVERIFY(!qobject_cast<OrvgSignalLineWidget*>(QApplication::focusWidget()));
}

void TestKeyboard::aSensorIsSelectedMovedAndTurnedInThePicture()
{
    press(Qt::Key_Tab, Qt::ControlModifier);
    tabTo(mStage->part<QToolButton>("mModeButton"));
    press(Qt::Key_Space);
    auto& picture = mStage->part<OrvgFreespaceGraphicsView>("graphicsView");
    tabTo(picture);
    press(Qt::Key_PageDown);
    press(Qt::Key_PageDown);
    const auto selected = picture.scene()->selectedItems();
    QCOMPARE(selected.size(), 1);
    auto* sensor = dynamic_cast<OrvgSensorItem*>(selected.first());
    QVERIFY(sensor);
    QCOMPARE(int(sensor->id()), 1);
    const orv::OrvSensorPosition former = sensor->position();
    press(Qt::Key_Right);
    press(Qt::Key_Up, Qt::ShiftModifier);
    QCOMPARE(int(sensor->position().x), former.x + 10);
    QCOMPARE(int(sensor->position().y), former.y + 100);
    auto& angle = mStage->part<QDoubleSpinBox>("mAngleSpinBox");
    tabTo(angle);
    const double degrees = angle.value();
    press(degrees < 300 ? Qt::Key_Up : Qt::Key_Down);
    QVERIFY(sensor->position().direction != former.direction);
    tabTo(picture);
    press(Qt::Key_Escape);
    QVERIFY(picture.scene()->selectedItems().isEmpty());
}

void TestKeyboard::thePictureIsZoomedAndScrolled()
{
    press(Qt::Key_Tab, Qt::ControlModifier);
    auto& picture = mStage->part<OrvgFreespaceGraphicsView>("graphicsView");
    tabTo(picture);
    const double scale = picture.transform().m11();
    press(Qt::Key_Plus);
    QTRY_VERIFY(picture.findChildren<QTimeLine*>().isEmpty());
    QVERIFY(picture.transform().m11() > scale);
    const QPointF center = picture.mapToScene(picture.viewport()->rect().center());
    press(Qt::Key_Right);
    QVERIFY(picture.mapToScene(picture.viewport()->rect().center()).x() > center.x());
    press(Qt::Key_Minus);
    QTRY_VERIFY(picture.findChildren<QTimeLine*>().isEmpty());
    press(Qt::Key_Minus);
    QTRY_VERIFY(picture.findChildren<QTimeLine*>().isEmpty());
    QVERIFY(picture.transform().m11() < scale);
    const double zoomedOut = picture.transform().m11();
    tabTo(mStage->part<QToolButton>("mZoomInButton"));
    press(Qt::Key_Space);
    QTRY_VERIFY(picture.findChildren<QTimeLine*>().isEmpty());
    QVERIFY(picture.transform().m11() > zoomedOut);
}

void TestKeyboard::aThresholdIsEdited()
{
    auto& table = mStage->part<QTableView>("mTableView");
    tabTo(table);
    press(Qt::Key_Home, Qt::ControlModifier);
    const QString former = table.currentIndex().data().toString();
    press(Qt::Key_F2);
    QVERIFY(QApplication::activePopupWidget());
    const QPointer<QWidget> editor = QApplication::activePopupWidget();
    auto* levels = editor->findChild<QComboBox*>("mLevelCb");
    for (int presses = 0; presses < 3 && editor->focusWidget() != levels; ++presses)
        press(Qt::Key_Tab);
    QCOMPARE(editor->focusWidget(), levels);
    press(levels->currentIndex() > 0 ? Qt::Key_Up : Qt::Key_Down);
    press(Qt::Key_Return);
    QVERIFY(!editor || !editor->isVisible());
    QVERIFY(table.currentIndex().data().toString() != former);
}

void TestKeyboard::aStepIsAddedEditedAndRemoved()
{
    press(Qt::Key_M, Qt::AltModifier);
    auto& table = mStage->part<QTableView>("mseqTable");
    tabTo(mStage->part<QToolButton>("removeStepTb"));
    const int count = table.model()->rowCount();
    tabTo(table);
    press(Qt::Key_Home, Qt::ControlModifier);
    tabTo(mStage->part<QToolButton>("removeStepTb"));
    press(Qt::Key_Space);
    QCOMPARE(table.model()->rowCount(), count - 1);
    tabTo(mStage->part<QToolButton>("addStepTb"));
    press(Qt::Key_Space);
    QCOMPARE(table.model()->rowCount(), count);
    tabTo(table);
    press(Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(table.currentIndex().data().toString(), QString("AM"));
    press(Qt::Key_B);
    press(Qt::Key_Return);
    QCOMPARE(table.currentIndex().data().toString(), QString("BPSK0"));
}

void TestKeyboard::aPositionIsEdited()
{
    press(Qt::Key_N, Qt::AltModifier);
    auto& table = mStage->part<QTableView>("tableView");
    tabTo(table);
    press(Qt::Key_Home, Qt::ControlModifier);
    press(Qt::Key_F2);
    auto* editor = QApplication::focusWidget();
    QVERIFY(table.isAncestorOf(editor));
    QTest::keyClicks(editor, "777");
    press(Qt::Key_Return);
    QCOMPARE(table.model()->index(0, 0).data().toInt(), 777);
}

void TestKeyboard::aRecordingIsMade()
{
    int recorded = 0;
    const auto record = [&](QWidget& dialog) {
        for (const char* button : {"mRecordPb", "mStopPb"}) {
            tabTo(*dialog.findChild<QWidget*>(button));
            press(Qt::Key_Space);
            mStage->showLiveData();
            ++recorded;
        }
        press(Qt::Key_Escape);
    };
    mStage->play(
        [&] {
            // The menu Tools has no letter of its own.
            press(Qt::Key_C, Qt::AltModifier);
            press(Qt::Key_Right);
            press(Qt::Key_Return);
        },
        [](QWidget&) {}, {record});
    QCOMPARE(recorded, 2);
}

int main(int argc, char** argv)
{
    TarvioApplication application(argc, argv);
    TestKeyboard test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_keyboard.moc"
