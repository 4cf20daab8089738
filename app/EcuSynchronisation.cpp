#include "app/EcuSynchronisation.h"

#include "views/common/WaitCursor.h"
#include "views/common/messages.h"

#include <QMainWindow>
#include <QStatusBar>

namespace {

constexpr int kSuccessMessageMs = 10000;

} // namespace

EcuSynchronisation::EcuSynchronisation(QVector<EcuItem> items, QMainWindow* window)
    : mItems(std::move(items)), mWindow(window)
{}

void EcuSynchronisation::readInteractively() const
{
    if (!confirmOverwrite(mWindow, tr("Sync from ECU")))
        return;
    report(failuresOf(&EcuItem::read),
           tr("Some communication errors are detected during reading \n\n%1"),
           tr("ECU data sync: SUCCESS!"));
}

void EcuSynchronisation::readSilently() const
{
    failuresOf(&EcuItem::read);
}

void EcuSynchronisation::transmit() const
{
    report(failuresOf(&EcuItem::write),
           tr("Some communication errors are detected during transmitting. \n\n%1"),
           tr("Setting successfully transmitted to ECU!"));
}

QStringList EcuSynchronisation::failuresOf(Operation operation) const
{
    const WaitCursor waitCursor;
    QStringList failures;
    for (const EcuItem& item : mItems) {
        if (!(item.*operation)())
            failures.append(item.name);
    }
    return failures;
}

void EcuSynchronisation::report(const QStringList& failures, const QString& failure,
                                const QString& success) const
{
    if (failures.isEmpty())
        mWindow->statusBar()->showMessage(success, kSuccessMessageMs);
    else
        showCommunicationError(mWindow, failure.arg(failures.join(QLatin1Char('\n'))));
}
