#include "ecu/configuration/all_thresholds.h"

#include "ecu/link/failure_text.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/constants.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

QString failureOf(int sensor, const std::string& reason)
{
    return QCoreApplication::translate("Threshold", "Sensor %1: %2")
        .arg(QString::number(sensor + 1).rightJustified(2), failureText(reason));
}

} // namespace

ThresholdReading readAllThresholds(orv::OrvCtrlClient& client)
{
    ThresholdReading reading;
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
        orv::SensorThreshold record;
        if (client.readThresholds(sensor, record))
            reading.records.push_back(record);
        else
            reading.failures.append(failureOf(sensor, client.lastError()));
    }
    return reading;
}

bool writeAllThresholds(orv::OrvCtrlClient& client, std::span<const orv::SensorThreshold> records)
{
    return std::ranges::all_of(records, [&client](const orv::SensorThreshold& record) {
        return client.writeThresholds(record, true);
    });
}
