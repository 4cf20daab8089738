#pragma once

#include <QPixmap>
#include <QPoint>
#include <QRect>

#include <vector>

class QPainter;

/// One stick of a plot, in pixels of the widget.
struct Stick
{
    QPoint top;
    bool hasCircle = true; ///< around the top

    bool operator==(const Stick&) const = default;
};

/// Sticks on a background, kept from paint to paint: when sticks change, only the columns around
/// them are painted anew.
class StickPicture
{
public:
    bool isNull() const { return mPicture.isNull(); }
    qreal devicePixelRatio() const { return mRatio; }
    const QPixmap& pixmap() const { return mPicture; }

    /// There is nothing to show until the next background.
    void clear() { mPicture = {}; }

    /// Begins anew, without sticks, in the background's size and pixel ratio.
    void setBackground(const QPixmap& background);

    /// Shows these sticks alone: from left to right, at most one a column of the widget.
    void show(std::vector<Stick> sticks);

private:
    QRect stripAround(const Stick& stick) const;
    std::vector<QRect> changedStrips(const std::vector<Stick>& sticks) const;
    void paintStrip(QPainter& painter, const QRect& strip) const;
    void collect(const Stick& stick, std::vector<QRect>& rects) const;
    QPoint topInDevicePixels(const Stick& stick) const;

    qreal mRatio = 1;
    QPixmap mBackground; // of the pixel ratio 1
    QPixmap mPicture;
    QRect mStickBounds;         // of a stick's top, in device pixels
    std::vector<QRect> mCircle; // around the top, in device pixels
    std::vector<Stick> mSticks;
};
