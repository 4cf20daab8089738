#include "app/FixedSubWindow.h"

#include <QCloseEvent>

namespace {

constexpr Qt::WindowFlags kFlags =
    Qt::CustomizeWindowHint | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint;

} // namespace

FixedSubWindow::FixedSubWindow(QWidget* view)
{
    setWidget(view);
    setFocusPolicy(Qt::ClickFocus);
}

void FixedSubWindow::showFixed()
{
    showMaximized();
    setWindowFlags(kFlags);
}

// By itself a sub-window keeps the Tab key to its own parts, and no key would lead to the docks.
bool FixedSubWindow::focusNextPrevChild(bool next)
{
    emit tabbed(next);
    return true;
}

void FixedSubWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
}
