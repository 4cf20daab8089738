#include "views/live/OrvgSignalLineWidget.h"

#include "views/live/OrvgSignalWidget.h"
#include "views/live/slot_keys.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kItemWidth = 40;
constexpr int kMinimumHeight = 50;
constexpr int kFocusFrameWidth = 2;

} // namespace

OrvgSignalLineWidget::OrvgSignalLineWidget(QWidget* parent)
    : QFrame(parent), mLayout(new QHBoxLayout(this))
{
    announcePictures();
    setTabStop(true);
    setFrameShape(QFrame::Box);
    setMinimumHeight(kMinimumHeight);
    setMouseTracking(true);
    mLayout->setContentsMargins(0, 0, 0, 0);
    mLayout->setSpacing(1);
    // One more than fits: the first result takes it away again.
    for (int count = 0; count <= itemCount(); ++count)
        prependEmptyItem();
    mPictures.reset(int(mItems.size()));
}

int OrvgSignalLineWidget::itemCount() const
{
    return width() / kItemWidth;
}

void OrvgSignalLineWidget::setTabStop(bool isTabStop)
{
    setFocusPolicy(isTabStop ? Qt::StrongFocus : Qt::ClickFocus);
}

void OrvgSignalLineWidget::addMeasurement(const std::vector<orv::OrvSensorEcho>& echos,
                                          orv::OrvSensorRole role)
{
    if (mItems.size() != itemCount())
        adjustItems();
    if (mItems.isEmpty())
        return;
    shiftLeft();
    mItems.last()->setSignal(echos);
    mItems.last()->setRole(role);
    showCursor();
    update(contentsRect());
}

void OrvgSignalLineWidget::paintEvent(QPaintEvent* event)
{
    // The frame takes longer than all slots; it shares pixels with them only at ratios that have a
    // fraction.
    if (!hasWholePixels() || !contentsRect().contains(event->rect()))
        QFrame::paintEvent(event);
    QPainter painter(this);
    for (int position = 0; position < mItems.size(); ++position) {
        const QRect slot = mItems[position]->geometry();
        if (!slot.isEmpty() && event->rect().intersects(slot))
            paintSlot(painter, position);
    }
    if (hasFocus())
        paintFocus(painter);
}

void OrvgSignalLineWidget::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    mPictures.forget();
}

void OrvgSignalLineWidget::keyPressEvent(QKeyEvent* event)
{
    const auto slot = slotAfterKey(event->key(), focusedSlot(), int(mItems.size()));
    if (slot)
        focusSlot(*slot);
    else if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)
        emit neighbourWanted(event->key() == Qt::Key_Up ? -1 : 1);
    else
        QFrame::keyPressEvent(event);
}

void OrvgSignalLineWidget::mousePressEvent(QMouseEvent* event)
{
    if (OrvgSignalWidget* item = itemAt(event->pos()))
        focusSlot(int(mItems.indexOf(item)));
}

void OrvgSignalLineWidget::mouseMoveEvent(QMouseEvent* event)
{
    mPointer = event->pos();
    showCursor();
}

void OrvgSignalLineWidget::prependEmptyItem()
{
    // A slot has its place in the layout, but the line paints it: the repaint of a widget costs
    // several times what is painted in it.
    auto* item = new OrvgSignalWidget({}, this);
    QSizePolicy policy = item->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    item->setSizePolicy(policy);
    item->hide();
    mItems.prepend(item);
    mLayout->insertWidget(0, item);
}

void OrvgSignalLineWidget::adjustItems()
{
    while (mItems.size() < itemCount())
        prependEmptyItem();
    while (mItems.size() > itemCount())
        delete mItems.takeLast();
    mPictures.reset(int(mItems.size()));
}

void OrvgSignalLineWidget::shiftLeft()
{
    for (int position = 1; position < mItems.size(); ++position)
        mItems[position - 1]->copyFrom(*mItems[position]);
    mPictures.shiftLeft();
}

void OrvgSignalLineWidget::paintSlot(QPainter& painter, int position)
{
    const OrvgSignalWidget& item = *mItems[position];
    if (hasWholePixels()) {
        painter.drawPixmap(item.pos(), mPictures.picture(position, item));
        return;
    }
    // With a fraction of a pixel between them, two slots of one width do not look the same.
    painter.save();
    painter.setClipRect(item.geometry());
    painter.translate(item.pos());
    item.paint(painter);
    painter.restore();
}

void OrvgSignalLineWidget::paintFocus(QPainter& painter) const
{
    if (mItems.isEmpty())
        return;
    const int inset = kFocusFrameWidth / 2;
    painter.setPen(QPen(palette().color(QPalette::Highlight), kFocusFrameWidth));
    painter.drawRect(mItems[focusedSlot()]->geometry().adjusted(inset, inset, -inset, -inset));
}

// Fewer results may fit by now.
int OrvgSignalLineWidget::focusedSlot() const
{
    return std::max(0, static_cast<int>(mItems.size()) - 1 - mSlotsFromNewest);
}

void OrvgSignalLineWidget::focusSlot(int position)
{
    mSlotsFromNewest = static_cast<int>(mItems.size()) - 1 - position;
    update();
    emit signalWidgetClicked(mItems[position]);
}

bool OrvgSignalLineWidget::hasWholePixels() const
{
    return std::floor(devicePixelRatioF()) == devicePixelRatioF();
}

OrvgSignalWidget* OrvgSignalLineWidget::itemAt(QPoint position) const
{
    const auto found = std::ranges::find_if(
        mItems, [&](const auto* item) { return item->geometry().contains(position); });
    return found == mItems.end() ? nullptr : *found;
}

void OrvgSignalLineWidget::showCursor()
{
    const OrvgSignalWidget* item = itemAt(mPointer);
    const Qt::CursorShape shape = item ? item->cursor().shape() : Qt::ArrowCursor;
    if (cursor().shape() != shape)
        setCursor(shape);
}
