#include "views/plot/circle_rows.h"

#include <QImage>
#include <QPainter>
#include <QtMath>

namespace {

QImage paintedCircle(int radius, int center, qreal devicePixelRatio)
{
    const int side = qCeil((2 * center + 1) * devicePixelRatio);
    QImage image(side, side, QImage::Format_RGB32);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setPen(Qt::white);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPoint(center, center), radius, radius);
    return image;
}

} // namespace

std::vector<QRect> circleRows(int radius, qreal devicePixelRatio)
{
    const int center = radius + 2; // room for the outline
    const QImage image = paintedCircle(radius, center, devicePixelRatio);
    const int origin = qRound(center * devicePixelRatio);
    std::vector<QRect> rows;
    for (int y = 0; y < image.height(); ++y) {
        int first = 0;
        while (first < image.width() && image.pixel(first, y) == qRgb(0, 0, 0))
            ++first;
        int end = first;
        while (end < image.width() && image.pixel(end, y) != qRgb(0, 0, 0))
            ++end;
        if (first < end)
            rows.emplace_back(first - origin, y - origin, end - first, 1);
    }
    return rows;
}
