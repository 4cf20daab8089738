#include "views/common/messages.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QString>

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("Messages", text);
}

} // namespace

bool askYesNo(QWidget* parent, const QString& title, const QString& text)
{
    return QMessageBox::information(parent, title, text, QMessageBox::Yes | QMessageBox::No) ==
           QMessageBox::Yes;
}

bool confirmOverwrite(QWidget* parent, const QString& title)
{
    return askYesNo(parent, title,
                    translated("Current changes would be overwritten. Are You sure?"));
}

void showCommunicationError(QWidget* parent, const QString& text)
{
    QMessageBox::warning(parent, translated("Communication error"), text, QMessageBox::Ok);
}

void showCommunicationError(QWidget* parent, const std::string& lastError)
{
    showCommunicationError(parent, QString::fromStdString(lastError));
}
