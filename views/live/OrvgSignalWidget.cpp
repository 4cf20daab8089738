#include "views/live/OrvgSignalWidget.h"

#include "views/live/signal_geometry.h"

#include <QCursor>
#include <QPainter>
#include <QPen>

namespace {

constexpr QColor kBackground(50, 55, 50, 127);
constexpr QColor kSenderFrame(250, 220, 180);
constexpr QColor kReceiverFrame(200, 200, 250);
constexpr int kFrameWidth = 2;

} // namespace

OrvgSignalWidget::OrvgSignalWidget(QWidget* parent) : QWidget(parent)
{
    announcePictures();
}

OrvgSignalWidget::OrvgSignalWidget(const std::vector<orv::OrvSensorEcho>& echos, QWidget* parent)
    : QWidget(parent), mIsClickable(true)
{
    setSignal(echos);
}

void OrvgSignalWidget::setSignal(const std::vector<orv::OrvSensorEcho>& echos)
{
    mEchoes = echos;
    if (mIsClickable)
        updateCursor();
    update();
}

void OrvgSignalWidget::setRole(orv::OrvSensorRole role)
{
    mRole = role;
    update();
}

void OrvgSignalWidget::copyFrom(const OrvgSignalWidget& other)
{
    mRole = other.mRole;
    setSignal(other.mEchoes);
}

void OrvgSignalWidget::updateCursor()
{
    const Qt::CursorShape shape = mEchoes.empty() ? Qt::ArrowCursor : Qt::PointingHandCursor;
    // Each setCursor() allocates, and most results leave the shape as it is.
    if (cursor().shape() != shape)
        setCursor(shape);
}

void OrvgSignalWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paint(painter);
}

void OrvgSignalWidget::paint(QPainter& painter) const
{
    if (mEchoes.empty()) {
        paintEmptySlot(painter);
        return;
    }
    painter.fillRect(rect(), kBackground);
    if (mIsClickable && mRole != orv::OrvSensorRole::NotInvolved)
        paintRoleFrame(painter);
    paintEchoes(painter);
}

void OrvgSignalWidget::paintEmptySlot(QPainter& painter) const
{
    painter.setPen(QPen(palette().color(foregroundRole()), 1, Qt::DotLine));
    painter.drawLine(0, 0, 0, height());
}

void OrvgSignalWidget::paintRoleFrame(QPainter& painter) const
{
    const QColor& color = mRole == orv::OrvSensorRole::Sending ? kSenderFrame : kReceiverFrame;
    // Four bars cost a third less than the same rectangle with a wide pen.
    const QRect inside = rect().adjusted(kFrameWidth, kFrameWidth, -kFrameWidth, -kFrameWidth);
    painter.fillRect(0, 0, width(), kFrameWidth, color);
    painter.fillRect(0, inside.bottom() + 1, width(), kFrameWidth, color);
    painter.fillRect(0, inside.top(), kFrameWidth, inside.height(), color);
    painter.fillRect(inside.right() + 1, inside.top(), kFrameWidth, inside.height(), color);
}

void OrvgSignalWidget::paintEchoes(QPainter& painter) const
{
    using namespace signal_geometry;
    painter.setPen(Qt::yellow);
    for (const orv::OrvSensorEcho& echo : mEchoes) {
        const int end = echoLineEnd(echo.magnitude, width());
        const int y = echoLineY(echo.timeOfFlight, height());
        if (end == kEchoLineStart)
            painter.drawLine(end, y, end, y);
        else if (end > 0)
            painter.fillRect(echoLineRect(end, y) & QRectF(rect()), Qt::yellow);
    }
}
