#include "views/freespace/FreespaceItem.h"

#include "views/freespace/freespace_shape.h"
#include "views/freespace/freespace_style.h"

#include <QBrush>

FreespaceItem::FreespaceItem(const QColor& colour)
    : mOutline(new QGraphicsPolygonItem), mWedge(new QGraphicsPolygonItem)
{
    setFlag(ItemHasNoContents); // its members are all there is to see
    mOutline->setPen(freespace::outlinePen(colour));
    mWedge->setPen(freespace::wedgePen());
    addToGroup(mOutline);
    addToGroup(mWedge);
}

void FreespaceItem::setShape(const freespace::Shape& shape)
{
    mOutline->setBrush(freespace::distanceGradient(shape.distanceGradient));
    mOutline->setPolygon(shape.outline);
    mWedge->setBrush(freespace::areaGradient(shape.areaGradient));
    mWedge->setPolygon(shape.wedge);
}
