#pragma once

#include "orv_decoder/OrvSensorPosition.h"
#include "views/freespace/HoverCursor.h"

#include <QCoreApplication>
#include <QGraphicsItemGroup>

#include <cstdint>

/// The marker of one sensor: a pie that opens along the sensor's beam, with the sensor's number.
/// Its tool tip tells the position. It can be selected and dragged; a dragged item knows its new
/// position at once.
class OrvgSensorItem : public QGraphicsItemGroup
{
    Q_DECLARE_TR_FUNCTIONS(OrvgSensorItem)

public:
    /// @param id 0..11, shown as 1..12
    OrvgSensorItem(std::uint8_t id, const orv::OrvSensorPosition& position, const QColor& colour,
                   QGraphicsItem* parent = nullptr);

    std::uint8_t id() const { return mId; }
    const orv::OrvSensorPosition& position() const { return mPosition; }
    void setPosition(const orv::OrvSensorPosition& position);

    /// Draws nothing: a group would draw a box round its members when it is selected.
    void paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*) override {}

    /// Gives up the hover cursor: for when the mouse can no longer leave the item.
    void restoreCursor() { mHoverCursor.restore(); }

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;
    bool sceneEvent(QEvent* event) override;

private:
    void place(const orv::OrvSensorPosition& position);
    void createPie(const QColor& colour);
    void createLabel();
    void showDirection();
    void showToolTip();
    void showSelected(bool selected);

    std::uint8_t mId;
    std::uint16_t mBeamAngleDegrees = 60;
    orv::OrvSensorPosition mPosition;
    QGraphicsEllipseItem* mPie = nullptr;
    QGraphicsTextItem* mLabel = nullptr;
    HoverCursor mHoverCursor;
};
