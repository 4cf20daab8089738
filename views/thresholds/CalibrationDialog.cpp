#include "views/thresholds/CalibrationDialog.h"

#include "orv_decoder/OrvCtrlClient.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QPointer>
#include <QProgressBar>

CalibrationDialog::CalibrationDialog(QWidget* parent)
    : QProgressDialog(tr("Auto calibrating thresholds..."), tr("Abort"), 0, 100, parent)
    , mBar(new QProgressBar(this))
{
    // The signal would hide the dialog while the ECU is still at work.
    disconnect(this, SIGNAL(canceled()), this, SLOT(cancel()));
    mBar->setTextVisible(false);
    setBar(mBar);
    setWindowModality(Qt::WindowModal);
    setAutoClose(false);
    setAutoReset(false);
    setValue(0);
}

// QProgressDialog::setValue() would use the dialog after the events that may have destroyed it.
void CalibrationDialog::showStep(int value, bool inverted)
{
    mBar->setInvertedAppearance(inverted);
    mBar->setValue(value);
    QCoreApplication::processEvents();
}

void CalibrationDialog::closeEvent(QCloseEvent* event)
{
    event->ignore();
}

CalibrationRun::Ending watchCalibration(QWidget& view, orv::OrvCtrlClient& client,
                                        const std::function<void(int milliseconds)>& wait)
{
    const bool wasOpen = view.window()->isVisible();
    const QPointer<QWidget> watcher(&view);
    const QPointer<CalibrationDialog> dialog(new CalibrationDialog(view.parentWidget()));
    dialog->show();
    CalibrationRun run({
        .wait = wait,
        .show =
            [=](int value, bool inverted) {
                if (watcher && dialog)
                    dialog->showStep(value, inverted);
                return watcher && dialog && (watcher->window()->isVisible() || !wasOpen);
            },
        .readState = [&client] { return client.readAutoCalibrationState(); },
    });
    const CalibrationRun::Ending ending = run.run();
    delete dialog;
    return ending;
}
