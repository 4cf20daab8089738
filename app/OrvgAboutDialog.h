#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class OrvgAboutDialog;
}

/// Says which link library is running and who made the tool.
class OrvgAboutDialog : public QDialog
{
    Q_OBJECT

public:
    explicit OrvgAboutDialog(QWidget* parent = nullptr);
    ~OrvgAboutDialog() override;

private:
    std::unique_ptr<Ui::OrvgAboutDialog> mUi;
};

/// The version in a build record, its second field between "-"; empty when there is none.
QString versionOfBuildRecord(const QString& buildRecord);
