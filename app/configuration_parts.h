#pragma once

#include "ecu/configuration/ConfigurationPart.h"

class OrvgMseqView;
class OrvgSensorPositionView;
class OrvgThresholdView;
class QSettings;

/// The three views that hold the ECU's configuration, borrowed.
struct ConfigurationViews
{
    OrvgThresholdView* thresholds;
    OrvgMseqView* sequence;
    OrvgSensorPositionView* positions;
};

/// All parts of the configuration, in the order of a settings file. Each has a check box in the
/// form of OrvgOpenXmlSettingsDialog.
/// @param store holds the network part, borrowed
QVector<ConfigurationPart> configurationParts(const ConfigurationViews& views, QSettings& store);
