#include "views/live/TimelinePictures.h"

#include "views/live/OrvgSignalWidget.h"

#include <QPainter>

namespace {

// What is behind the slots, as far as it can be a part of their pictures: nothing of a pattern.
QColor backgroundOf(const QWidget& slot)
{
    const QBrush& background = slot.palette().brush(slot.backgroundRole());
    return background.style() == Qt::SolidPattern ? background.color() : Qt::transparent;
}

} // namespace

void TimelinePictures::reset(int count)
{
    mSlots.assign(static_cast<std::size_t>(count), {});
    mFirst = 0;
}

void TimelinePictures::forget()
{
    for (SlotPictures& pictures : mSlots)
        for (Picture& picture : pictures)
            picture.isPainted = false;
}

void TimelinePictures::shiftLeft()
{
    if (mSlots.empty())
        return;
    for (Picture& picture : mSlots[mFirst])
        picture.isPainted = false;
    mFirst = (mFirst + 1) % mSlots.size();
}

const QPixmap& TimelinePictures::picture(int position, const OrvgSignalWidget& slot)
{
    Picture& picture = at(position)[static_cast<std::size_t>(slot.width() % 2)];
    fit(picture, slot);
    if (!picture.isPainted)
        paint(picture, slot);
    return picture.pixmap;
}

void TimelinePictures::fit(Picture& picture, const OrvgSignalWidget& slot)
{
    const qreal ratio = slot.devicePixelRatioF();
    const QSize size = slot.size() * ratio;
    if (picture.pixmap.size() == size && picture.pixmap.devicePixelRatioF() == ratio)
        return;
    picture = {.pixmap = QPixmap(size)};
    picture.pixmap.setDevicePixelRatio(ratio);
}

void TimelinePictures::paint(Picture& picture, const OrvgSignalWidget& slot)
{
    // An opaque picture is copied, which takes half the time of laying it over the background.
    picture.pixmap.fill(backgroundOf(slot));
    QPainter painter(&picture.pixmap);
    slot.paint(painter);
    picture.isPainted = true;
}

TimelinePictures::SlotPictures& TimelinePictures::at(int position)
{
    return mSlots[(mFirst + static_cast<std::size_t>(position)) % mSlots.size()];
}
