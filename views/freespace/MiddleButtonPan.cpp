#include "views/freespace/MiddleButtonPan.h"

#include <QAbstractScrollArea>
#include <QMouseEvent>
#include <QScrollBar>

#include <utility>

namespace {

// As a pull at the bar itself, which is announced as the user's.
void scrollBy(QScrollBar& bar, int pixels)
{
    bar.setSliderPosition(bar.sliderPosition() + pixels);
}

} // namespace

MiddleButtonPan::MiddleButtonPan(QAbstractScrollArea* area)
    : QObject(area), mArea(area), mViewport(area->viewport())
{
    mViewport->installEventFilter(this);
}

bool MiddleButtonPan::eventFilter(QObject* viewport, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return press(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseMove:
        return move(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseButtonRelease:
        return release(static_cast<QMouseEvent&>(*event));
    case QEvent::Hide:
    case QEvent::WindowBlocked:
        letGo();
        return false;
    default:
        return QObject::eventFilter(viewport, event);
    }
}

bool MiddleButtonPan::press(const QMouseEvent& event)
{
    if (event.button() != Qt::MiddleButton)
        return mIsGripping;
    if (event.buttons() == Qt::MiddleButton) // else the others are at work already
        grip(event.pos());
    return true;
}

bool MiddleButtonPan::move(const QMouseEvent& event)
{
    if (!event.buttons().testFlag(Qt::MiddleButton))
        letGo(); // the release went elsewhere
    if (!mIsGripping)
        return false;
    const QPoint way = event.pos() - mGripped;
    mGripped = event.pos();
    scrollBy(*mArea->horizontalScrollBar(), mArea->isRightToLeft() ? way.x() : -way.x());
    scrollBy(*mArea->verticalScrollBar(), -way.y());
    return true;
}

bool MiddleButtonPan::release(const QMouseEvent& event)
{
    if (event.button() != Qt::MiddleButton)
        return false;
    letGo();
    return true;
}

void MiddleButtonPan::grip(QPoint place)
{
    mGripped = place;
    mIsGripping = true;
    mViewport->setCursor(Qt::ClosedHandCursor);
}

void MiddleButtonPan::letGo()
{
    if (std::exchange(mIsGripping, false))
        mViewport->unsetCursor();
}
