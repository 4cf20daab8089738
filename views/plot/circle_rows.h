#pragma once

#include <QRect>

#include <vector>

/// The rows of a filled circle around the origin, in device pixels: the pixels that a painter
/// without antialiasing gives a circle of this radius and an outline of one, both in pixels of the
/// widget. A thousand rows are painted in less time than a hundred circles.
std::vector<QRect> circleRows(int radius, qreal devicePixelRatio);
