#pragma once

#include "orv_decoder/SensorThreshold.h"

#include <QStringList>

#include <span>
#include <vector>

namespace orv {
class OrvCtrlClient;
}

/// What came of reading the thresholds of all sensors.
struct ThresholdReading
{
    std::vector<orv::SensorThreshold> records; ///< in the order of the sensors
    QStringList failures;                      ///< a line for each sensor that could not be read
};

/// One blocking exchange a sensor, also after a failure of another one.
ThresholdReading readAllThresholds(orv::OrvCtrlClient& client);

/// Writes permanently, one blocking exchange a record, and stops at the first failure.
bool writeAllThresholds(orv::OrvCtrlClient& client, std::span<const orv::SensorThreshold> records);
