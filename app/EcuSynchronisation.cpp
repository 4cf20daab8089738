#include "app/EcuSynchronisation.h"

#include "views/common/WaitCursor.h"
#include "views/common/messages.h"

#include <QMainWindow>
#include <QStatusBar>

namespace {

constexpr int kSuccessMessageMs = 10000;

} // namespace

EcuSynchronisation::EcuSynchronisation(QVector<ConfigurationPart> parts, QMainWindow* window)
    : mParts(std::move(parts)), mWindow(window)
{}

void EcuSynchronisation::readInteractively() const
{
    if (!confirmOverwrite(mWindow, tr("Sync from ECU")))
        return;
    report(underWaitCursor([this] { return readAllFromEcu(mParts); }),
           tr("Some communication errors are detected during reading \n\n%1"),
           tr("ECU data sync: SUCCESS!"));
}

void EcuSynchronisation::readSilently() const
{
    underWaitCursor([this] { return readAllFromEcu(mParts); });
}

void EcuSynchronisation::transmit() const
{
    report(underWaitCursor([this] { return writeAllToEcu(mParts); }),
           tr("Some communication errors are detected during transmitting. \n\n%1"),
           tr("Setting successfully transmitted to ECU!"));
}

void EcuSynchronisation::report(const QStringList& failures, const QString& failure,
                                const QString& success) const
{
    if (failures.isEmpty())
        mWindow->statusBar()->showMessage(success, kSuccessMessageMs);
    else
        showCommunicationError(mWindow, failure.arg(failures.join(QLatin1Char('\n'))));
}
