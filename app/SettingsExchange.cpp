#include "app/SettingsExchange.h"

#include "app/OrvgOpenXmlSettingsDialog.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QSaveFile>

namespace {

// A full disk takes the first bytes without an error: only what it did not take tells.
bool writeAll(QIODevice& device, const QByteArray& bytes)
{
    qint64 done = 0;
    while (done < bytes.size()) {
        const qint64 written = device.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

} // namespace

SettingsExchange::SettingsExchange(SettingsFile file, QWidget* dialogParent)
    : mFile(std::move(file)), mDialogParent(dialogParent)
{}

void SettingsExchange::exportSettings() const
{
    const QString fileName = askFileName();
    if (fileName.isEmpty())
        return;
    // The former file stays until the new one is complete. A buffer would hide the errors: what is
    // left in it is written while committing, which does not look at them.
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        QMessageBox::warning(mDialogParent, tr("Can't open file for writing"), file.errorString());
        return;
    }
    if (!writeAll(file, mFile.document()) || !file.commit())
        QMessageBox::warning(mDialogParent, tr("Can't write file"), file.errorString());
}

void SettingsExchange::importSettings() const
{
    OrvgOpenXmlSettingsDialog dialog;
    if (dialog.exec() != QDialog::Accepted)
        return;
    showReport(mFile.read(dialog.fileName(), [&dialog](const QString& element) {
        return dialog.isSelected(element);
    }));
}

// An object of its own instead of the static function: that one asks about an existing file
// before it appends the extension.
QString SettingsExchange::askFileName() const
{
    QFileDialog dialog(mDialogParent, tr("Export settings file"), QString(),
                       tr("Orv settings(*.orv)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("orv"));
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

void SettingsExchange::showReport(const ImportReport& report) const
{
    if (report.isComplete())
        return;
    QMessageBox::warning(mDialogParent, tr("Import error"),
                         tr("Import of some settings failed!\n%1\n\n%2")
                             .arg(report.abortText, report.sectionErrors));
}
