#pragma once

#include <QLinearGradient>
#include <QPen>

#include <cstdint>

/// Colours and pens of the freespace picture.
namespace freespace {

/// Translucent; sensors whose numbers are six apart share a colour.
QColor sensorColour(std::uint8_t sensorId);

QPen outlinePen(const QColor& colour);

/// Nearly invisible, the same for all sensors.
QPen wedgePen();

QLinearGradient distanceGradient(const QLineF& fromTo);
QLinearGradient areaGradient(const QLineF& fromTo);

} // namespace freespace
