#pragma once

#include "orv_decoder/SensorMountPosition.h"

#include <QStandardItemModel>

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

private:
    orv::SensorMountPositions mPositions;
};
