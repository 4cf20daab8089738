#include "app/FixedSubWindow.h"

#include <QCloseEvent>

FixedSubWindow::FixedSubWindow(QWidget* view)
{
    setWidget(view);
    setWindowFlags(Qt::CustomizeWindowHint | Qt::WindowMinimizeButtonHint |
                   Qt::WindowMaximizeButtonHint);
}

void FixedSubWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
}
