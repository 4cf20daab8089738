#include "views/freespace/HoverCursor.h"

#include <QApplication>

HoverCursor::~HoverCursor()
{
    restore();
}

void HoverCursor::set()
{
    if (mIsSet)
        return;
    QApplication::setOverrideCursor(Qt::PointingHandCursor);
    mIsSet = true;
}

void HoverCursor::restore()
{
    if (!mIsSet)
        return;
    QApplication::restoreOverrideCursor();
    mIsSet = false;
}
