#include "views/common/WaitCursor.h"

#include <QApplication>
#include <QCursor>

WaitCursor::WaitCursor()
{
    QApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
}

WaitCursor::~WaitCursor()
{
    QApplication::restoreOverrideCursor();
}
