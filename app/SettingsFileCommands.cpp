#include "app/SettingsFileCommands.h"

#include "app/OrvgOpenXmlSettingsDialog.h"
#include "views/common/save_dialog.h"

#include <QMessageBox>

SettingsFileCommands::SettingsFileCommands(SettingsFile file, QWidget* dialogParent)
    : mFile(std::move(file)), mDialogParent(dialogParent)
{}

void SettingsFileCommands::exportSettings() const
{
    const QString fileName = askSaveFileName(mDialogParent, tr("Export settings file"),
                                             tr("Orv settings(*.orv)"), QStringLiteral(".orv"));
    if (fileName.isEmpty())
        return;
    const FileWriteResult result = writeWholeFile(fileName, mFile.document());
    if (!result.isWritten())
        QMessageBox::warning(mDialogParent, titleOf(result.outcome), result.errorText);
}

void SettingsFileCommands::importSettings() const
{
    OrvgOpenXmlSettingsDialog dialog;
    if (dialog.exec() != QDialog::Accepted)
        return;
    showReport(mFile.read(dialog.fileName(), [&dialog](const QString& element) {
        return dialog.isSelected(element);
    }));
}

QString SettingsFileCommands::titleOf(FileWriteResult::Outcome outcome)
{
    return outcome == FileWriteResult::Outcome::CannotOpen ? tr("Can't open file for writing")
                                                           : tr("Can't write file");
}

void SettingsFileCommands::showReport(const ImportReport& report) const
{
    if (report.isComplete())
        return;
    QMessageBox::warning(mDialogParent, tr("Import error"),
                         tr("Import of some settings failed!\n%1\n\n%2")
                             .arg(report.abortText, report.sectionErrors));
}
