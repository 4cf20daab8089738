#pragma once

#include "orv_decoder/SensorThreshold.h"

#include <QObject>
#include <QStringList>

#include <cstdint>

class OrvgThreshItemModel;

namespace orv {
class OrvCtrlClient;
}

/// Moves the records of a threshold model to and from the ECU, one blocking exchange a sensor.
/// What is longer than one exchange shows the wait cursor.
class ThresholdTransfer : public QObject
{
    Q_OBJECT

public:
    /// The model is borrowed.
    explicit ThresholdTransfer(OrvgThreshItemModel* model, QObject* parent = nullptr);

    /// The client is borrowed; until there is one, nothing below may be called.
    void setClient(orv::OrvCtrlClient* client) { mClient = client; }
    orv::OrvCtrlClient* client() const { return mClient; }
    QString lastError() const;

    bool read(std::uint8_t sensorId);

    /// Writes permanently.
    bool write(std::uint8_t sensorId);

    /// One line for each sensor that could not be read.
    QStringList readAll();

    /// Stops at the first failure.
    bool writeAll();

signals:
    /// The model has taken this record.
    void recordRead(const orv::SensorThreshold& record);

private:
    OrvgThreshItemModel* mModel;
    orv::OrvCtrlClient* mClient = nullptr;
};
