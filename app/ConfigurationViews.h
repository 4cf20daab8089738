#pragma once

#include "app/EcuSynchronisation.h"
#include "ecu/configuration/SettingsFile.h"

class OrvgMseqView;
class OrvgSensorPositionView;
class OrvgThresholdView;

/// The three views that hold the ECU's configuration, borrowed.
struct ConfigurationViews
{
    OrvgThresholdView* thresholds;
    OrvgMseqView* sequence;
    OrvgSensorPositionView* positions;
};

/// The views' part in reading and transmitting everything, in the order of the exchange.
QVector<EcuItem> ecuItems(const ConfigurationViews& views);

/// The views' sections of a settings file, in the order of the file.
QVector<SettingsSection> settingsSections(const ConfigurationViews& views);
