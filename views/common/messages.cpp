#include "views/common/messages.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QString>

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("Messages", text);
}

QMessageBox* openBox(QMessageBox::Icon icon, QMessageBox::StandardButtons buttons, QWidget* parent,
                     const QString& title, const QString& text)
{
    auto* box = new QMessageBox(icon, title, text, buttons, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
    return box;
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

void openInformation(QWidget* parent, const QString& title, const QString& text)
{
    openBox(QMessageBox::Information, QMessageBox::Ok, parent, title, text);
}

void openWarning(QWidget* parent, const QString& title, const QString& text)
{
    openBox(QMessageBox::Warning, QMessageBox::Ok, parent, title, text);
}

QMessageBox* openQuestion(QWidget* parent, const QString& title, const QString& text)
{
    QMessageBox* box =
        openBox(QMessageBox::Question, QMessageBox::Yes | QMessageBox::No, parent, title, text);
    box->setDefaultButton(QMessageBox::No);
    return box;
}

void showCommunicationError(QWidget* parent, const QString& text)
{
    QMessageBox::warning(parent, translated("Communication error"), text, QMessageBox::Ok);
}

void showCommunicationError(QWidget* parent, const std::string& lastError)
{
    showCommunicationError(parent, QString::fromStdString(lastError));
}
