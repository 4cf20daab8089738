#pragma once

#include <QProgressDialog>

class QProgressBar;

/// The busy indicator of a running calibration. It blocks its window and stays until it is
/// destroyed: neither "Abort" nor the Escape key ends what the ECU does.
class CalibrationDialog : public QProgressDialog
{
    Q_OBJECT

public:
    explicit CalibrationDialog(QWidget* parent);

    void reject() override {}

public slots:
    /// Shows the value 0..100.
    void showStep(int value, bool inverted);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QProgressBar* mBar;
};
