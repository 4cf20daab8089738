#include "app/TarvioApplication.h"
#include "tests/app/scenes/recorded.h"
#include "tests/app/scenes/scenes.h"
#include "tests/support/FullDisk.h"
#include "tests/support/OrdinaryUser.h"
#include "views/thresholds/OrvgThresholdView.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QtTest>

#include <optional>

namespace {

using Answers = QVector<Stage::Answer>;
using Act = std::function<void(Stage&)>;

/// The boxes of one act, while the ECU is of this mood; the first question is answered with Yes.
Scene boxes(const char* name, Stage::Mood mood, const Act& act, const Answers& answers = {})
{
    return {name, [=](Stage& stage, const Stage::Look& look) {
                stage.setMood(mood);
                stage.play([&] { act(stage); }, look, answers);
                stage.setMood(Stage::Mood::Answers);
            }};
}

Act clicking(const char* button)
{
    return [button](Stage& stage) { stage.click(button); };
}

Act triggering(const char* action)
{
    return [action](Stage& stage) { stage.trigger(action); };
}

const Answers kYes = {Stage::press(QMessageBox::Yes)};

Stage::Answer pushing(const char* button)
{
    return [button](QWidget& dialog) {
        dialog.findChild<QAbstractButton*>(button)->click();
        Stage::dismiss()(dialog);
    };
}

Stage::Answer saveTo(const QString& file)
{
    return [file](QWidget& dialog) {
        dialog.findChild<QLineEdit*>("fileNameEdit")->setText(file);
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
    };
}

// Without a sensor, and then with one.
void readThresholds(Stage& stage)
{
    auto& table = stage.part<QTableView>("mTableView");
    table.setCurrentIndex({});
    stage.click("mReadTb");
    table.selectRow(11);
    stage.click("mReadTb");
}

void writeThresholds(Stage& stage)
{
    stage.part<QTableView>("mTableView").selectRow(11);
    stage.click("mWriteTb");
}

// No box, but a message.
void transmitAll(Stage& stage, const Stage::Look& look)
{
    stage.play([&] { stage.trigger("actionTransmitToECU"); }, look);
    look(stage.window());
}

void calibrate(Stage& stage, Stage::Mood mood, const Stage::Look& look)
{
    stage.setMood(mood);
    stage.part<QTableView>("mTableView").selectRow(1);
    const auto wait = [](QWidget&) {};
    stage.play([&] { stage.click("mCalibrateTb"); }, look, {wait});
    stage.setMood(Stage::Mood::Answers);
}

void sharePorts(Stage& stage, const Stage::Look& look)
{
    const auto share = [](QWidget& dialog) {
        const int port = dialog.findChild<QSpinBox*>("mReceivingPort")->value();
        dialog.findChild<QSpinBox*>("mFreespacesPort")->setValue(port);
        Stage::press(QMessageBox::Ok)(dialog);
        Stage::dismiss()(dialog);
    };
    stage.play([&] { stage.trigger("actionConnection"); }, look, {share});
}

void storeNothing(Stage& stage, const Stage::Look& look)
{
    std::optional<FullDisk> disk;
    const auto lookWithRoom = [&](QWidget& shown) {
        disk.reset();
        look(shown);
    };
    const auto accept = [&](QWidget& dialog) {
        dialog.findChild<QSpinBox*>("controlPort")->setValue(stage.receivePort() ^ 1);
        disk.emplace(40);
        Stage::press(QMessageBox::Ok)(dialog);
    };
    const std::uint16_t port = stage.controlPort();
    stage.play([&] { stage.trigger("actionConnection"); }, lookWithRoom, {accept});
    const auto putBack = [port](QWidget& dialog) {
        dialog.findChild<QSpinBox*>("controlPort")->setValue(port);
        Stage::press(QMessageBox::Ok)(dialog);
    };
    stage.play([&] { stage.trigger("actionConnection"); }, [](QWidget&) {}, {putBack});
}

void importBadFile(Stage& stage, const Stage::Look& look)
{
    const QString name = stage.path("bad.orv");
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<OrvgProject><MSEQ><Step id=\"1\">x</Step></MSEQ><Thresholds><Sensor/></Thresholds>"
               "<MountPositions>x</MountPositions><Other/></OrvgProject>");
    file.close();
    const auto choose = [name](QWidget& dialog) {
        dialog.findChild<QLineEdit*>("mFileLineEdit")->setText(name);
        Stage::press(QMessageBox::Ok)(dialog);
    };
    stage.play([&] { stage.trigger("actionOpenSettings"); }, look, {choose});
}

