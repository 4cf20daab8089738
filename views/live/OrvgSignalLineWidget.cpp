#include "views/live/OrvgSignalLineWidget.h"

#include "views/live/OrvgSignalWidget.h"

#include <QHBoxLayout>
#include <QMouseEvent>

namespace {

constexpr int kItemWidth = 40;
constexpr int kMinimumHeight = 50;

} // namespace

OrvgSignalLineWidget::OrvgSignalLineWidget(QWidget* parent)
    : QFrame(parent), mLayout(new QHBoxLayout(this))
{
    setFrameShape(QFrame::Box);
    setMinimumHeight(kMinimumHeight);
    mLayout->setContentsMargins(0, 0, 0, 0);
    mLayout->setSpacing(1);
    // One more than fits: the first result takes it away again.
    for (int count = 0; count <= itemCount(); ++count)
        prependEmptyItem();
}

int OrvgSignalLineWidget::itemCount() const
{
    return width() / kItemWidth;
}

void OrvgSignalLineWidget::addMeasurement(const std::vector<orv::OrvSensorEcho>& echos,
                                          orv::OrvSensorRole role)
{
    adjustItems();
    if (mItems.isEmpty())
        return;
    shiftLeft();
    mItems.last()->setSignal(echos);
    mItems.last()->setRole(role);
}

void OrvgSignalLineWidget::mousePressEvent(QMouseEvent* event)
{
    if (auto* item = qobject_cast<OrvgSignalWidget*>(childAt(event->pos())))
        emit signalWidgetClicked(item);
}

void OrvgSignalLineWidget::prependEmptyItem()
{
    auto* item = new OrvgSignalWidget({}, this);
    mItems.prepend(item);
    mLayout->insertWidget(0, item);
}

void OrvgSignalLineWidget::adjustItems()
{
    while (mItems.size() < itemCount())
        prependEmptyItem();
    while (mItems.size() > itemCount())
        delete mItems.takeLast();
}

void OrvgSignalLineWidget::shiftLeft()
{
    for (int position = 1; position < mItems.size(); ++position)
        mItems[position - 1]->copyFrom(*mItems[position]);
}
