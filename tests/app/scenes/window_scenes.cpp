#include "tests/app/scenes/scenes.h"
#include "tests/support/LoopbackPeer.h"
#include "views/freespace/OrvgFreespaceGraphicsView.h"

#include <QAbstractButton>
#include <QDockWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QSpinBox>
#include <QTableView>
#include <QtTest>

namespace {

enum SubWindow { Signals, Freespaces };

void bringToFront(Stage& stage, SubWindow view, const char* dock)
{
    auto& area = stage.part<QMdiArea>("mMdiArea");
    area.setActiveSubWindow(area.subWindowList().at(view));
    stage.part<QDockWidget>(dock).raise();
    stage.pass(0);
}

void lookAt(Stage& stage, SubWindow view, const char* dock, const Stage::Look& look)
{
    bringToFront(stage, view, dock);
    stage.showLiveData();
    look(stage.window());
}

void lookAtEditMode(Stage& stage, const Stage::Look& look)
{
    bringToFront(stage, Freespaces, "sensorPositionDock");
    stage.part<QAbstractButton>("mModeButton").setChecked(true);
    auto& picture = stage.part<OrvgFreespaceGraphicsView>("graphicsView");
    picture.setFocus();
    QTest::keyClick(&picture, Qt::Key_PageDown);
    look(stage.window());
    stage.part<QAbstractButton>("mModeButton").setChecked(false);
    bringToFront(stage, Signals, "thresholdDock");
}

void lookAtTheLostLink(Stage& stage, const Stage::Look& look)
{
    stage.setMood(Stage::Mood::Refuses);
    stage.window().onStatusTimeout();
    look(stage.window());
    stage.setMood(Stage::Mood::Answers);
    stage.window().onStatusTimeout();
    look(stage.window());
}

Stage::Answer choosePorts(std::uint16_t receivePort, std::uint16_t freespacePort)
{
    return [=](QWidget& dialog) {
        dialog.findChild<QSpinBox*>("mReceivingPort")->setValue(receivePort);
        dialog.findChild<QSpinBox*>("mFreespacesPort")->setValue(freespacePort);
        Stage::press(QMessageBox::Ok)(dialog);
    };
}

// Both messages at once may be too long for the bar; the tool tip of the light has them on lines.
void lookAtMissedPort(Stage& stage, const Stage::Look& look)
{
    const LoopbackPeer other;
    const auto connectTo = [&stage](const Stage::Answer& choose) {
        stage.play([&] { stage.trigger("actionConnection"); }, [](QWidget&) {}, {choose});
    };
    connectTo(choosePorts(other.port(), stage.freespacePort()));
    look(stage.window());
    connectTo(choosePorts(stage.receivePort(), stage.freespacePort()));
}

} // namespace

std::vector<Scene> windowScenes()
{
    return {{"signals, thresholds",
             [](Stage& stage, const Stage::Look& look) {
                 stage.part<QTableView>("mTableView").selectRow(2);
                 lookAt(stage, Signals, "thresholdDock", look);
             }},
            {"freespaces, sequence",
             [](Stage& stage, const Stage::Look& look) {
                 lookAt(stage, Freespaces, "mseqDock", look);
             }},
            {"freespaces, positions",
             [](Stage& stage, const Stage::Look& look) {
                 lookAt(stage, Freespaces, "sensorPositionDock", look);
             }},
            {"edit mode", lookAtEditMode},
            {"lost link", lookAtTheLostLink},
            {"port in use", lookAtMissedPort}};
}
