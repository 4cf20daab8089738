#include "views/common/contrast.h"

#include <QColor>

#include <algorithm>
#include <cmath>

namespace {

// Below it, text of ordinary size counts as hard to read.
constexpr double kReadable = 4.5;

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

} // namespace

double contrastRatio(const QColor& first, const QColor& second)
{
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor readableTextColor(const QColor& ofPalette, const QColor& background)
{
    if (contrastRatio(ofPalette, background) >= kReadable)
        return ofPalette;
    const bool isDark = contrastRatio(Qt::white, background) > contrastRatio(Qt::black, background);
    return isDark ? Qt::white : Qt::black;
}
