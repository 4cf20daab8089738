#include "views/freespace/OrvgSensorItem.h"

#include "views/freespace/marker_geometry.h"

#include <QBrush>
#include <QEvent>
#include <QFont>
#include <QLocale>
#include <QPen>
#include <QVariant>

namespace {

const QRectF kPieRect(-150, -150, 300, 300);
constexpr int kLabelPixelSize = 70;
constexpr int kLabelAlpha = 200;

} // namespace

OrvgSensorItem::OrvgSensorItem(std::uint8_t id, const orv::OrvSensorPosition& position,
                               const QColor& colour, QGraphicsItem* parent)
    : QGraphicsItemGroup(parent), mId(id)
{
    setFlags(ItemIsMovable | ItemIsSelectable | ItemSendsGeometryChanges);
    createPie(colour);
    createLabel();
    place(position);
}

void OrvgSensorItem::setPosition(const orv::OrvSensorPosition& position)
{
    if (position != mPosition) // a live sensor reports the same one with every package
        place(position);
}

QVariant OrvgSensorItem::itemChange(GraphicsItemChange change, const QVariant& value)
{
    if (change == ItemSelectedHasChanged)
        showSelected(value.toBool());
    if (change != ItemPositionChange)
        return QGraphicsItemGroup::itemChange(change, value);

    // A marker dragged beyond what a position can hold stays at the edge.
    const QPointF proposed = freespace::boundedToVehicle(value.toPointF());
    mPosition = freespace::movedToScene(mPosition, proposed);
    showToolTip();
    return QGraphicsItemGroup::itemChange(change, proposed);
}

bool OrvgSensorItem::sceneEvent(QEvent* event)
{
    if (event->type() == QEvent::GraphicsSceneHoverEnter)
        mHoverCursor.set();
    else if (event->type() == QEvent::GraphicsSceneHoverLeave)
        mHoverCursor.restore();
    return QGraphicsItemGroup::sceneEvent(event);
}

void OrvgSensorItem::place(const orv::OrvSensorPosition& position)
{
    mPosition = position;
    setPos(freespace::toScene(position));
    showDirection();
    showToolTip();
}

void OrvgSensorItem::createPie(const QColor& colour)
{
    mPie = new QGraphicsEllipseItem(kPieRect, this);
    mPie->setBrush(colour);
    mPie->setAcceptHoverEvents(true);
    showSelected(false);
    addToGroup(mPie);
}

void OrvgSensorItem::createLabel()
{
    mLabel = new QGraphicsTextItem(QString::number(mId + 1), this);
    QFont font;
    font.setPixelSize(kLabelPixelSize);
    mLabel->setFont(font);
    mLabel->setDefaultTextColor(QColor(0, 0, 0, kLabelAlpha));
    mLabel->setAcceptedMouseButtons(Qt::NoButton);
    mLabel->setAcceptHoverEvents(false);
    addToGroup(mLabel);
}

void OrvgSensorItem::showDirection()
{
    const auto pie = freespace::pieAngles(mPosition.direction, mBeamAngleDegrees);
    mPie->setStartAngle(pie.start);
    mPie->setSpanAngle(pie.span);
    const QSize labelSize = mLabel->boundingRect().toRect().size();
    mLabel->setPos(freespace::labelPosition(mPosition.direction, labelSize));
}

void OrvgSensorItem::showToolTip()
{
    const double degrees = freespace::directionInDegrees(mPosition.direction);
    setToolTip(tr("Sensor %1\nX: %2 mm\nY: %3 mm\nDirection: %4\u00B0")
                   .arg(mId + 1)
                   .arg(mPosition.x)
                   .arg(mPosition.y)
                   .arg(QLocale().toString(degrees, 'f', 2)));
}

void OrvgSensorItem::showSelected(bool selected)
{
    mPie->setPen(selected ? QPen(Qt::red, 20) : QPen(Qt::black, 10));
}
