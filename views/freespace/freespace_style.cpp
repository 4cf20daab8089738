#include "views/freespace/freespace_style.h"

#include <QLineF>

#include <array>

namespace freespace {

namespace {

QColor withAlpha(QColor colour, double alpha)
{
    colour.setAlphaF(float(alpha));
    return colour;
}

QGradientStop stop(double position, const char* colourName, double alpha)
{
    return {position, withAlpha(QColor(colourName), alpha)};
}

QLinearGradient gradient(const QLineF& fromTo, const QGradientStops& stops)
{
    QLinearGradient gradient(fromTo.p1(), fromTo.p2());
    gradient.setStops(stops);
    return gradient;
}

} // namespace

QColor sensorColour(std::uint8_t sensorId)
{
    static const std::array<QColor, 6> kColours = {
        QColor(255, 69, 0, 76),   QColor(170, 90, 200, 76),  QColor(0, 128, 0, 76),
        QColor(70, 130, 180, 76), QColor(255, 127, 255, 76), QColor(0, 128, 128, 76),
    };
    return kColours[sensorId % kColours.size()];
}

QPen outlinePen(const QColor& colour)
{
    QPen pen(colour, 1);
    pen.setCosmetic(true);
    return pen;
}

QPen wedgePen()
{
    return outlinePen(withAlpha(Qt::black, 0.05));
}

QLinearGradient distanceGradient(const QLineF& fromTo)
{
    static const QGradientStops kStops = {
        stop(0.0, "orange", 0.01), stop(0.2, "orange", 0.1),  stop(0.5, "orange", 0.5),
        stop(0.8, "orange", 0.1),  stop(1.0, "orange", 0.01),
    };
    return gradient(fromTo, kStops);
}

QLinearGradient areaGradient(const QLineF& fromTo)
{
    static const QGradientStops kStops = {
        stop(0.0, "lightgreen", 0.05), stop(0.3, "lightgreen", 0.2),  stop(0.5, "lightgreen", 0.5),
        stop(0.7, "lightgreen", 0.2),  stop(1.0, "lightgreen", 0.05),
    };
    return gradient(fromTo, kStops);
}

} // namespace freespace
