#include "app/OrvgIpControlWidget.h"
#include "tests/app/scenes/recorded.h"
#include "tests/app/scenes/scenes.h"
#include "views/thresholds/CalibrationDialog.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

namespace {

Scene opened(const char* name, const char* action)
{
    return {name, [action](Stage& stage, const Stage::Look& look) {
                stage.play([&] { stage.trigger(action); }, look);
            }};
}

void lookAtImportedConnection(Stage& stage, const Stage::Look& look)
{
    stage.profile().setValue("network_imported/ecu_ip", "192.168.100.200");
    const auto leaveOutAnAddress = [look](QWidget& dialog) {
        dialog.findChild<OrvgIpControlWidget*>("ecuIpControl")->setText({});
        dialog.findChild<OrvgIpControlWidget*>("subnetControl")->setText({});
        look(dialog);
        Stage::dismiss()(dialog);
    };
    stage.play([&] { stage.trigger("actionConnection"); }, look, {leaveOutAnAddress});
    stage.profile().remove("network_imported");
}

void lookAtImport(Stage& stage, const Stage::Look& look)
{
    const QString file = writtenSettings(stage);
    const auto choose = [file, look](QWidget& dialog) {
        dialog.findChild<QLineEdit*>("mFileLineEdit")->setText(file);
        look(dialog);
        Stage::dismiss()(dialog);
    };
    stage.play([&] { stage.trigger("actionOpenSettings"); }, look, {choose});
}

void lookAtBrowsing(Stage& stage, const Stage::Look& look)
{
    const auto browse = [](QWidget& dialog) {
        dialog.findChild<QPushButton*>("mBrowseButton")->click();
        Stage::dismiss()(dialog);
    };
    stage.play([&] { stage.trigger("actionOpenSettings"); }, look, {browse});
}

void lookAtSaving(Stage& stage, const Stage::Look& look)
{
    const auto save = [](QWidget& dialog) {
        dialog.findChild<QPushButton*>("mSavePb")->click();
        Stage::dismiss()(dialog);
    };
    stage.play([&] { stage.trigger("actionSaveSettings"); }, look);
    stage.play([&] { stage.trigger("actionEnvelopCurveRecording"); }, look, {save});
}

void lookAtRecording(Stage& stage, const Stage::Look& look)
{
    const auto record = [&stage, look](QWidget& dialog) {
        startRecording(stage, dialog);
        look(dialog);
        finishRecording(stage, dialog);
        Stage::dismiss()(dialog);
    };
    stage.play([&] { stage.trigger("actionEnvelopCurveRecording"); }, look, {record});
}

void lookAtCalibration(Stage& stage, const Stage::Look& look)
{
    CalibrationDialog dialog(&stage.window());
    dialog.show();
    dialog.showStep(40, false);
    stage.pass(0);
    look(dialog);
}

} // namespace

std::vector<Scene> dialogScenes()
{
    return {opened("about", "actionAbout"),
            opened("connection", "actionConnection"),
            opened("import", "actionOpenSettings"),
            {"imported connection", lookAtImportedConnection},
            {"import of a file", lookAtImport},
            {"browsing", lookAtBrowsing},
            {"saving", lookAtSaving},
            {"recording", lookAtRecording},
            {"calibration", lookAtCalibration}};
}

std::vector<Scene> allScenes()
{
    std::vector<Scene> all;
    for (const auto& group : {windowScenes(), popupScenes(), dialogScenes(), boxScenes()})
        all.insert(all.end(), group.begin(), group.end());
    return all;
}
