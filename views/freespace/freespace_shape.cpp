#include "views/freespace/freespace_shape.h"

#include "views/freespace/marker_geometry.h"

#include <optional>

namespace freespace {

namespace {

struct PointPair
{
    orv::OrvPoint first;
    orv::OrvPoint second;
};

// Where a wedge without an obstacle of its own ends: on the arc of the field of view.
PointPair arcSection(const orv::OrvFreespaceEntry& entry, std::size_t distanceIndex)
{
    switch (distanceIndex) {
    case 2:
        return {entry.corners[2], entry.arcEnds[1]};
    case 1:
        return {entry.arcEnds[1], entry.arcEnds[0]};
    default:
        return {entry.arcEnds[0], entry.corners[1]};
    }
}

std::optional<PointPair> chainLink(const orv::OrvFreespaceEntry& entry, std::size_t distanceIndex)
{
    const orv::OrvDistanceItem& item = entry.distances[distanceIndex];
    if (!item.isPresent())
        return std::nullopt;
    const PointPair pair = item.firstPoint.x != 0 ? PointPair{item.secondPoint, item.firstPoint}
                                                  : arcSection(entry, distanceIndex);
    if (pair.first == orv::OrvPoint{})
        return std::nullopt;
    return pair;
}

// From right to left, which is the way round that continues the corners.
QPolygonF distanceChain(const orv::OrvFreespaceEntry& entry)
{
    QPolygonF chain;
    for (std::size_t i = entry.distances.size(); i-- > 0;) {
        if (const auto link = chainLink(entry, i))
            chain << toScene(link->first) << toScene(link->second);
    }
    return chain;
}

QPointF middleInScene(orv::OrvPoint a, orv::OrvPoint b)
{
    const int x = (a.x + b.x) / 2;
    const int y = (a.y + b.y) / 2;
    return {static_cast<double>(x), -static_cast<double>(y)};
}

} // namespace

Shape shapeOf(const orv::OrvFreespaceEntry& entry)
{
    const auto& corners = entry.corners;
    const QPolygonF chain = distanceChain(entry);
    Shape shape;
    for (orv::OrvPoint corner : corners)
        shape.outline << toScene(corner);
    shape.outline << chain << toScene(corners[0]);
    shape.wedge << toScene(corners[3]) << chain << toScene(corners[0]) << toScene(corners[3]);
    shape.distanceGradient = {toScene(corners[1]), toScene(corners[2])};
    shape.areaGradient = {middleInScene(corners[0], corners[1]),
                          middleInScene(corners[2], corners[3])};
    return shape;
}

} // namespace freespace
