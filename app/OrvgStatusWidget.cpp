#include "app/OrvgStatusWidget.h"

#include "orv_decoder/FirmwareVersion.h"

#include <QIcon>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

constexpr int kMinimumHeight = 22;
constexpr int kRoomAroundText = 2;

// The largest one, in the middle.
QRect squareIn(const QRect& area)
{
    const int side = std::min(area.width(), area.height());
    QRect square(0, 0, side, side);
    square.moveCenter(area.center());
    return square;
}

// By bars: at ratios with a fraction a line along the edge may fall beside the widget.
void paintFrame(QPainter& painter, const QRect& frame)
{
    const QColor color = painter.pen().color();
    const int length = frame.width() + 1;
    const int height = frame.height() + 1;
    painter.fillRect(frame.left(), frame.top(), length, 1, color);
    painter.fillRect(frame.left(), frame.top() + frame.height(), length, 1, color);
    painter.fillRect(frame.left(), frame.top(), 1, height, color);
    painter.fillRect(frame.left() + frame.width(), frame.top(), 1, height, color);
}

} // namespace

OrvgStatusWidget::OrvgStatusWidget(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setMinimumHeight(suitableHeight());
    setAccessibleName(tr("ECU link"));
    updateToolTip();
}

void OrvgStatusWidget::setConnected(bool connected)
{
    if (std::exchange(mConnected, connected) != connected)
        showChange();
}

void OrvgStatusWidget::setNoLiveData(bool noLiveData)
{
    if (std::exchange(mNoLiveData, noLiveData) != noLiveData)
        showChange();
}

void OrvgStatusWidget::setFirmwareVersion(const orv::FirmwareVersion& version)
{
    const QString text = QString::fromStdString(version.text());
    if (std::exchange(mFirmwareVersion, text) != text)
        update();
}

void OrvgStatusWidget::setTroubles(const QStringList& troubles)
{
    if (std::exchange(mTroubles, troubles) != troubles)
        updateToolTip();
}

void OrvgStatusWidget::showChange()
{
    updateToolTip();
    update();
}

QString OrvgStatusWidget::ledImage() const
{
    if (!mConnected)
        return QStringLiteral(":/icons/icons/inactive_led.png");
    if (mNoLiveData)
        return QStringLiteral(":/icons/icons/halfactive_led.png");
    return QStringLiteral(":/icons/icons/active_led.png");
}

QSize OrvgStatusWidget::sizeHint() const
{
    // The widest version that three bytes can spell, so that the bar does not jump.
    const int textWidth = fontMetrics().horizontalAdvance(QStringLiteral("255.255.255"));
    return {textWidth + suitableHeight() + 25, suitableHeight()};
}

int OrvgStatusWidget::suitableHeight() const
{
    return std::max(kMinimumHeight, fontMetrics().height() + kRoomAroundText);
}

QString OrvgStatusWidget::stateText() const
{
    if (!mConnected)
        return tr("ECU disconnected.");
    return mNoLiveData ? tr("ECU online, but not sending live data.") : tr("ECU connected.");
}

void OrvgStatusWidget::updateToolTip()
{
    setToolTip((QStringList(stateText()) + mTroubles).join(QLatin1Char('\n')));
    setAccessibleDescription(toolTip());
}

void OrvgStatusWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), QBrush(Qt::transparent, Qt::SolidPattern));
    const QRect led(width() - height(), 1, height() - 1, height() - 2);
    const QPixmap image = QIcon(ledImage()).pixmap(led.size());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(squareIn(led), image);
    if (!mConnected)
        return;
    QRect field(5, 1, width() - height() - 15, height() - 2);
    painter.drawText(field, Qt::AlignCenter, mFirmwareVersion);
    field.setLeft(0);
    paintFrame(painter, field);
}
