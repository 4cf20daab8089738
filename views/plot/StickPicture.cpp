#include "views/plot/StickPicture.h"

#include "views/plot/circle_rows.h"

#include <QPainter>

#include <algorithm>
#include <iterator>
#include <tuple>

namespace {

constexpr int kCircleRadius = 1;

bool isLess(const Stick& left, const Stick& right)
{
    const auto key = [](const Stick& stick) {
        return std::tuple(stick.top.x(), stick.top.y(), stick.hasCircle);
    };
    return key(left) < key(right);
}

} // namespace

void StickPicture::setBackground(const QPixmap& background)
{
    mRatio = background.devicePixelRatio();
    mPicture = background;
    mBackground = background;
    mBackground.setDevicePixelRatio(1);
    mSticks.clear();
    mCircle = circleRows(kCircleRadius, mRatio);
    mStickBounds = QRect(0, 0, qRound(mRatio), 1);
    for (const QRect& row : mCircle)
        mStickBounds |= row;
}

void StickPicture::show(std::vector<Stick> sticks)
{
    const std::vector<QRect> strips = changedStrips(sticks);
    mSticks = std::move(sticks);
    mPicture.setDevicePixelRatio(1);
    {
        QPainter painter(&mPicture);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::yellow);
        for (const QRect& strip : strips)
            paintStrip(painter, strip);
    }
    mPicture.setDevicePixelRatio(mRatio);
}

// From left to right; those that touch are one.
std::vector<QRect> StickPicture::changedStrips(const std::vector<Stick>& sticks) const
{
    std::vector<Stick> changed;
    std::set_symmetric_difference(mSticks.begin(), mSticks.end(), sticks.begin(), sticks.end(),
                                  std::back_inserter(changed), isLess);
    std::vector<QRect> strips;
    for (const Stick& stick : changed) {
        const QRect strip = stripAround(stick);
        if (!strips.empty() && strip.left() <= strips.back().right() + 1)
            strips.back() |= strip;
        else
            strips.push_back(strip);
    }
    return strips;
}

QRect StickPicture::stripAround(const Stick& stick) const
{
    const int x = topInDevicePixels(stick).x();
    return {QPoint(x + mStickBounds.left(), 0),
            QPoint(x + mStickBounds.right(), mBackground.height() - 1)};
}

void StickPicture::paintStrip(QPainter& painter, const QRect& strip) const
{
    painter.setClipRect(strip);
    painter.drawPixmap(strip, mBackground, strip);
    const auto endsBefore = [this](const Stick& stick, int left) {
        return stripAround(stick).right() < left;
    };
    std::vector<QRect> rects;
    auto stick = std::lower_bound(mSticks.begin(), mSticks.end(), strip.left(), endsBefore);
    for (; stick != mSticks.end() && stripAround(*stick).left() <= strip.right(); ++stick)
        collect(*stick, rects);
    // Rectangles take a tenth of the time of lines.
    painter.drawRects(rects.data(), static_cast<int>(rects.size()));
}

void StickPicture::collect(const Stick& stick, std::vector<QRect>& rects) const
{
    const QPoint top = topInDevicePixels(stick);
    const int width = qRound(mRatio);
    rects.emplace_back(top, QSize(width, mBackground.height() - top.y()));
    if (!stick.hasCircle)
        return;
    for (const QRect& row : mCircle)
        rects.push_back(row.translated(top));
}

QPoint StickPicture::topInDevicePixels(const Stick& stick) const
{
    return {qRound(stick.top.x() * mRatio), qRound(stick.top.y() * mRatio)};
}
