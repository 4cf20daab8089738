#pragma once

#include "orv_decoder/OrvSensorPosition.h"
#include "orv_decoder/SensorMountPosition.h"

#include <QStandardItemModel>

#include <cstdint>

/// The mount positions of the twelve sensors: a row for each field, a column for each sensor.
/// Lengths are shown and edited in millimetres, angles in degrees.
class OrvgSensorPositionItemModel : public QStandardItemModel
{
    Q_OBJECT

public:
    explicit OrvgSensorPositionItemModel(QObject* parent = nullptr);

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// Takes the edit role; any other one changes nothing and is no failure.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    /// By sensor number.
    const orv::SensorMountPositions& positions() const { return mPositions; }
    void setPositions(const orv::SensorMountPositions& positions);

    /// Changes x, y and yaw of one sensor, 0..11, and announces these three cells. Nothing is
    /// announced when the sensor is there already.
    void moveSensor(std::uint8_t sensorId, const orv::OrvSensorPosition& position);

private:
    orv::SensorMountPositions mPositions;
};
