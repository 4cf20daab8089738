#pragma once

#include <QGraphicsItemGroup>

class QColor;

namespace freespace {
struct Shape;
}

/// The group of the two translucent polygons of one sensor's freespace: the outline, and the wedge
/// above it.
class FreespaceItem : public QGraphicsItemGroup
{
public:
    explicit FreespaceItem(const QColor& colour);

    void setShape(const freespace::Shape& shape);

private:
    QGraphicsPolygonItem* mOutline; // members of the group, which owns them
    QGraphicsPolygonItem* mWedge;
};
