#include "views/freespace/MarkerEditor.h"

#include "orv_decoder/constants.h"
#include "views/freespace/FreespaceScene.h"
#include "views/freespace/OrvgSensorItem.h"
#include "views/freespace/marker_geometry.h"

#include <QKeyEvent>

#include <utility>

namespace {

constexpr double kNudgeMm = 10;
constexpr double kFarNudgeMm = 100;

// Where an arrow key points to in the scene; null for the other keys.
QPointF arrowOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

} // namespace

MarkerEditor::MarkerEditor(FreespaceScene* scene) : QObject(scene), mScene(scene) {}

void MarkerEditor::announceSelection()
{
    if (const OrvgSensorItem* sensor = mScene->selectedSensor())
        announce(*sensor);
    else
        emit edited(orv::kNoSensor, {});
}

bool MarkerEditor::takeKey(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_PageDown:
        mScene->selectNeighbour(1);
        return true;
    case Qt::Key_PageUp:
        mScene->selectNeighbour(-1);
        return true;
    case Qt::Key_Escape:
        return clearSelection();
    default:
        const bool isFar = event.modifiers().testFlag(Qt::ShiftModifier);
        return nudge(arrowOf(event.key()) * (isFar ? kFarNudgeMm : kNudgeMm));
    }
}

bool MarkerEditor::turn(int wheelDelta)
{
    OrvgSensorItem* sensor = mScene->selectedSensor();
    if (!sensor)
        return false;
    orv::OrvSensorPosition position = sensor->position();
    position.direction = freespace::turnedDirection(position.direction, wheelDelta);
    sensor->setPosition(position);
    announce(*sensor);
    return true;
}

void MarkerEditor::announceDrag()
{
    const OrvgSensorItem* sensor = mScene->selectedSensor();
    if (mDragging && sensor)
        announce(*sensor);
}

// What the last move did would be missing in the panel otherwise, and so would be what the drag did
// to further selected sensors.
void MarkerEditor::endDrag()
{
    if (!std::exchange(mDragging, false))
        return;
    const QVector<OrvgSensorItem*> sensors = mScene->selectedSensors();
    if (sensors.size() != 1 || sensors[0]->position() != mAnnouncedPosition)
        announce(sensors);
}

void MarkerEditor::announce(const OrvgSensorItem& sensor)
{
    mAnnouncedPosition = sensor.position();
    emit edited(sensor.id(), sensor.position());
}

// The first one comes last: it stays the one that is shown.
void MarkerEditor::announce(const QVector<OrvgSensorItem*>& sensors)
{
    for (auto sensor = sensors.rbegin(); sensor != sensors.rend(); ++sensor)
        announce(**sensor);
}

bool MarkerEditor::clearSelection()
{
    const bool hadSelection = mScene->selectedSensor();
    mScene->clearSelection();
    return hadSelection;
}

bool MarkerEditor::nudge(QPointF way)
{
    const QVector<OrvgSensorItem*> sensors = mScene->selectedSensors();
    if (way.isNull() || sensors.isEmpty())
        return false;
    for (OrvgSensorItem* sensor : sensors)
        sensor->moveBy(way.x(), way.y());
    announce(sensors);
    return true;
}
