#pragma once

#include "orv_decoder/metatypes.h"
#include "views/freespace/FreespaceItem.h"
#include "views/freespace/OrvgFreespaceGraphicsView.h"
#include "views/freespace/OrvgSensorItem.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QtTest>

#include <vector>

/// What a test sees of the picture and does to it with the mouse.
namespace picture {

/// The marker of a sensor, null when there is none.
inline OrvgSensorItem* sensor(const QGraphicsView& view, std::uint8_t id)
{
    for (QGraphicsItem* item : view.items()) {
        auto* sensor = dynamic_cast<OrvgSensorItem*>(item);
        if (sensor && sensor->id() == id)
            return sensor;
    }
    return nullptr;
}

template<typename Item>
QVector<Item*> itemsOf(const QGraphicsView& view)
{
    QVector<Item*> found;
    for (QGraphicsItem* item : view.scene()->items()) {
        if (auto* candidate = dynamic_cast<Item*>(item))
            found << candidate;
    }
    return found;
}

inline QVector<FreespaceItem*> freespaces(const QGraphicsView& view)
{
    return itemsOf<FreespaceItem>(view);
}

template<typename Item>
Item* child(const QGraphicsItem& item, int index)
{
    return dynamic_cast<Item*>(item.childItems().value(index));
}

inline QPoint pixelOf(const QGraphicsView& view, double sceneX, double sceneY)
{
    return view.mapFromScene(sceneX, sceneY);
}

inline void moveMouse(const QGraphicsView& view, QPoint pixel, Qt::MouseButtons held = {})
{
    QWidget* viewport = view.viewport();
    QMouseEvent event(QEvent::MouseMove, pixel, viewport->mapToGlobal(pixel), Qt::NoButton, held,
                      Qt::NoModifier);
    QApplication::sendEvent(viewport, &event);
}

inline void press(const QGraphicsView& view, QPoint pixel)
{
    QTest::mousePress(view.viewport(), Qt::LeftButton, Qt::NoModifier, pixel);
}

inline void release(const QGraphicsView& view, QPoint pixel)
{
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, Qt::NoModifier, pixel);
}

/// True when the view consumed the event.
inline bool wheel(const QGraphicsView& view, QPoint pixel, int delta,
                  Qt::KeyboardModifiers modifiers = {})
{
    QWidget* viewport = view.viewport();
    QWheelEvent event(pixel, viewport->mapToGlobal(pixel), {}, {0, delta}, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(viewport, &event);
    return event.isAccepted();
}

/// What a view announced, in order.
class Announcements : public QObject
{
public:
    struct Announcement
    {
        int id;
        orv::OrvSensorPosition position;

        bool operator==(const Announcement&) const = default;
    };

    explicit Announcements(const OrvgFreespaceGraphicsView& view)
    {
        connect(&view, &OrvgFreespaceGraphicsView::fspSelected, this,
                [this](std::uint8_t id, const orv::OrvSensorPosition& position) {
                    mAll.push_back({id, position});
                });
    }

    std::vector<Announcement> take() { return std::exchange(mAll, {}); }

private:
    std::vector<Announcement> mAll;
};

using Announced = std::vector<Announcements::Announcement>;

} // namespace picture
