#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

/// What is drawn in this part of a picture (in its own pixels): the colour of most pixels, and the
/// contrast of the pixel that stands out most from it, 1 to 21. For a text that is the contrast of
/// the text, for an empty part 1.
struct RenderedContrast
{
    QColor ground;
    double ratio = 1;
};

RenderedContrast renderedContrast(const QImage& picture, const QRect& part);
