#include "views/freespace/OrvgFreespaceGraphicsView.h"

#include "orv_decoder/constants.h"
#include "views/freespace/FreespaceScene.h"
#include "views/freespace/OrvgSensorItem.h"
#include "views/freespace/marker_geometry.h"
#include "views/freespace/zoom_steps.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimeLine>
#include <QWheelEvent>

#include <utility>

namespace {

constexpr double kInitialScale = 0.05;
constexpr int kZoomButtonSteps = 3;
constexpr int kZoomDurationMs = 150;
constexpr int kZoomIntervalMs = 10;

} // namespace

OrvgFreespaceGraphicsView::OrvgFreespaceGraphicsView(QWidget* parent)
    : QGraphicsView(parent), mScene(new FreespaceScene(this))
{
    setScene(mScene);
    setTransformationAnchor(NoAnchor);
    setResizeAnchor(NoAnchor);
    setRenderHint(QPainter::Antialiasing);
    scale(kInitialScale, kInitialScale);
    connect(mScene, &QGraphicsScene::selectionChanged, this,
            &OrvgFreespaceGraphicsView::onSelectionChanged);
}

OrvgFreespaceGraphicsView::~OrvgFreespaceGraphicsView()
{
    // The scene deselects its items when it is destroyed, which is after this object's own part.
    mScene->disconnect(this);
}

void OrvgFreespaceGraphicsView::setPositions(const orv::SensorMountPositions& positions)
{
    mScene->setPositions(positions);
}

void OrvgFreespaceGraphicsView::setPosition(std::uint8_t sensorId,
                                            const orv::OrvSensorPosition& position)
{
    mScene->setPosition(sensorId, position);
}

void OrvgFreespaceGraphicsView::setSelectedPosition(const orv::OrvSensorPosition& position)
{
    if (OrvgSensorItem* sensor = mScene->selectedSensor())
        sensor->setPosition(position);
}

void OrvgFreespaceGraphicsView::scalingTime()
{
    const QPointF anchored = mapToScene(mZoomAnchor);
    const double factor = freespace::zoomFactor(mPendingZoomSteps, transform().m11());
    scale(factor, factor);
    const QPointF shift = mapToScene(mZoomAnchor) - anchored;
    translate(shift.x(), shift.y());
}

void OrvgFreespaceGraphicsView::animationFinished()
{
    mPendingZoomSteps = freespace::pendingStepsAfterAnimation(mPendingZoomSteps);
}

void OrvgFreespaceGraphicsView::onNewFreespacePackage(orv::OrvFreespacePackage fspPackage)
{
    if (!mEditMode)
        mScene->draw(fspPackage);
}

void OrvgFreespaceGraphicsView::onSetEditMode(bool state)
{
    mEditMode = state;
    setInteractive(state);
    if (state)
        mScene->removeFreespaces();
    else
        forgetMouse();
}

void OrvgFreespaceGraphicsView::onSelectionChanged()
{
    if (const OrvgSensorItem* sensor = mScene->selectedSensor())
        announce(*sensor);
    else
        emit fspSelected(orv::kNoSensor, {});
}

void OrvgFreespaceGraphicsView::onZoomIn()
{
    zoom(kZoomButtonSteps);
}

void OrvgFreespaceGraphicsView::onZoomOut()
{
    zoom(-kZoomButtonSteps);
}

bool OrvgFreespaceGraphicsView::event(QEvent* event)
{
    // Behind a modal dialog the mouse leaves no item any more.
    if (event->type() == QEvent::WindowBlocked)
        forgetMouse();
    return QGraphicsView::event(event);
}

void OrvgFreespaceGraphicsView::hideEvent(QHideEvent* event)
{
    forgetMouse();
    QGraphicsView::hideEvent(event);
}

void OrvgFreespaceGraphicsView::keyPressEvent(QKeyEvent* event)
{
    const bool isNext = event->key() == Qt::Key_PageDown;
    if (!mEditMode || (!isNext && event->key() != Qt::Key_PageUp)) {
        QGraphicsView::keyPressEvent(event);
        return;
    }
    if (const OrvgSensorItem* sensor = mScene->selectNeighbour(isNext ? 1 : -1))
        ensureVisible(sensor);
}

