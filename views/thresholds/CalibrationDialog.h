#pragma once

#include "ecu/calibration/CalibrationRun.h"

#include <QProgressDialog>

#include <functional>

class QProgressBar;

namespace orv {
class OrvCtrlClient;
}

/// The busy indicator of a running calibration. It blocks its window and stays until it is
/// destroyed: neither "Abort" nor the Escape key ends what the ECU does.
class CalibrationDialog : public QProgressDialog
{
    Q_OBJECT

public:
    explicit CalibrationDialog(QWidget* parent);

    /// Shows the value 0..100 and processes the events that wait, which may destroy the dialog.
    void showStep(int value, bool inverted);

    void reject() override {}

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QProgressBar* mBar;
};

/// Shows the dialog over the parent of `view` until the calibration that the ECU has started is
/// over. The view may be destroyed and its window closed meanwhile; both abandon the run.
/// @param wait sleeps that many milliseconds
CalibrationRun::Ending watchCalibration(QWidget& view, orv::OrvCtrlClient& client,
                                        const std::function<void(int milliseconds)>& wait);
