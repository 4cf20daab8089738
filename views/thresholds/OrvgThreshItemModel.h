#pragma once

#include "orv_decoder/SensorThreshold.h"
#include "orv_decoder/constants.h"

#include <QStandardItemModel>

#include <array>
#include <cstdint>

/// The threshold records of the twelve sensors: a row for each sensor, a column for each segment
/// of its curve. A cell's edit value is a QPoint of time index and level index.
class OrvgThreshItemModel : public QStandardItemModel
{
    Q_OBJECT

public:
    /// Scales that the ECU applies in passive mode: index 0..3.
    static constexpr int kScaleCount = 4;

    using Records = std::array<orv::SensorThreshold, orv::kSensorCount>;

    explicit OrvgThreshItemModel(QObject* parent = nullptr);

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// Takes the edit role alone.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    /// By sensor id.
    const Records& records() const { return mRecords; }

    /// The record of a sensor 0..11; a fresh one for any other number.
    orv::SensorThreshold record(int sensorId) const;

    /// Replaces the record of the record's sensor; ignored when there is no such sensor.
    void setRecord(const orv::SensorThreshold& record);

    /// The same for a record that was read from the ECU: false, and nothing changes, unless the
    /// read marked it valid.
    bool applyRead(const orv::SensorThreshold& record);

    /// Ignored for an unknown sensor and for scales of kScaleCount or more.
    void setScale(int sensorId, int scale);

private:
    bool hasEntry(const QModelIndex& index) const;
    std::uint8_t entry(const QModelIndex& index) const;

    Records mRecords;
};
