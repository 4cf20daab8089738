#pragma once

#include <QDialog>
#include <QMap>

#include <memory>

class QCheckBox;

namespace Ui {
class OrvgOpenXmlSettingsDialog;
}

/// Asks for a settings file and which of its sections are to be imported. Only what the file
/// holds can be chosen.
class OrvgOpenXmlSettingsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit OrvgOpenXmlSettingsDialog(QWidget* parent = nullptr);
    ~OrvgOpenXmlSettingsDialog() override;

    QString fileName() const;

    /// True for a section of this name that is ticked.
    bool isSelected(const QString& section) const;

private:
    void onBrowse();
    void onFileNameChanged(const QString& fileName);
    void offer(const QStringList& sections);
    void setImportEnabled(bool enabled);

    std::unique_ptr<Ui::OrvgOpenXmlSettingsDialog> mUi;
    QMap<QString, QCheckBox*> mCheckBoxes; // of the form, by section
};
