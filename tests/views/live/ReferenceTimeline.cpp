#include "tests/views/live/ReferenceTimeline.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPen>

namespace {

constexpr int kMaxMagnitude = 15;
constexpr int kMaxTimeOfFlightUs = 30000;

} // namespace

void ReferenceSlot::paintEvent(QPaintEvent*)
{
    const int w = width();
    const int h = height();
    QPainter painter(this);
    if (echoes.empty()) {
        painter.setPen(QPen(palette().color(QPalette::WindowText), 1, Qt::DotLine));
        painter.drawLine(0, 0, 0, h);
        return;
    }
    painter.fillRect(0, 0, w, h, QColor(50, 55, 50, 127));
    if (role != orv::OrvSensorRole::NotInvolved) {
        const bool isSending = role == orv::OrvSensorRole::Sending;
        const QColor color = isSending ? QColor(250, 220, 180) : QColor(200, 200, 250);
        painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawRect(1, 1, w - 2, h - 2);
    }
    painter.setPen(QPen(Qt::yellow, 1));
    for (const orv::OrvSensorEcho& echo : echoes) {
        const int x = echo.magnitude * (w - 4) / kMaxMagnitude - 1;
        const int y = (h - 4) - echo.timeOfFlight * (h - 4) / kMaxTimeOfFlightUs;
        if (x > 0)
            painter.drawLine(2, y, x, y);
    }
}

ReferenceTimeline::ReferenceTimeline(QWidget* parent)
    : QFrame(parent), mLayout(new QHBoxLayout(this))
{
    setFrameShape(QFrame::Box);
    setMinimumHeight(50);
    mLayout->setContentsMargins(0, 0, 0, 0);
    mLayout->setSpacing(1);
    for (int count = 0; count <= width() / 40; ++count)
        prependSlot();
}

void ReferenceTimeline::addMeasurement(const std::vector<orv::OrvSensorEcho>& echoes,
                                       orv::OrvSensorRole role)
{
    while (mSlots.size() < width() / 40)
        prependSlot();
    while (mSlots.size() > width() / 40)
        delete mSlots.takeLast();
    for (int k = 1; k < mSlots.size(); ++k) {
        mSlots[k - 1]->echoes = mSlots[k]->echoes;
        mSlots[k - 1]->role = mSlots[k]->role;
    }
    if (!mSlots.isEmpty()) {
        mSlots.last()->echoes = echoes;
        mSlots.last()->role = role;
    }
    for (ReferenceSlot* slot : mSlots)
        slot->update();
}

void ReferenceTimeline::prependSlot()
{
    mSlots.prepend(new ReferenceSlot(this));
    mLayout->insertWidget(0, mSlots.first());
}
