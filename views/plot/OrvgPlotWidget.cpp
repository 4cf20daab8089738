#include "views/plot/OrvgPlotWidget.h"

#include "ecu/store/safe_file.h"

#include <QBuffer>
#include <QMessageBox>
#include <QPainter>
#include <QtMath>

#include <cmath>
#include <span>

namespace {

constexpr QColor kBackground(50, 55, 50);
constexpr int kMarkRadius = 5;
constexpr int kVertexRadius = 2;
constexpr int kSampleRadius = 1;
constexpr int kDotPeriod = 3; // of a dotted pen, in widths of the pen

void drawCircle(QPainter& painter, QPoint center, int radius)
{
    painter.drawEllipse(center, radius, radius);
}

} // namespace

OrvgPlotWidget::OrvgPlotWidget(QWidget* parent) : QWidget(parent)
{
    setWindowTitle(tr("Form"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    resize(400, 300);
}

void OrvgPlotWidget::setSampleStore(SampleStore store)
{
    mSamples = EchoSamples(store);
    invalidate();
}

void OrvgPlotWidget::addData(const std::vector<orv::OrvSensorEcho>& echoes)
{
    mSamples.add(echoes);
    invalidate();
}

void OrvgPlotWidget::clear()
{
    mSamples.clear();
}

void OrvgPlotWidget::setMaximumMode(bool maximum)
{
    mShownValue = maximum ? EchoValue::Maximum : EchoValue::Mean;
    invalidate();
}

void OrvgPlotWidget::setThresholds(const orv::ThresholdEntries& entries)
{
    mThresholds = entries;
    invalidate();
}

void OrvgPlotWidget::setThresholdsShown(bool shown)
{
    mThresholdsShown = shown;
    update();
}

void OrvgPlotWidget::setThresholdColor(const QColor& color)
{
    mThresholdColor = color;
    update();
}

void OrvgPlotWidget::setMarkedColumn(int column)
{
    mMarkedColumn = column;
    update();
}

void OrvgPlotWidget::save(const QString& fileName)
{
    QBuffer csv;
    csv.open(QIODevice::WriteOnly);
    if (!writeCsv(mSamples, csv) || !writeWholeFile(fileName, csv.data()).isWritten())
        QMessageBox::warning(this, tr("File error"), tr("Can't write to file."));
}

void OrvgPlotWidget::resetData()
{
    clear();
    invalidate();
}

void OrvgPlotWidget::resizeEvent(QResizeEvent*)
{
    mBackground = {};
    invalidate();
}

void OrvgPlotWidget::paintEvent(QPaintEvent*)
{
    if (mBackground.isNull() || mBackground.devicePixelRatioF() != devicePixelRatioF())
        rebuildBackground();
    if (mIsStale)
        rebuildCurves();
    QPainter painter(this);
    painter.drawPixmap(0, 0, mBackground);
    if (mThresholdsShown)
        paintThresholds(painter);
    paintSamples(painter);
}

// Dotted lines take longer than all the rest, so they are drawn once for each size.
void OrvgPlotWidget::rebuildBackground()
{
    const qreal ratio = devicePixelRatioF();
    mBackground = QPixmap(qCeil(width() * ratio), qCeil(height() * ratio));
    mBackground.setDevicePixelRatio(ratio);
    mBackground.fill(kBackground);
    QPainter painter(&mBackground);
    paintGrid(painter);
}

void OrvgPlotWidget::paintGrid(QPainter& painter) const
{
    QPen pen(Qt::gray, 1, Qt::DotLine, Qt::FlatCap);
    painter.setPen(pen);
    for (const int x : geometryInPixels().gridColumns())
        painter.drawLine(x, 0, x, height());
    // Each line's dots stand beside those of its neighbours, or the dense ones would make bars that
    // look like samples.
    for (const int y : geometryInPixels().gridRows()) {
        pen.setDashOffset(std::fmod(pen.dashOffset() + 1, kDotPeriod));
        painter.setPen(pen);
        painter.drawLine(0, y, width(), y);
    }
}

// Results may come many times faster than the screen shows them.
void OrvgPlotWidget::invalidate()
{
    mIsStale = true;
    update();
}

void OrvgPlotWidget::rebuildCurves()
{
    mIsStale = false;
    mThresholdVertices = geometryInPixels().thresholdVertices(mThresholds);
    mPoints = geometryInPixels().samplePoints(mSamples, mShownValue);
    mSticks.clear();
    for (const QPoint& point : mPoints)
        mSticks.emplace_back(point, QSize(1, height() - point.y()));
}

PlotGeometry OrvgPlotWidget::geometryInPixels() const
{
    return PlotGeometry(size());
}

void OrvgPlotWidget::paintThresholds(QPainter& painter) const
{
    const QPen pen(mThresholdColor, 2);
    painter.setBrush(Qt::gray);
    QPoint previous(0, mThresholdVertices.front().y());
    for (int k = 0; k < static_cast<int>(mThresholdVertices.size()); ++k) {
        const QPoint vertex = mThresholdVertices[static_cast<std::size_t>(k)];
        if (k == mMarkedColumn) {
            painter.setPen(Qt::white);
            drawCircle(painter, vertex, kMarkRadius);
        }
        painter.setPen(pen);
        drawCircle(painter, vertex, kVertexRadius);
        painter.drawLine(previous, vertex);
        previous = vertex;
    }
    painter.drawLine(previous, QPoint(width(), previous.y()));
}

void OrvgPlotWidget::paintSamples(QPainter& painter) const
{
    if (mPoints.empty())
        return;
    painter.setPen(Qt::yellow);
    painter.setBrush(Qt::yellow);
    drawCircle(painter, mPoints.front(), kSampleRadius);
    for (const QPoint& point : std::span(mPoints).subspan(1)) {
        // A stick of one pixel stays a dot on the bottom line.
        if (point.y() != height() - 1)
            drawCircle(painter, point, kSampleRadius);
    }
    // Upright lines of one pixel as rectangles: a tenth of the time.
    painter.setPen(Qt::NoPen);
    painter.drawRects(mSticks.data(), static_cast<int>(mSticks.size()));
}
