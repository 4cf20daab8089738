#pragma once

#include "ecu/configuration/EcuConfiguration.h"

#include <QStringList>

namespace tarvioctl {

/// What changes from one configuration to the other, a line for each value in the words and units
/// of the window: "sensor 3, threshold 4: 1.23 ms 0.0610 → 1.64 ms 0.0490". Empty exactly when the
/// two are equal. Sensors and steps are counted from 1, thresholds from 0, as in the window.
QStringList thresholdChanges(const EcuConfiguration& from, const EcuConfiguration& to);
QStringList sequenceChanges(const EcuConfiguration& from, const EcuConfiguration& to);
QStringList positionChanges(const EcuConfiguration& from, const EcuConfiguration& to);

/// The changes of the part that has this element in a settings file.
QStringList changesOf(const QString& element, const EcuConfiguration& from,
                      const EcuConfiguration& to);

} // namespace tarvioctl
