#include "views/thresholds/OrvgThreshItemModel.h"

#include "orv_decoder/tables.h"

#include <QPoint>

namespace {

constexpr int kColumnCount = static_cast<int>(orv::kThresholdEntryCount);

bool isSensor(int id)
{
    return id >= 0 && id < orv::kSensorCount;
}

QString textOf(std::uint8_t entry)
{
    const double durationMs = orv::kSegmentDurationsUs[orv::timeIndexOf(entry)] / 1000;
    const double level = double{orv::kThresholdLevels[orv::levelIndexOf(entry)]};
    return OrvgThreshItemModel::tr("%1ms\n%2").arg(durationMs, 0, 'f', 2).arg(level, 0, 'f', 4);
}

} // namespace

OrvgThreshItemModel::OrvgThreshItemModel(QObject* parent)
    : QStandardItemModel(orv::kSensorCount, kColumnCount, parent)
{
    for (int row = 0; row < orv::kSensorCount; ++row) {
        mRecords[static_cast<std::size_t>(row)].sensorId = static_cast<std::uint8_t>(row);
        setHeaderData(row, Qt::Vertical, tr("Sensor %1").arg(row + 1));
    }
    // Counted from 0 as in the protocol, unlike the sensors.
    for (int column = 0; column < kColumnCount; ++column)
        setHeaderData(column, Qt::Horizontal, tr("Thr. %1").arg(column));
}

QVariant OrvgThreshItemModel::data(const QModelIndex& index, int role) const
{
    if (!hasEntry(index))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return textOf(entry(index));
    case Qt::EditRole:
        return QPoint(orv::timeIndexOf(entry(index)), orv::levelIndexOf(entry(index)));
    case Qt::TextAlignmentRole:
        return Qt::AlignCenter;
    default:
        return {};
    }
}

bool OrvgThreshItemModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !hasEntry(index))
        return false;
    const QPoint indexes = value.toPoint();
    mRecords[static_cast<std::size_t>(index.row())]
        .entries[static_cast<std::size_t>(index.column())] = orv::packThresholdEntry(
        static_cast<unsigned>(indexes.x()), static_cast<unsigned>(indexes.y()));
    emit dataChanged(index, index, {Qt::EditRole});
    return true;
}

orv::SensorThreshold OrvgThreshItemModel::record(int sensorId) const
{
    if (!isSensor(sensorId))
        return {};
    return mRecords[static_cast<std::size_t>(sensorId)];
}

void OrvgThreshItemModel::setRecord(const orv::SensorThreshold& record)
{
    if (!isSensor(record.sensorId))
        return;
    mRecords[record.sensorId] = record;
    emit dataChanged(index(record.sensorId, 0), index(record.sensorId, kColumnCount - 1));
}

bool OrvgThreshItemModel::applyRead(const orv::SensorThreshold& record)
{
    if (record.valid)
        setRecord(record);
    return record.valid;
}

void OrvgThreshItemModel::setScale(int sensorId, int scale)
{
    if (isSensor(sensorId) && scale >= 0 && scale < kScaleCount)
        mRecords[static_cast<std::size_t>(sensorId)].scale = static_cast<std::uint8_t>(scale);
}

// Rows and columns that a caller inserted behind ours have no entry.
bool OrvgThreshItemModel::hasEntry(const QModelIndex& index) const
{
    return index.isValid() && isSensor(index.row()) && index.column() < kColumnCount;
}

std::uint8_t OrvgThreshItemModel::entry(const QModelIndex& index) const
{
    return mRecords[static_cast<std::size_t>(index.row())]
        .entries[static_cast<std::size_t>(index.column())];
}
