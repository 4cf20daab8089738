#pragma once

#include "ecu/configuration/configuration_parts.h"

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

/// The views as the holders of all parts, for a settings file and for the ECU. Their exchanges are
/// the silent ones.
ConfigurationHolders holdersOf(const ConfigurationViews& views);
