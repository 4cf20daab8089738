#pragma once

#include "ecu/recording/RecordingRun.h"
#include "orv_decoder/metatypes.h"

#include <QDialog>
#include <QPointer>

#include <memory>

class QMessageBox;

namespace orv {
class OrvCtrlClient;
}

namespace Ui {
class OrvgCurveRecordingDialog;
}

/// Records the envelope curve of one sensor: slides a narrow receive window over the time of
/// flight and collects the echoes that pass it.
///
/// The window is moved by writing the sensor's thresholds to the ECU, not permanently. Closing the
/// dialog during a recording asks whether it may be discarded. No box blocks who delivers results.
class OrvgCurveRecordingDialog : public QDialog
{
    Q_OBJECT

public:
    /// The client is borrowed; with a null one nothing is written.
    OrvgCurveRecordingDialog(orv::OrvCtrlClient* client, QWidget* parent);
    ~OrvgCurveRecordingDialog() override;

    /// What the user is told at the end of a recording.
    static QString timingsText(qint64 elapsedMs);

    /// Ends a recording without a question.
    void done(int result) override;
    void reject() override;

public slots:
    void onNewMeasResult(const orv::OrvMeasurementResult& result);
    void onRecordClicked();
    void onStopClicked();
    void onSaveClicked();
    void onWatchdogTimeout();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void fillControls();
    void connectSignals();
    void connectRun();
    void updateControls();
    RecordingSettings settings() const;
    void askToDiscard();

    void showWindow(const orv::SensorThreshold& threshold, std::uint32_t position);
    void showProgress(std::uint32_t position);
    void conclude(RecordingRun::Ending ending);

    std::unique_ptr<Ui::OrvgCurveRecordingDialog> mUi;
    RecordingRun mRun;
    QPointer<QMessageBox> mDiscardQuestion; // while it is open
};
