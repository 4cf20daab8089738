#include "views/live/TimelinePictures.h"

#include "views/live/OrvgSignalWidget.h"

#include <QPainter>

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
    picture.pixmap.fill(Qt::transparent);
    QPainter painter(&picture.pixmap);
    slot.paint(painter);
    picture.isPainted = true;
}

TimelinePictures::SlotPictures& TimelinePictures::at(int position)
{
    return mSlots[(mFirst + static_cast<std::size_t>(position)) % mSlots.size()];
}
