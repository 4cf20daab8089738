#include "bench/QwtRival.h"

#include "bench/PlotScene.h"

#include <QPen>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>
#include <qwt_scale_div.h>
#include <qwt_symbol.h>

// The samples where the curve reads them, so that a result changes them without a copy.
class QwtRival::Samples : public QwtArraySeriesData<QPointF>
{
public:
    explicit Samples(const PlotScene& scene)
        : QwtArraySeriesData(scene.sticks), mBounds(0, 0, scene.timeRangeUs, 1)
    {}

    void set(int index, const QPointF& sample) { d_samples[index] = sample; }

    QRectF boundingRect() const override { return mBounds; }

private:
    QRectF mBounds;
};

QwtRival::QwtRival(const PlotScene& scene, QSize size)
    : mPlot(std::make_unique<QwtPlot>()), mSamples(new Samples(scene))
{
    createCanvas(scene);
    drawGrid(scene);
    drawCurve(scene);
    drawSticks(scene);
    mPlot->resize(size);
    mPlot->replot();
}

QwtRival::~QwtRival() = default;

QWidget& QwtRival::widget()
{
    return *mPlot;
}

void QwtRival::setStick(int index, const QPointF& point)
{
    mSamples->set(index, point);
}

void QwtRival::paint()
{
    mPlot->replot();
}

// Without a second buffer below the window's own: a plot that changes with each painting is faster
// without.
void QwtRival::createCanvas(const PlotScene& scene)
{
    auto* canvas = new QwtPlotCanvas(mPlot.get());
    canvas->setPaintAttribute(QwtPlotCanvas::BackingStore, false);
    canvas->setPaintAttribute(QwtPlotCanvas::Opaque, true);
    canvas->setPaintAttribute(QwtPlotCanvas::ImmediatePaint, true);
    canvas->setFrameStyle(QFrame::NoFrame);
    mPlot->setCanvas(canvas);
    mPlot->setCanvasBackground(scene.background);
    mPlot->setAutoReplot(false);
    mPlot->plotLayout()->setCanvasMargin(0);
    mPlot->enableAxis(QwtPlot::yLeft, false);
    mPlot->enableAxis(QwtPlot::xBottom, false);
}

void QwtRival::drawGrid(const PlotScene& scene)
{
    mPlot->setAxisScaleDiv(QwtPlot::xBottom,
                           QwtScaleDiv(0, scene.timeRangeUs, {}, {}, scene.gridTimes.toList()));
    mPlot->setAxisScaleDiv(QwtPlot::yLeft, QwtScaleDiv(0, 1, {}, {}, scene.gridLevels.toList()));
    auto* grid = new QwtPlotGrid;
    grid->setMajorPen(QPen(Qt::gray, 1, Qt::DotLine, Qt::FlatCap));
    grid->attach(mPlot.get());
}

void QwtRival::drawCurve(const PlotScene& scene)
{
    const QPen pen(scene.curveColour, 2);
    auto* curve = new QwtPlotCurve;
    curve->setPen(pen);
    curve->setSymbol(new QwtSymbol(QwtSymbol::Ellipse, Qt::gray, pen, QSize(4, 4)));
    curve->setSamples(scene.curve);
    curve->attach(mPlot.get());
}

void QwtRival::drawSticks(const PlotScene& scene)
{
    auto* sticks = new QwtPlotCurve;
    sticks->setStyle(QwtPlotCurve::Sticks);
    sticks->setPen(scene.stickColour, 1);
    sticks->setSymbol(
        new QwtSymbol(QwtSymbol::Ellipse, scene.stickColour, QPen(scene.stickColour), QSize(2, 2)));
    sticks->setPaintAttribute(QwtPlotCurve::FilterPoints, true);
    sticks->setData(mSamples);
    sticks->attach(mPlot.get());
}