void OrvgFreespaceGraphicsView::mouseMoveEvent(QMouseEvent* event)
{
    // Announced before the base class moves the item: the panel is one event behind the pointer.
    const OrvgSensorItem* sensor = mScene->selectedSensor();
    if (mDragging && event->buttons().testFlag(Qt::LeftButton) && sensor)
        announce(*sensor);
    QGraphicsView::mouseMoveEvent(event);
}

void OrvgFreespaceGraphicsView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && itemAt(event->pos()))
        mDragging = true;
    QGraphicsView::mousePressEvent(event);
}

void OrvgFreespaceGraphicsView::mouseReleaseEvent(QMouseEvent* event)
{
    QGraphicsView::mouseReleaseEvent(event);
    // Also beside an item: a marker at the edge does not follow the pointer.
    if (event->button() == Qt::LeftButton)
        endDrag();
}

void OrvgFreespaceGraphicsView::resizeEvent(QResizeEvent* event)
{
    const bool keepOriginInMiddle = showsOriginInMiddle(event->oldSize());
    QGraphicsView::resizeEvent(event);
    if (keepOriginInMiddle)
        centerOn(0, 0);
}

void OrvgFreespaceGraphicsView::wheelEvent(QWheelEvent* event)
{
    const int delta = event->angleDelta().y();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        mZoomAnchor = event->position().toPoint();
        zoom(freespace::zoomSteps(delta));
        event->accept();
    } else if (OrvgSensorItem* sensor = mScene->selectedSensor()) {
        turn(*sensor, delta);
        event->accept();
    } else {
        QGraphicsView::wheelEvent(event);
    }
}

void OrvgFreespaceGraphicsView::announce(const OrvgSensorItem& sensor)
{
    mAnnouncedPosition = sensor.position();
    emit fspSelected(sensor.id(), sensor.position());
}

// What the last mouse move did would be missing in the panel otherwise, and so would be what it did
// to further selected sensors. The first one comes last: it stays the one that is shown.
void OrvgFreespaceGraphicsView::endDrag()
{
    if (!std::exchange(mDragging, false))
        return;
    const QVector<OrvgSensorItem*> sensors = mScene->selectedSensors();
    if (sensors.size() == 1 && sensors[0]->position() == mAnnouncedPosition)
        return;
    for (auto sensor = sensors.rbegin(); sensor != sensors.rend(); ++sensor)
        announce(**sensor);
}

void OrvgFreespaceGraphicsView::turn(OrvgSensorItem& sensor, int wheelDelta)
{
    orv::OrvSensorPosition position = sensor.position();
    position.direction = freespace::turnedDirection(position.direction, wheelDelta);
    sensor.setPosition(position);
    announce(sensor);
}

void OrvgFreespaceGraphicsView::zoom(int steps)
{
    if (!freespace::canZoom(transform().m11(), steps))
        return;
    mPendingZoomSteps = freespace::pendingStepsAfter(mPendingZoomSteps, steps);
    auto* timeLine = new QTimeLine(kZoomDurationMs, this);
    timeLine->setUpdateInterval(kZoomIntervalMs);
    connect(timeLine, &QTimeLine::valueChanged, this, &OrvgFreespaceGraphicsView::scalingTime);
    connect(timeLine, &QTimeLine::finished, this, &OrvgFreespaceGraphicsView::animationFinished);
    connect(timeLine, &QTimeLine::finished, timeLine, &QObject::deleteLater);
    timeLine->start();
}

void OrvgFreespaceGraphicsView::forgetMouse()
{
    endDrag();
    mScene->forgetMouse();
}

bool OrvgFreespaceGraphicsView::showsOriginInMiddle(QSize viewportSize) const
{
    if (!viewportSize.isValid())
        return true;
    const QPoint middle(viewportSize.width() / 2, viewportSize.height() / 2);
    return (mapFromScene(0, 0) - middle).manhattanLength() <= 4;
}
