#include "app/FixedSubWindow.h"

#include <QCloseEvent>

namespace {

constexpr Qt::WindowFlags kFlags =
    Qt::CustomizeWindowHint | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint;

} // namespace

FixedSubWindow::FixedSubWindow(QWidget* view)
{
    setWidget(view);
}

void FixedSubWindow::showFixed()
{
    showMaximized();
    setWindowFlags(kFlags);
}

void FixedSubWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
}
