#pragma once

#include "orv_decoder/metatypes.h"

#include <QObject>
#include <QPointF>
#include <QVector>

#include <cstdint>

class FreespaceScene;
class OrvgSensorItem;
class QKeyEvent;

/// What the user does to the markers of a scene: selects, drags, nudges and turns them. Says so
/// after each change.
class MarkerEditor : public QObject
{
    Q_OBJECT

public:
    /// The scene is borrowed and becomes the parent.
    explicit MarkerEditor(FreespaceScene* scene);

    /// Announces the selected sensor, or that there is none.
    void announceSelection();

    /// Page Down and Page Up select, Escape selects none, arrow keys move by 10 mm, with Shift by
    /// 100 mm. False when the key does nothing here.
    bool takeKey(const QKeyEvent& event);

    /// Turns the selected sensor; false when there is none.
    bool turn(int wheelDelta);

    /// The scene itself moves the dragged markers; these frame each of its moves.
    void startDrag() { mDragging = true; }
    void announceDrag();
    void endDrag();

signals:
    /// Id 255 when no sensor is selected any more. During a drag the position is the one before the
    /// latest move; its end makes up for it.
    void edited(std::uint8_t id, const orv::OrvSensorPosition& position);

private:
    void announce(const OrvgSensorItem& sensor);
    void announce(const QVector<OrvgSensorItem*>& sensors);
    bool clearSelection();
    bool nudge(QPointF way);

    FreespaceScene* mScene;
    orv::OrvSensorPosition mAnnouncedPosition;
    bool mDragging = false;
};
