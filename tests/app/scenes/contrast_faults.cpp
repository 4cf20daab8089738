#include "tests/app/scenes/contrast_faults.h"

#include "tests/app/scenes/accessibility_faults.h"
#include "tests/app/scenes/shown_texts.h"
#include "tests/support/rendered_contrast.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QImage>
#include <QLabel>
#include <QStyle>
#include <QWidget>

namespace {

constexpr double kReadable = 4.5;

const QWidget& surfaceOf(const QWidget& widget)
{
    const auto* area = qobject_cast<const QAbstractScrollArea*>(&widget);
    return area ? *area->viewport() : widget;
}

QRect inPixels(const QRect& place, const QWidget& surface, const QWidget& window, qreal ratio)
{
    const QPointF corner = QPointF(surface.mapTo(&window, place.topLeft())) * ratio;
    return QRectF(corner, QSizeF(place.size()) * ratio).toAlignedRect();
}

// Where the text is in the picture, as far as it is seen; in pixels.
QRect seenPlace(const ShownText& text, const QWidget& window, qreal ratio)
{
    const QWidget& surface = surfaceOf(*text.widget);
    const QRect seen = surface.visibleRegion().boundingRect() & text.place;
    // A few rows of a text say nothing.
    if (seen.height() < text.place.height() || seen.width() < text.place.width())
        return {};
    return inPixels(seen, surface, window, ratio);
}

bool isEmptyRow(const QImage& picture, const QRect& place, int y)
{
    const QRgb first = picture.pixel(place.left(), y);
    for (int x = place.left(); x <= place.right(); ++x) {
        if (picture.pixel(x, y) != first)
            return false;
    }
    return true;
}

// The lines of a text: one of them may be paler than the others.
QVector<QRect> linesIn(const QImage& picture, const QRect& wanted)
{
    const QRect place = wanted & picture.rect();
    QVector<QRect> lines;
    int top = -1;
    for (int y = place.top(); y <= place.bottom() + 1; ++y) {
        const bool isInk = y <= place.bottom() && !isEmptyRow(picture, place, y);
        if (isInk && top < 0)
            top = y;
        if (isInk || top < 0)
            continue;
        lines << QRect(place.left(), top, place.width(), y - top);
        top = -1;
    }
    return lines.isEmpty() ? QVector<QRect>{place} : lines;
}

RenderedContrast palestLine(const QImage& picture, const ShownText& text, const QRect& place)
{
    RenderedContrast palest = renderedContrast(picture, place);
    const int lineHeight = text.widget->fontMetrics().lineSpacing();
    if (!qobject_cast<const QLabel*>(text.widget) || text.place.height() < 2 * lineHeight)
        return palest;
    for (const QRect& line : linesIn(picture, place)) {
        const RenderedContrast contrast = renderedContrast(picture, line);
        // A dot or an underline is a line too.
        if (line.height() > place.height() / 8 && contrast.ratio < palest.ratio)
            palest = contrast;
    }
    return palest;
}

} // namespace

QStringList paleTexts(QWidget& window, const QImage& picture)
{
    QStringList faults;
    const QColor highlight = window.palette().color(QPalette::Highlight);
    for (const ShownText& text : shownTexts(window)) {
        if (text.isDim || isPartOfQt(*text.widget) || text.place.isEmpty() ||
            text.text.trimmed().isEmpty())
            continue;
        const QRect place = seenPlace(text, window, picture.devicePixelRatio());
        if (place.isEmpty())
            continue;
        const RenderedContrast contrast = palestLine(picture, text, place);
        // What is selected has two colours of the desktop's.
        if (contrast.ratio < kReadable && contrast.ground != highlight)
            faults << QStringLiteral("\"%1\" of %2 has %3 on %4")
                          .arg(text.text, nameOf(*text.widget))
                          .arg(contrast.ratio, 0, 'f', 1)
                          .arg(contrast.ground.name());
    }
    return faults;
}

QStringList paleIcons(QWidget& window, const QImage& picture)
{
    constexpr double kRecognisable = 3;
    QStringList faults;
    for (const auto* button : window.findChildren<QAbstractButton*>()) {
        const QSize size = button->iconSize();
        if (button->icon().isNull() || !button->isEnabled() || isPartOfQt(*button) ||
            button->visibleRegion().boundingRect() != button->rect())
            continue;
        const QRect icon =
            QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, button->rect());
        const RenderedContrast contrast =
            renderedContrast(picture, inPixels(icon, *button, window, picture.devicePixelRatio()));
        if (contrast.ratio < kRecognisable)
            faults << QStringLiteral("icon of %1 has %2 on %3")
                          .arg(nameOf(*button))
                          .arg(contrast.ratio, 0, 'f', 1)
                          .arg(contrast.ground.name());
    }
    return faults;
}
