#include "views/positions/OrvgSensorPositionItemModel.h"

#include "ecu/configuration/binary_angle.h"
#include "ecu/configuration/mount_fields.h"

#include <QStringList>

namespace {

QVariant shownValue(const orv::SensorMountPosition& position, int field)
{
    switch (field) {
    case MountX:
        return int{position.x};
    case MountY:
        return int{position.y};
    case MountHeight:
        return uint{position.height};
    case MountYaw:
        return degreesOf(position.yaw);
    case MountPitch:
        return degreesOf(position.pitch);
    case MountRoll:
        return degreesOf(position.roll);
    default:
        return {};
    }
}

bool store(orv::SensorMountPosition& position, int field, const QVariant& value)
{
    switch (field) {
    case MountX:
        position.x = static_cast<std::int16_t>(value.toInt());
        return true;
    case MountY:
        position.y = static_cast<std::int16_t>(value.toInt());
        return true;
    case MountHeight:
        position.height = static_cast<std::uint16_t>(value.toInt());
        return true;
    case MountYaw:
        position.yaw = binaryAngleOf(value.toDouble());
        return true;
    case MountPitch:
        position.pitch = binaryAngleOf(value.toDouble());
        return true;
    case MountRoll:
        position.roll = binaryAngleOf(value.toDouble());
        return true;
    default:
        return false;
    }
}

// Columns that a caller inserted behind ours belong to no sensor.
bool isSensorColumn(const QModelIndex& index)
{
    return index.isValid() && index.column() < orv::kSensorCount;
}

} // namespace

OrvgSensorPositionItemModel::OrvgSensorPositionItemModel(QObject* parent)
    : QStandardItemModel(kMountFieldCount, orv::kSensorCount, parent)
{
    setVerticalHeaderLabels({tr("x[mm]"), tr("y[mm]"), tr("height[mm]"), tr("yaw[deg]"),
                             tr("pitch[deg]"), tr("roll[deg]")});
    for (int column = 0; column < orv::kSensorCount; ++column)
        setHeaderData(column, Qt::Horizontal, tr("Sen%1").arg(column + 1));
}

QVariant OrvgSensorPositionItemModel::data(const QModelIndex& index, int role) const
{
    if (!isSensorColumn(index) || index.row() >= kMountFieldCount)
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return shownValue(mPositions[static_cast<std::size_t>(index.column())], index.row());
    case Qt::TextAlignmentRole:
        return Qt::AlignCenter;
    default:
        return {};
    }
}

bool OrvgSensorPositionItemModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!isSensorColumn(index))
        return false;
    if (role != Qt::EditRole)
        return true;
    if (!store(mPositions[static_cast<std::size_t>(index.column())], index.row(), value))
        return false;
    emit dataChanged(index, index, {Qt::EditRole});
    return true;
}

void OrvgSensorPositionItemModel::setPositions(const orv::SensorMountPositions& positions)
{
    mPositions = positions;
    emit dataChanged(index(0, 0), index(kMountFieldCount - 1, orv::kSensorCount - 1));
}

void OrvgSensorPositionItemModel::moveSensor(std::uint8_t sensorId,
                                             const orv::OrvSensorPosition& position)
{
    orv::SensorMountPosition& mount = mPositions[sensorId];
    const orv::SensorMountPosition moved = orv::movedTo(mount, position);
    if (moved == mount)
        return;
    mount = moved;
    static_assert(MountY == MountX + 1);
    emit dataChanged(index(MountX, sensorId), index(MountY, sensorId));
    emit dataChanged(index(MountYaw, sensorId), index(MountYaw, sensorId));
}
