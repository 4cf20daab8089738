#include "views/freespace/OrvgFreespaceGraphicsView.h"

#include "views/freespace/AnimatedZoom.h"
#include "views/freespace/FreespaceScene.h"
#include "views/freespace/MarkerEditor.h"
#include "views/freespace/MiddleButtonPan.h"
#include "views/freespace/OrvgSensorItem.h"
#include "views/freespace/zoom_steps.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>
#include <qdrawutil.h>

namespace {

constexpr double kInitialScale = 0.05;
constexpr int kZoomButtonSteps = 3;
constexpr double kMarginMm = 500;

} // namespace

OrvgFreespaceGraphicsView::OrvgFreespaceGraphicsView(QWidget* parent)
    : QGraphicsView(parent)
    , mScene(new FreespaceScene(this))
    , mEditor(new MarkerEditor(mScene))
    , mZoom(new AnimatedZoom(this))
{
    announcePictures();
    setScene(mScene);
    setTransformationAnchor(NoAnchor);
    setResizeAnchor(NoAnchor);
    setRenderHint(QPainter::Antialiasing);
    setViewportUpdateMode(BoundingRectViewportUpdate);
    scale(kInitialScale, kInitialScale);
    new MiddleButtonPan(this);
    connectSignals();
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

void OrvgFreespaceGraphicsView::showVehicle()
{
    mZoom->stop();
    const QRectF markers = mScene->markersRect();
    if (markers.isNull()) {
        mFraming = Framing::Origin;
        setTransform(QTransform::fromScale(kInitialScale, kInitialScale));
        centerOn(0, 0);
        return;
    }
    mFraming = Framing::Vehicle;
    fitInView(markers + QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm), Qt::KeepAspectRatio);
}

void OrvgFreespaceGraphicsView::scalingTime()
{
    mZoom->scaleOnce();
}

void OrvgFreespaceGraphicsView::animationFinished()
{
    mZoom->endAnimation();
}

void OrvgFreespaceGraphicsView::onNewFreespacePackage(const orv::OrvFreespacePackage& fspPackage)
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
    mEditor->announceSelection();
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
    // Hidden or behind a modal dialog the mouse leaves no item any more.
    if (event->type() == QEvent::Hide || event->type() == QEvent::WindowBlocked)
        forgetMouse();
    const bool isTaken = QGraphicsView::event(event);
    if (event->type() == QEvent::Paint)
        paintFocus();
    return isTaken;
}

// In the frame around the picture, which scrolls without it.
void OrvgFreespaceGraphicsView::paintFocus()
{
    if (!hasFocus())
        return;
    QPainter painter(this);
    qDrawPlainRect(&painter, rect(), palette().color(QPalette::Highlight), frameWidth());
}

void OrvgFreespaceGraphicsView::keyPressEvent(QKeyEvent* event)
{
    constexpr auto kForOthers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (event->modifiers() & kForOthers || !takeKey(*event))
        QGraphicsView::keyPressEvent(event);
}

void OrvgFreespaceGraphicsView::mouseMoveEvent(QMouseEvent* event)
{
    if (!event->buttons().testFlag(Qt::LeftButton))
        mEditor->endDrag(); // the release went elsewhere
    // Announced before the base class moves the item: the panel is one event behind the pointer.
    mEditor->announceDrag();
    QGraphicsView::mouseMoveEvent(event);
}

void OrvgFreespaceGraphicsView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && itemAt(event->pos()))
        mEditor->startDrag();
    QGraphicsView::mousePressEvent(event);
}

void OrvgFreespaceGraphicsView::mouseReleaseEvent(QMouseEvent* event)
{
    QGraphicsView::mouseReleaseEvent(event);
    // Also beside an item: a marker at the edge does not follow the pointer.
    if (event->button() == Qt::LeftButton)
        mEditor->endDrag();
}

void OrvgFreespaceGraphicsView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (mFraming == Framing::Origin)
        centerOn(0, 0);
    else if (mFraming == Framing::Vehicle)
        showVehicle();
}

bool OrvgFreespaceGraphicsView::viewportEvent(QEvent* event)
{
    const bool isTaken = QGraphicsView::viewportEvent(event);
    // The base class knows the markers' tool tips alone.
    if (event->type() == QEvent::ToolTip && !event->isAccepted())
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), toolTip(), viewport());
    return isTaken;
}

void OrvgFreespaceGraphicsView::wheelEvent(QWheelEvent* event)
{
    const int delta = event->angleDelta().y();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        mZoom->setAnchor(event->position().toPoint());
        zoom(freespace::zoomSteps(delta));
    } else if (!mEditor->turn(delta)) {
        QGraphicsView::wheelEvent(event);
        return;
    }
    event->accept();
}

void OrvgFreespaceGraphicsView::connectSignals()
{
    connect(mScene, &QGraphicsScene::selectionChanged, this,
            &OrvgFreespaceGraphicsView::onSelectionChanged);
    connect(mEditor, &MarkerEditor::edited, this, &OrvgFreespaceGraphicsView::fspSelected);
    // Whatever the user scrolls with, the bars act; what the view does itself sets their values.
    const auto frameByUser = [this] { mFraming = Framing::PlaceOfUser; };
    for (const QScrollBar* bar : {horizontalScrollBar(), verticalScrollBar()})
        connect(bar, &QScrollBar::actionTriggered, this, frameByUser);
}

bool OrvgFreespaceGraphicsView::takeKey(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Home:
        showVehicle();
        return true;
    case Qt::Key_Plus:
        onZoomIn();
        return true;
    case Qt::Key_Minus:
        onZoomOut();
        return true;
    default:
        return mEditMode && editByKey(event);
    }
}

bool OrvgFreespaceGraphicsView::editByKey(const QKeyEvent& event)
{
    if (!mEditor->takeKey(event))
        return false;
    if (const OrvgSensorItem* sensor = mScene->selectedSensor())
        bringIntoSight(sensor->mapRectToScene(sensor->childrenBoundingRect()));
    return true;
}

void OrvgFreespaceGraphicsView::bringIntoSight(const QRectF& place)
{
    if (viewport()->rect().contains(mapFromScene(place).boundingRect()))
        return;
    mFraming = Framing::PlaceOfUser;
    ensureVisible(place);
}

void OrvgFreespaceGraphicsView::zoom(int steps)
{
    if (mZoom->start(steps))
        mFraming = Framing::PlaceOfUser;
}

void OrvgFreespaceGraphicsView::forgetMouse()
{
    mEditor->endDrag();
    mScene->forgetMouse();
}
