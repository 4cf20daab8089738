#pragma once

#include "orv_decoder/OrvFreespacePackage.h"
#include "views/freespace/freespace_shape.h"
#include "views/freespace/freespace_style.h"
#include "views/freespace/marker_geometry.h"

#include <QFontMetricsF>
#include <QPainter>

#include <array>

/// The freespace picture painted straight onto a device: what the view has to look like, and the
/// least that it can cost.
namespace hand_painted {

inline void axes(QPainter& painter)
{
    const std::array<QLineF, 6> lines = {{{0, 0, 500, 0},
                                          {500, 0, 450, 30},
                                          {500, 0, 450, -30},
                                          {0, 0, 0, -500},
                                          {0, -500, 30, -450},
                                          {0, -500, -30, -450}}};
    painter.setPen(QPen(Qt::gray, 10));
    painter.drawLines(lines.data(), static_cast<int>(lines.size()));
    painter.setPen(QPen(Qt::red, 5));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QRectF(-50, -50, 100, 100));
    painter.setPen(QPen(Qt::black, 1));
    painter.setBrush(Qt::gray);
    painter.drawEllipse(QRectF(-15, -15, 30, 30));
}

inline void freespace(QPainter& painter, std::uint8_t id, const freespace::Shape& shape)
{
    painter.setPen(freespace::outlinePen(freespace::sensorColour(id)));
    painter.setBrush(freespace::distanceGradient(shape.distanceGradient));
    painter.drawPolygon(shape.outline);
    painter.setPen(freespace::wedgePen());
    painter.setBrush(freespace::areaGradient(shape.areaGradient));
    painter.drawPolygon(shape.wedge);
}

inline void marker(QPainter& painter, const orv::OrvFreespaceEntry& entry)
{
    constexpr double kTextMargin = 4;
    QFont font;
    font.setPixelSize(70);
    const QFontMetricsF metrics(font);
    const QString number = QString::number(entry.sensorId + 1);
    const QSizeF size(metrics.horizontalAdvance(number) + 2 * kTextMargin,
                      metrics.height() + 2 * kTextMargin);
    const QPointF label =
        freespace::labelPosition(entry.position.direction, QRectF({}, size).toRect().size());
    const freespace::PieAngles pie = freespace::pieAngles(entry.position.direction, 60);
    const QPointF place = freespace::toScene(entry.position);
    painter.translate(place);
    painter.setPen(QPen(Qt::black, 10));
    painter.setBrush(freespace::sensorColour(entry.sensorId));
    painter.drawPie(QRectF(-150, -150, 300, 300), pie.start, pie.span);
    painter.setPen(QColor(0, 0, 0, 200));
    painter.setFont(font);
    painter.drawText(label + QPointF(kTextMargin, kTextMargin + metrics.ascent()), number);
    painter.translate(-place);
}

/// The painter is at the vehicle's origin, in scene units. Every sensor has at most one entry.
inline void picture(QPainter& painter, const orv::OrvFreespacePackage& package)
{
    painter.setRenderHint(QPainter::Antialiasing);
    axes(painter);
    for (const orv::OrvFreespaceEntry& entry : package.entries)
        freespace(painter, entry.sensorId, freespace::shapeOf(entry));
    for (const orv::OrvFreespaceEntry& entry : package.entries)
        marker(painter, entry);
}

} // namespace hand_painted
