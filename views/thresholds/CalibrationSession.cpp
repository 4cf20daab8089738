#include "views/thresholds/CalibrationSession.h"

#include "orv_decoder/OrvCtrlClient.h"
#include "views/common/EcuExchange.h"
#include "views/common/messages.h"
#include "views/thresholds/CalibrationDialog.h"

#include <QMessageBox>

CalibrationSession::CalibrationSession(CalibrationClock* clock, QWidget* view)
    : QObject(view), mView(view), mRun(new CalibrationRun(clock, this))
{
    connect(mRun, &CalibrationRun::ended, this, &CalibrationSession::end);
}

CalibrationSession::~CalibrationSession()
{
    delete mDialog;
}

bool CalibrationSession::start(const EcuExchange& ecu, std::uint8_t sensorId)
{
    if (mRun->isRunning())
        return false;
    const auto start = [this, sensorId](orv::OrvCtrlClient& client) {
        return mRun->start(client, sensorId);
    };
    if (!ecu.run(false, start))
        return false;
    mEcu = &ecu;
    showDialog();
    return true;
}

void CalibrationSession::showDialog()
{
    mDialog = new CalibrationDialog(mView->parentWidget());
    connect(mRun, &CalibrationRun::stepped, mDialog, &CalibrationDialog::showStep);
    mDialog->show();
}

void CalibrationSession::end(CalibrationRun::Ending ending)
{
    delete mDialog;
    const std::uint8_t sensorId = mRun->sensorId();
    emit ended(sensorId);
    // A box runs an event loop of its own, which must not happen inside the tick that ended the
    // run.
    QMetaObject::invokeMethod(
        this,
        [this, ending, sensorId, reason = mEcu->client()->lastError()] {
            conclude(ending, sensorId, reason);
        },
        Qt::QueuedConnection);
}

void CalibrationSession::conclude(CalibrationRun::Ending ending, std::uint8_t sensorId,
                                  const std::string& reason)
{
    if (ending == CalibrationRun::Ending::Finished)
        emit succeeded(sensorId);
    else
        tell(ending, reason);
}

void CalibrationSession::tell(CalibrationRun::Ending ending, const std::string& reason)
{
    using Ending = CalibrationRun::Ending;
    switch (ending) {
    case Ending::AbortedByEcu:
        showCalibrationError(tr("Calibration was aborted!\nPlease check sensor connection."));
        break;
    case Ending::ExchangeFailed:
        showCommunicationError(mView, reason);
        break;
    case Ending::TimedOut:
        showCalibrationError(tr("Calibration time out."));
        break;
    case Ending::Finished:
        break;
    }
}

void CalibrationSession::showCalibrationError(const QString& text)
{
    QMessageBox::warning(mView, tr("Calibration error"), text);
}
