#include "views/freespace/FreespaceScene.h"

#include "views/freespace/FreespaceItem.h"
#include "views/freespace/OrvgSensorItem.h"
#include "views/freespace/freespace_shape.h"
#include "views/freespace/freespace_style.h"

#include <QPen>
#include <QSignalBlocker>

#include <utility>

namespace {

const QColor kBackground(240, 240, 250);
// Wide enough that the picture can be scrolled, and so held at the zoom anchor, at any usual scale.
constexpr double kExtentMm = 150000;
constexpr qreal kSensorZ = 2;
constexpr qreal kLatestFreespaceZ = 1;
constexpr qreal kFreespaceZ = 0;

} // namespace

FreespaceScene::FreespaceScene(QObject* parent) : QGraphicsScene(parent)
{
    setItemIndexMethod(NoIndex); // few items, and nearly all of them move
    setSceneRect(-kExtentMm, -kExtentMm, 2 * kExtentMm, 2 * kExtentMm);
    setBackgroundBrush(kBackground);
    drawVehicleOrigin();
}

void FreespaceScene::draw(const orv::OrvFreespacePackage& package)
{
    if (package.entries.empty())
        return;
    removeOutdated(package);
    for (const orv::OrvFreespaceEntry& entry : package.entries) {
        if (entry.sensorId >= orv::kSensorCount)
            continue;
        setPosition(entry.sensorId, entry.position);
        placeFreespace(entry);
    }
}

void FreespaceScene::removeFreespaces()
{
    for (std::size_t id = 0; id < mFreespaceItems.size(); ++id)
        removeFreespace(id);
}

void FreespaceScene::setPositions(const orv::SensorMountPositions& positions)
{
    for (std::uint8_t id = 0; id < orv::kSensorCount; ++id)
        setPosition(id, orv::planarPosition(positions[id]));
}

void FreespaceScene::setPosition(std::uint8_t id, const orv::OrvSensorPosition& position)
{
    OrvgSensorItem*& sensor = mSensorItems[id];
    if (sensor) {
        sensor->setPosition(position);
        return;
    }
    sensor = new OrvgSensorItem(id, position, freespace::sensorColour(id));
    sensor->setZValue(kSensorZ);
    addItem(sensor);
}

QRectF FreespaceScene::markersRect() const
{
    QRectF covered;
    for (const OrvgSensorItem* sensor : mSensorItems) {
        if (sensor)
            covered |= sensor->mapRectToScene(sensor->childrenBoundingRect());
    }
    return covered;
}

QVector<OrvgSensorItem*> FreespaceScene::selectedSensors() const
{
    QVector<OrvgSensorItem*> selected;
    for (OrvgSensorItem* sensor : mSensorItems) {
        if (sensor && sensor->isSelected())
            selected << sensor;
    }
    return selected;
}

void FreespaceScene::selectNeighbour(int step)
{
    OrvgSensorItem* sensor = neighbour(step);
    if (!sensor)
        return;
    {
        const QSignalBlocker blocker(this); // "none selected" would be announced in between
        clearSelection();
    }
    sensor->setSelected(true);
}

void FreespaceScene::forgetMouse()
{
    if (QGraphicsItem* grabber = mouseGrabberItem())
        grabber->ungrabMouse();
    for (OrvgSensorItem* sensor : mSensorItems) {
        if (sensor)
            sensor->restoreCursor();
    }
}

void FreespaceScene::drawVehicleOrigin()
{
    const QPen axisPen(Qt::gray, 10);
    addLine(0, 0, 500, 0, axisPen);
    addLine(500, 0, 450, 30, axisPen);
    addLine(500, 0, 450, -30, axisPen);
    addLine(0, 0, 0, -500, axisPen);
    addLine(0, -500, 30, -450, axisPen);
    addLine(0, -500, -30, -450, axisPen);
    addEllipse(-50, -50, 100, 100, QPen(Qt::red, 5));
    addEllipse(-15, -15, 30, 30, QPen(Qt::black, 1), Qt::gray);
}

void FreespaceScene::removeOutdated(const orv::OrvFreespacePackage& package)
{
    SensorSet reporting;
    for (const orv::OrvFreespaceEntry& entry : package.entries) {
        if (entry.sensorId < orv::kSensorCount)
            reporting.set(entry.sensorId);
    }
    SensorSet withMarker;
    for (std::size_t id = 0; id < mSensorItems.size(); ++id)
        withMarker[id] = mSensorItems[id] != nullptr;
    const SensorSet outdated = mAges.advance(withMarker, reporting);
    for (std::size_t id = 0; id < mFreespaceItems.size(); ++id) {
        if (outdated[id])
            removeFreespace(id);
    }
}

void FreespaceScene::placeFreespace(const orv::OrvFreespaceEntry& entry)
{
    FreespaceItem*& item = mFreespaceItems[entry.sensorId];
    const bool isNew = !item;
    if (isNew) {
        item = new FreespaceItem(freespace::sensorColour(entry.sensorId));
        addItem(item);
    }
    item->setShape(freespace::shapeOf(entry));
    if (!isNew)
        raise(entry.sensorId);
}

void FreespaceScene::raise(std::uint8_t id)
{
    for (FreespaceItem* item : mFreespaceItems) {
        if (item)
            item->setZValue(item == mFreespaceItems[id] ? kLatestFreespaceZ : kFreespaceZ);
    }
}

void FreespaceScene::removeFreespace(std::size_t id)
{
    delete std::exchange(mFreespaceItems[id], nullptr);
}

OrvgSensorItem* FreespaceScene::neighbour(int step) const
{
    constexpr int kCount = orv::kSensorCount;
    const OrvgSensorItem* selected = selectedSensor();
    int id = step > 0 ? -1 : kCount;
    if (selected)
        id = selected->id();
    for (int tries = 0; tries < kCount; ++tries) {
        id = (id + step + kCount) % kCount;
        if (OrvgSensorItem* sensor = mSensorItems[static_cast<std::size_t>(id)])
            return sensor;
    }
    return nullptr;
}
