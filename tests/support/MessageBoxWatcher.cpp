#include "tests/support/MessageBoxWatcher.h"

#include <QAbstractButton>
#include <QApplication>

MessageBoxWatcher::MessageBoxWatcher(QMessageBox::StandardButton answer) : mAnswer(answer)
{
    connect(&mTimer, &QTimer::timeout, this, &MessageBoxWatcher::look);
    mTimer.start(1);
}

void MessageBoxWatcher::look()
{
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box)
        return;
    mBoxes.append({box->icon(), box->windowTitle(), box->text(), box->standardButtons()});
    QAbstractButton* button = box->button(mAnswer);
    if (button)
        button->click();
    else
        box->accept();
}
