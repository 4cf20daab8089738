#include "tests/app/scenes/recorded.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace {

// Results until a recording with the largest steps and one sample each is over: 30 windows and the
// sixteen of the last one.
constexpr int kWholeSweep = 60;

} // namespace

QString writtenSettings(Stage& stage)
{
    const QString file = stage.path(QStringLiteral("settings.orv"));
    const auto save = [file](QWidget& dialog) {
        dialog.findChild<QLineEdit*>("fileNameEdit")->setText(file);
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
    };
    QFile::remove(file);
    stage.play([&] { stage.trigger("actionSaveSettings"); }, [](QWidget&) {}, {save});
    return file;
}

void startRecording(Stage& stage, QWidget& dialog)
{
    dialog.findChild<QSpinBox*>("mLutStepSb")->setValue(5);
    dialog.findChild<QSpinBox*>("mSamplesCountSb")->setValue(1);
    dialog.findChild<QPushButton*>("mRecordPb")->click();
    stage.showLiveData();
}

void completeRecording(Stage& stage, QWidget& dialog)
{
    startRecording(stage, dialog);
    for (int taken = 0; taken < kWholeSweep; taken += 5)
        stage.showLiveData();
}

void finishRecording(Stage& stage, QWidget& dialog)
{
    dialog.findChild<QPushButton*>("mStopPb")->click();
    stage.showLiveData();
}
