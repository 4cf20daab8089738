#include "tests/support/rendered_contrast.h"

#include <QHash>

#include <algorithm>
#include <cmath>

namespace {

double luminance(QRgb color)
{
    const auto linear = [](int channel) {
        const double value = channel / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) +
           0.0722 * linear(qBlue(color));
}

double ratio(double first, double second)
{
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

} // namespace

RenderedContrast renderedContrast(const QImage& picture, const QRect& part)
{
    const QRect seen = part & picture.rect();
    QHash<QRgb, int> counts;
    for (int y = seen.top(); y <= seen.bottom(); ++y)
        for (int x = seen.left(); x <= seen.right(); ++x)
            ++counts[picture.pixel(x, y)];
    QRgb ground = 0;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count)
        ground = count.value() > counts.value(ground) ? count.key() : ground;
    RenderedContrast result{QColor(ground)};
    for (auto count = counts.cbegin(); count != counts.cend(); ++count)
        result.ratio = std::max(result.ratio, ratio(luminance(count.key()), luminance(ground)));
    return result;
}
