#pragma once

#include "orv_decoder/SensorThreshold.h"
#include "views/thresholds/OrvgThreshItemModel.h"

#include <QObject>
#include <QStringList>

#include <cstdint>

namespace orv {
class OrvCtrlClient;
}

/// Moves the records of a threshold model to and from the ECU, one blocking exchange a sensor.
class ThresholdTransfer : public QObject
{
    Q_OBJECT

public:
    /// The model is borrowed.
    explicit ThresholdTransfer(OrvgThreshItemModel* model, QObject* parent = nullptr);

    bool read(orv::OrvCtrlClient& client, std::uint8_t sensorId);

    /// One line for each sensor that could not be read.
    QStringList readAll(orv::OrvCtrlClient& client);

    /// Writes permanently and stops at the first failure.
    static bool writeAll(orv::OrvCtrlClient& client, const OrvgThreshItemModel::Records& records);

signals:
    /// The model has taken this record.
    void recordRead(const orv::SensorThreshold& record);

private:
    OrvgThreshItemModel* mModel;
};
