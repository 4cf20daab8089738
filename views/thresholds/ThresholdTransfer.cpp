#include "views/thresholds/ThresholdTransfer.h"

#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/constants.h"
#include "views/common/WaitCursor.h"
#include "views/thresholds/OrvgThreshItemModel.h"

ThresholdTransfer::ThresholdTransfer(OrvgThreshItemModel* model, QObject* parent)
    : QObject(parent), mModel(model)
{}

QString ThresholdTransfer::lastError() const
{
    return QString::fromStdString(mClient->lastError());
}

bool ThresholdTransfer::read(std::uint8_t sensorId)
{
    orv::SensorThreshold record;
    if (!mClient->readThresholds(sensorId, record))
        return false;
    if (mModel->applyRead(record))
        emit recordRead(record);
    return true;
}

bool ThresholdTransfer::write(std::uint8_t sensorId)
{
    return mClient->writeThresholds(mModel->record(sensorId), true);
}

QStringList ThresholdTransfer::readAll()
{
    const WaitCursor waitCursor;
    QStringList errors;
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
        if (!read(sensor))
            errors << tr("Sensor %1: %2")
                          .arg(QString::number(sensor + 1).rightJustified(2), lastError());
    }
    return errors;
}

bool ThresholdTransfer::writeAll()
{
    const WaitCursor waitCursor;
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
        if (!write(sensor))
            return false;
    }
    return true;
}
