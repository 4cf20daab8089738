#include "views/plot/OrvgPlotWidget.h"

#include "ecu/store/safe_file.h"

#include <QBuffer>
#include <QMessageBox>
#include <QPainter>
#include <QtMath>

#include <cmath>
#include <utility>

namespace {

constexpr QColor kBackground(50, 55, 50);
constexpr int kMarkRadius = 5;
constexpr int kVertexRadius = 2;
constexpr int kDotPeriod = 3; // of a dotted pen, in widths of the pen

void drawCircle(QPainter& painter, QPoint center, int radius)
{
    painter.drawEllipse(center, radius, radius);
}

} // namespace

OrvgPlotWidget::OrvgPlotWidget(QWidget* parent) : QWidget(parent)
{
    announcePictures();
    setWindowTitle(tr("Form"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    resize(400, 300);
}

void OrvgPlotWidget::setSampleStore(SampleStore store)
{
    mSamples = EchoSamples(store);
    invalidateSamples();
}

void OrvgPlotWidget::addData(const std::vector<orv::OrvSensorEcho>& echoes)
{
    mSamples.add(echoes);
    invalidateSamples();
}

void OrvgPlotWidget::clear()
{
    mSamples.clear();
}

void OrvgPlotWidget::setMaximumMode(bool maximum)
{
    mShownValue = maximum ? EchoValue::Maximum : EchoValue::Mean;
    invalidateSamples();
}

void OrvgPlotWidget::setThresholds(const orv::ThresholdEntries& entries)
{
    mThresholds = entries;
    invalidateBackground();
}

void OrvgPlotWidget::setThresholdsShown(bool shown)
{
    mThresholdsShown = shown;
    invalidateBackground();
}

void OrvgPlotWidget::setThresholdColor(const QColor& color)
{
    mThresholdColor = color;
    invalidateBackground();
}

void OrvgPlotWidget::setMarkedColumn(int column)
{
    mMarkedColumn = column;
    invalidateBackground();
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
    invalidateSamples();
}

void OrvgPlotWidget::resizeEvent(QResizeEvent*)
{
    invalidateBackground();
    invalidateSamples();
}

void OrvgPlotWidget::paintEvent(QPaintEvent*)
{
    if (mPicture.isNull() || mPicture.devicePixelRatio() != devicePixelRatioF()) {
        rebuildBackground();
        mIsStale = true;
    }
    if (std::exchange(mIsStale, false))
        mPicture.show(sticks());
    QPainter(this).drawPixmap(0, 0, mPicture.pixmap());
}

// Dotted lines and circles take longer than all the rest, so they are not drawn with each result.
void OrvgPlotWidget::invalidateBackground()
{
    mPicture.clear();
    update();
}

void OrvgPlotWidget::rebuildBackground()
{
    const qreal ratio = devicePixelRatioF();
    QPixmap background(qCeil(width() * ratio), qCeil(height() * ratio));
    background.setDevicePixelRatio(ratio);
    background.fill(kBackground);
    {
        QPainter painter(&background);
        paintGrid(painter);
        if (mThresholdsShown)
            paintThresholds(painter);
    }
    mPicture.setBackground(background);
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

void OrvgPlotWidget::paintThresholds(QPainter& painter) const
{
    const PlotGeometry::Vertices vertices = geometryInPixels().thresholdVertices(mThresholds);
    const QPen pen(mThresholdColor, 2);
    painter.setBrush(Qt::gray);
    QPoint previous(0, vertices.front().y());
    for (int k = 0; k < static_cast<int>(vertices.size()); ++k) {
        const QPoint vertex = vertices[static_cast<std::size_t>(k)];
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

// Results may come many times faster than the screen shows them.
void OrvgPlotWidget::invalidateSamples()
{
    mIsStale = true;
    update();
}

std::vector<Stick> OrvgPlotWidget::sticks() const
{
    std::vector<Stick> sticks;
    // A stick of one pixel stays a dot on the bottom line, unless it is the first.
    for (const QPoint& point : geometryInPixels().samplePoints(mSamples, mShownValue))
        sticks.push_back({.top = point, .hasCircle = sticks.empty() || point.y() != height() - 1});
    return sticks;
}

PlotGeometry OrvgPlotWidget::geometryInPixels() const
{
    return PlotGeometry(size());
}
