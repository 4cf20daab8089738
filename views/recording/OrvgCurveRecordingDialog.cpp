#include "views/recording/OrvgCurveRecordingDialog.h"

#include "ecu/recording/recording_pattern.h"
#include "orv_decoder/constants.h"
#include "ui_OrvgCurveRecordingDialog.h"
#include "views/common/messages.h"
#include "views/common/save_dialog.h"
#include "views/common/threshold_style.h"

#include <QKeyEvent>
#include <QLocale>
#include <QMessageBox>

#include <algorithm>

namespace {

std::uint8_t valueOf(const QSpinBox* box)
{
    return static_cast<std::uint8_t>(box->value());
}

// A time index alone says little.
void tellDuration(QSpinBox& timeIndexBox)
{
    const auto tell = [&timeIndexBox](int timeIndex) {
        timeIndexBox.setToolTip(segmentDurationText(timeIndex));
    };
    QObject::connect(&timeIndexBox, QOverload<int>::of(&QSpinBox::valueChanged), &timeIndexBox,
                     tell);
    tell(timeIndexBox.value());
}

} // namespace

OrvgCurveRecordingDialog::OrvgCurveRecordingDialog(orv::OrvCtrlClient* client, QWidget* parent)
    : QDialog(parent), mUi(std::make_unique<Ui::OrvgCurveRecordingDialog>()), mRun(client, this)
{
    mUi->setupUi(this);
    mUi->mPlot->setThresholdColor(kThresholdColor);
    fillControls();
    connectSignals();
    connectRun();
    updateControls();
}

OrvgCurveRecordingDialog::~OrvgCurveRecordingDialog() = default;

QString OrvgCurveRecordingDialog::timingsText(qint64 elapsedMs)
{
    const double seconds = static_cast<double>(elapsedMs) / 1000;
    return tr("Measurement done in %1 sec.").arg(seconds, 0, 'g', QLocale::FloatingPointShortest);
}

void OrvgCurveRecordingDialog::fillControls()
{
    for (int sensor = 0; sensor < orv::kSensorCount; ++sensor)
        mUi->mSensorCb->addItem(tr("Sensor %1").arg(sensor + 1));
    const RecordingSettings initial;
    mUi->mWindowLeftSb->setValue(initial.windowLeft);
    mUi->mWindowRightSb->setValue(initial.windowRight);
    mUi->mLutStepSb->setValue(initial.positionStep);
    mUi->mSamplesCountSb->setValue(initial.samplesPerStep);
    tellDuration(*mUi->mWindowLeftSb);
    tellDuration(*mUi->mWindowRightSb);
    mUi->mProgressBar->setRange(0, static_cast<int>(kEndPosition));
    mUi->mProgressBar->setValue(0);
}

void OrvgCurveRecordingDialog::connectSignals()
{
    using Dialog = OrvgCurveRecordingDialog;
    connect(mUi->mRecordPb, &QPushButton::clicked, this, &Dialog::onRecordClicked);
    connect(mUi->mStopPb, &QPushButton::clicked, this, &Dialog::onStopClicked);
    connect(mUi->mSavePb, &QPushButton::clicked, this, &Dialog::onSaveClicked);
    connect(mUi->mMaxRb, &QRadioButton::toggled, mUi->mPlot, &OrvgPlotWidget::setMaximumMode);
}

void OrvgCurveRecordingDialog::connectRun()
{
    connect(&mRun, &RecordingRun::stateChanged, this, &OrvgCurveRecordingDialog::updateControls);
    connect(&mRun, &RecordingRun::started, mUi->mPlot, &OrvgPlotWidget::resetData);
    connect(&mRun, &RecordingRun::heard, mUi->mPlot, &OrvgPlotWidget::addData);
    connect(&mRun, &RecordingRun::windowMoved, this, &OrvgCurveRecordingDialog::showWindow);
    connect(&mRun, &RecordingRun::ended, this, &OrvgCurveRecordingDialog::conclude);
}

