#pragma once

#include "ecu/configuration/SettingsFile.h"
#include "ecu/store/safe_file.h"

#include <QCoreApplication>

class QWidget;

/// The commands that export the settings to a file and import them: the dialogs and messages
/// around a SettingsFile.
class SettingsFileCommands
{
    Q_DECLARE_TR_FUNCTIONS(SettingsFileCommands)

public:
    /// The parent of the dialogs is borrowed.
    SettingsFileCommands(SettingsFile file, QWidget* dialogParent);

    void exportSettings() const;
    void importSettings() const;

private:
    static QString titleOf(FileWriteResult::Outcome outcome);
    void showReport(const ImportReport& report) const;

    SettingsFile mFile;
    QWidget* mDialogParent; // borrowed
};
