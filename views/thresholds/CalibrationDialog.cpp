#include "views/thresholds/CalibrationDialog.h"

#include <QCloseEvent>
#include <QProgressBar>

CalibrationDialog::CalibrationDialog(QWidget* parent)
    : QProgressDialog(tr("Auto calibrating thresholds..."), tr("Abort"), 0, 100, parent)
    , mBar(new QProgressBar(this))
{
    // The signal would hide the dialog while the ECU is still at work.
    disconnect(this, SIGNAL(canceled()), this, SLOT(cancel()));
    setWindowTitle(tr("Tarvio"));
    mBar->setTextVisible(false);
    setBar(mBar);
    setWindowModality(Qt::WindowModal);
    setAutoClose(false);
    setAutoReset(false);
    setValue(0);
}

// QProgressDialog::setValue() would process the events that wait.
void CalibrationDialog::showStep(int value, bool inverted)
{
    mBar->setInvertedAppearance(inverted);
    mBar->setValue(value);
}

void CalibrationDialog::closeEvent(QCloseEvent* event)
{
    event->ignore();
}