void exportNowhere(Stage& stage, const Stage::Look& look)
{
    stage.play([&] { stage.trigger("actionSaveSettings"); }, look,
               {saveTo(stage.path("no/such/folder/file.orv"))});
}

void exportTwice(Stage& stage, const Stage::Look& look)
{
    const QString file = writtenSettings(stage);
    stage.play([&] { stage.trigger("actionSaveSettings"); }, look,
               {saveTo(file), Stage::press(QMessageBox::No), Stage::dismiss()});
}

void saveRecordingNowhere(Stage& stage, const Stage::Look& look)
{
    stage.play([&] { stage.trigger("actionEnvelopCurveRecording"); }, look,
               {pushing("mSavePb"), saveTo(stage.path("no/such/folder/file.csv"))});
}

void discardRecording(Stage& stage, const Stage::Look& look)
{
    const auto closeWhileRecording = [&stage](QWidget& dialog) {
        startRecording(stage, dialog);
        Stage::dismiss()(dialog);
    };
    stage.play([&] { stage.trigger("actionEnvelopCurveRecording"); }, look,
               {closeWhileRecording, Stage::press(QMessageBox::Yes)});
}

void endRecording(Stage& stage, const Stage::Look& look, bool complete)
{
    QPointer<QWidget> recording;
    const auto record = [&](QWidget& dialog) {
        recording = &dialog;
        if (complete)
            completeRecording(stage, dialog);
        else
            startRecording(stage, dialog); // nothing follows
    };
    const auto closeBoth = [&](QWidget& box) {
        Stage::dismiss()(box);
        Stage::dismiss()(*recording);
    };
    stage.play([&] { stage.trigger("actionEnvelopCurveRecording"); }, look, {record, closeBoth});
}

void failUnexpectedly(Stage& stage, const Stage::Look& look)
{
    auto* application = qobject_cast<TarvioApplication*>(qApp);
    QVERIFY(application);
    stage.play(
        [application] {
            application->run([]() -> int { throw std::runtime_error("no such luck"); });
        },
        look);
}

} // namespace

std::vector<Scene> boxScenes()
{
    using Mood = Stage::Mood;
    return {
        boxes("read all, refused", Mood::Refuses, triggering("actionSyncFromECU"), kYes),
        boxes("read all", Mood::Answers, triggering("actionSyncFromECU"), kYes),
        boxes("transmit all, refused", Mood::Refuses, triggering("actionTransmitToECU")),
        {"transmit all", transmitAll},
        boxes("read thresholds", Mood::Refuses, readThresholds, {Stage::dismiss(), kYes.first()}),
        boxes("read all thresholds", Mood::Refuses, clicking("mReadAllTb"), kYes),
        boxes("write thresholds", Mood::Refuses, writeThresholds),
        boxes("read sequence", Mood::Refuses, clicking("readMseqTb"), kYes),
        boxes("read positions", Mood::Refuses, clicking("readSensorPositionTb"), kYes),
        boxes("read network", Mood::Refuses, triggering("actionConnection"),
              {pushing("readButton")}),
        boxes("transmit network", Mood::Answers, triggering("actionConnection"),
              {pushing("transmitButton")}),
        {"aborted calibration",
         [](Stage& stage, const Stage::Look& look) {
             calibrate(stage, Mood::AbortsCalibration, look);
         }},
        {"endless calibration",
         [](Stage& stage, const Stage::Look& look) {
             calibrate(stage, Mood::CalibratesForEver, look);
         }},
        {"shared port", sharePorts},
        {"settings not stored", storeNothing},
        {"bad file", importBadFile},
        {"no folder", exportNowhere},
        {"file there already", exportTwice},
        {"no folder for a recording", saveRecordingNowhere},
        {"discarded recording", discardRecording},
        {"completed recording",
         [](Stage& stage, const Stage::Look& look) { endRecording(stage, look, true); }},
        {"silent recording",
         [](Stage& stage, const Stage::Look& look) { endRecording(stage, look, false); }},
        {"unexpected error", failUnexpectedly}};
}
