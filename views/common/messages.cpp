#include "views/common/messages.h"

#include "ecu/link/failure_text.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QString>

namespace {

struct Messages
{
    Q_DECLARE_TR_FUNCTIONS(Messages)
};

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
                    Messages::tr("Current changes would be overwritten. Are You sure?"));
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
    QMessageBox::warning(parent, Messages::tr("Communication error"), text, QMessageBox::Ok);
}

void showCommunicationError(QWidget* parent, const std::string& lastError)
{
    showCommunicationError(parent, failureText(lastError));
}
