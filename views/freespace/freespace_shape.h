#pragma once

#include "orv_decoder/OrvFreespacePackage.h"

#include <QLineF>
#include <QPolygonF>

namespace freespace {

/// What one entry of a package looks like, in scene coordinates.
struct Shape
{
    QPolygonF outline; ///< the field of view, closed along the distances
    QPolygonF wedge;   ///< the near side, from the last corner along the distances to the first
    QLineF distanceGradient;
    QLineF areaGradient;
};

Shape shapeOf(const orv::OrvFreespaceEntry& entry);

} // namespace freespace
