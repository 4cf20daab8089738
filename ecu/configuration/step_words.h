#pragma once

#include <QStringList>

/// The names of the modes in the order of StepMode.
QStringList modeWords();

/// The names of what a sensor does in the order of SensorState.
QStringList stateWords();
