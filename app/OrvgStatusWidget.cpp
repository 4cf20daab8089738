#include "app/OrvgStatusWidget.h"

#include "orv_decoder/FirmwareVersion.h"

#include <QIcon>
#include <QPainter>

namespace {

constexpr int kHeight = 22;

} // namespace

OrvgStatusWidget::OrvgStatusWidget(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setMinimumHeight(kHeight);
    setAccessibleName(tr("ECU link"));
    updateToolTip();
}

void OrvgStatusWidget::setConnected(bool connected)
{
    mConnected = connected;
    updateToolTip();
    update();
}

void OrvgStatusWidget::setNoLiveData(bool noLiveData)
{
    mNoLiveData = noLiveData;
    updateToolTip();
    update();
}

void OrvgStatusWidget::setFirmwareVersion(const orv::FirmwareVersion& version)
{
    mFirmwareVersion = QString::fromStdString(version.text());
    updateGeometry();
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
    return {textWidth + kHeight + 25, kHeight};
}

void OrvgStatusWidget::updateToolTip()
{
    if (!mConnected)
        setToolTip(tr("ECU disconnected."));
    else if (mNoLiveData)
        setToolTip(tr("ECU online, but not sending live data."));
    else
        setToolTip(tr("ECU connected."));
    setAccessibleDescription(toolTip());
}

void OrvgStatusWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), QBrush(Qt::transparent, Qt::SolidPattern));
    const QRect led(width() - height(), 1, height() - 1, height() - 2);
    QIcon(ledImage()).paint(&painter, led);
    if (!mConnected)
        return;
    QRect field(5, 1, width() - height() - 15, height() - 2);
    painter.drawText(field, Qt::AlignCenter, mFirmwareVersion);
    field.setLeft(0);
    painter.drawRect(field);
}
