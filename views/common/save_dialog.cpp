#include "views/common/save_dialog.h"

#include "ecu/store/safe_file.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

namespace {

// In the words of Qt's own dialog, which would ask about the name as it was typed.
bool mayReplace(QWidget* parent, const QString& caption, const QString& fileName)
{
    const QFileInfo file(fileName);
    const QString question = QFileDialog::tr("%1 already exists.\nDo you want to replace it?");
    return !file.exists() || QMessageBox::warning(parent, caption, question.arg(file.fileName()),
                                                  QMessageBox::Yes | QMessageBox::No,
                                                  QMessageBox::No) == QMessageBox::Yes;
}

} // namespace

QString askSaveFileName(QWidget* parent, const QString& caption, const QString& filter,
                        const QString& suffix)
{
    QFileDialog dialog(parent, caption, QString(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    while (dialog.exec() == QDialog::Accepted) {
        QString fileName = withSuffix(dialog.selectedFiles().value(0), suffix);
        if (mayReplace(parent, caption, fileName))
            return fileName;
    }
    return {};
}
