#pragma once

#include "orv_decoder/OrvSensorPosition.h"
#include "views/freespace/HoverCursor.h"

#include <QGraphicsItemGroup>

#include <cstdint>

/// The marker of one sensor: a pie that opens along the sensor's beam, with the sensor's number.
/// It can be selected and dragged; a dragged item knows its new position at once.
class OrvgSensorItem : public QGraphicsItemGroup
{
public:
    /// @param id 0..11, shown as 1..12
    OrvgSensorItem(std::uint8_t id, const orv::OrvSensorPosition& position, const QColor& colour,
                   QGraphicsItem* parent = nullptr);

    std::uint8_t id() const { return mId; }
    const orv::OrvSensorPosition& position() const { return mPosition; }
    void setPosition(const orv::OrvSensorPosition& position);

    /// Gives up the hover cursor: for when the mouse can no longer leave the item.
    void restoreCursor() { mHoverCursor.restore(); }

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;
    bool sceneEvent(QEvent* event) override;

private:
    void createPie(const QColor& colour);
    void createLabel();
    void showDirection();
    void showSelected(bool selected);

    std::uint8_t mId;
    std::uint16_t mBeamAngleDegrees = 60;
    orv::OrvSensorPosition mPosition;
    QGraphicsEllipseItem* mPie = nullptr;
    QGraphicsTextItem* mLabel = nullptr;
    HoverCursor mHoverCursor;
};