void OrvgCurveRecordingDialog::updateControls()
{
    using State = RecordingRun::State;
    const bool idle = mRun.state() == State::Idle;
    // In this order: Stop hands its focus on to Save when it is disabled, not to a setting.
    mUi->mSavePb->setEnabled(idle);
    mUi->mStopPb->setEnabled(!idle);
    mUi->mRecordPb->setEnabled(idle || mRun.state() == State::StopRequested);
    mUi->mSensorCb->setEnabled(idle);
}

RecordingSettings OrvgCurveRecordingDialog::settings() const
{
    return {.sensor = static_cast<std::uint8_t>(mUi->mSensorCb->currentIndex()),
            .windowLeft = valueOf(mUi->mWindowLeftSb),
            .windowRight = valueOf(mUi->mWindowRightSb),
            .samplesPerStep = valueOf(mUi->mSamplesCountSb),
            .positionStep = valueOf(mUi->mLutStepSb)};
}

void OrvgCurveRecordingDialog::reject()
{
    if (!mRun.isRecording())
        QDialog::reject();
    else if (!mDiscardQuestion)
        askToDiscard();
}

// The recording goes on while the question waits: what is not discarded has no gap.
void OrvgCurveRecordingDialog::askToDiscard()
{
    mDiscardQuestion = openQuestion(
        this, windowTitle(), tr("The recording is still running. Discard what was recorded?"));
    connect(mDiscardQuestion, &QDialog::finished, this, [this](int answer) {
        mDiscardQuestion.clear();
        if (answer == QMessageBox::Yes)
            done(QDialog::Rejected);
    });
}

void OrvgCurveRecordingDialog::done(int result)
{
    mRun.discard();
    QDialog::done(result);
}

// Enter presses the button that has the focus; in a field it ends the typing and nothing else.
void OrvgCurveRecordingDialog::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto* button = qobject_cast<QPushButton*>(focusWidget());
    if (isEnter && button)
        button->click();
    else
        QDialog::keyPressEvent(event);
}

void OrvgCurveRecordingDialog::onNewMeasResult(const orv::OrvMeasurementResult& result)
{
    mRun.take(result, settings());
}

void OrvgCurveRecordingDialog::onRecordClicked()
{
    mRun.start();
    // Space and Enter stop; no key changes a setting by accident.
    mUi->mStopPb->setFocus();
}

void OrvgCurveRecordingDialog::onStopClicked()
{
    mRun.requestStop();
}

void OrvgCurveRecordingDialog::onSaveClicked()
{
    const QString fileName =
        askSaveFileName(this, tr("Select file"), tr("CSV files(*.csv)"), QStringLiteral(".csv"));
    if (!fileName.isEmpty())
        mUi->mPlot->save(fileName);
}

void OrvgCurveRecordingDialog::onWatchdogTimeout()
{
    mRun.timeOut();
}

void OrvgCurveRecordingDialog::showWindow(const orv::SensorThreshold& threshold,
                                          std::uint32_t position)
{
    if (position != 0)
        showProgress(position);
    mUi->mPlot->setThresholds(threshold.entries);
    mUi->mPlot->setThresholdsShown(true);
}

void OrvgCurveRecordingDialog::showProgress(std::uint32_t position)
{
    // A bar that may be updated repaints the whole window before it returns.
    mUi->mProgressBar->setUpdatesEnabled(false);
    // A step may jump over the end, which the bar does not show.
    mUi->mProgressBar->setValue(static_cast<int>(std::min(position, kEndPosition)));
    mUi->mProgressBar->setUpdatesEnabled(true);
}

void OrvgCurveRecordingDialog::conclude(RecordingRun::Ending ending)
{
    // It has lost its sense, and another box may follow.
    if (mDiscardQuestion)
        mDiscardQuestion->reject();
    if (ending == RecordingRun::Ending::Completed)
        openInformation(this, tr("Timings"), timingsText(mRun.elapsedMs()));
    else if (ending == RecordingRun::Ending::TimedOut)
        openWarning(this, tr("Timeout"), tr("Data receiving timeout. Recording is aborted."));
}
