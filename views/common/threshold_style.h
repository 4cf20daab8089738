#pragma once

#include <QColor>

class QString;

/// The curve of a sensor's thresholds in every plot.
inline constexpr QColor kThresholdColor(255, 165, 0);

/// How long a segment of a threshold curve lasts, with its unit.
/// @param timeIndex 0..7
QString segmentDurationText(int timeIndex);
