#include "views/thresholds/ThresholdTransfer.h"

#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/constants.h"

#include <algorithm>

ThresholdTransfer::ThresholdTransfer(OrvgThreshItemModel* model, QObject* parent)
    : QObject(parent), mModel(model)
{}

bool ThresholdTransfer::read(orv::OrvCtrlClient& client, std::uint8_t sensorId)
{
    orv::SensorThreshold record;
    if (!client.readThresholds(sensorId, record))
        return false;
    if (mModel->applyRead(record))
        emit recordRead(record);
    return true;
}

QStringList ThresholdTransfer::readAll(orv::OrvCtrlClient& client)
{
    QStringList errors;
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
        if (!read(client, sensor))
            errors << tr("Sensor %1: %2")
                          .arg(QString::number(sensor + 1).rightJustified(2),
                               QString::fromStdString(client.lastError()));
    }
    return errors;
}

bool ThresholdTransfer::writeAll(orv::OrvCtrlClient& client,
                                 const OrvgThreshItemModel::Records& records)
{
    return std::ranges::all_of(records, [&client](const orv::SensorThreshold& record) {
        return client.writeThresholds(record, true);
    });
}
