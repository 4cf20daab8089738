#include "views/freespace/AnimatedZoom.h"

#include "views/freespace/zoom_steps.h"

#include <QGraphicsView>
#include <QTimeLine>

namespace {

constexpr int kDurationMs = 150;
constexpr int kIntervalMs = 10;

} // namespace

AnimatedZoom::AnimatedZoom(QGraphicsView* view) : QObject(view), mView(view) {}

bool AnimatedZoom::start(int steps)
{
    if (!freespace::canZoom(mView->transform().m11(), steps))
        return false;
    mPendingSteps = freespace::pendingStepsAfter(mPendingSteps, steps);
    auto* timeLine = new QTimeLine(kDurationMs, mView);
    timeLine->setUpdateInterval(kIntervalMs);
    connect(timeLine, &QTimeLine::valueChanged, this, &AnimatedZoom::scaleOnce);
    connect(timeLine, &QTimeLine::finished, this, &AnimatedZoom::endAnimation);
    connect(timeLine, &QTimeLine::finished, timeLine, &QObject::deleteLater);
    timeLine->start();
    return true;
}

void AnimatedZoom::stop()
{
    qDeleteAll(mView->findChildren<QTimeLine*>());
    mPendingSteps = 0;
}

void AnimatedZoom::scaleOnce()
{
    const QPoint anchor = mAnchor.value_or(mView->viewport()->rect().center());
    const QPointF anchored = mView->mapToScene(anchor);
    const double factor = freespace::zoomFactor(mPendingSteps, mView->transform().m11());
    mView->scale(factor, factor);
    const QPointF shift = mView->mapToScene(anchor) - anchored;
    mView->translate(shift.x(), shift.y());
}

void AnimatedZoom::endAnimation()
{
    mPendingSteps = freespace::pendingStepsAfterAnimation(mPendingSteps);
}
