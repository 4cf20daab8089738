#include "bench/plot_comparison.h"

#include <qcustomplot.h>

namespace {

/// The scene drawn by QCustomPlot, set to be as fast as it can.
class QCustomPlotRival
{
public:
    QCustomPlotRival(const PlotScene& scene, QSize size)
    {
        mPlot.setNotAntialiasedElements(QCP::aeAll);
        mPlot.setPlottingHints(QCP::phFastPolylines | QCP::phCacheLabels);
        mPlot.setBackground(scene.background);
        mPlot.axisRect()->setAutoMargins(QCP::msNone);
        mPlot.axisRect()->setMargins({});
        drawGrid(*mPlot.xAxis, scene.gridTimes, scene.timeRangeUs);
        drawGrid(*mPlot.yAxis, scene.gridLevels, 1);
        drawCurve(scene);
        drawSticks(scene);
        mPlot.resize(size);
        mPlot.replot(QCustomPlot::rpImmediateRefresh);
    }

    QWidget& widget() { return mPlot; }

    void setStick(int index, const QPointF& point)
    {
        (mSticks->data()->begin() + index)->value = point.y();
    }

    void paint()
    {
        mSticks->layer()->replot();
        mPlot.repaint();
    }

private:
    static void drawGrid(QCPAxis& axis, const QVector<double>& places, double end)
    {
        const auto ticker = QSharedPointer<QCPAxisTickerText>::create();
        for (const double place : places)
            ticker->addTick(place, {});
        axis.setTicker(ticker);
        axis.setRange(0, end);
        axis.setTickLabels(false);
        axis.setSubTicks(false);
        axis.setTickLength(0, 0);
        axis.setTickPen(Qt::NoPen);
        axis.setBasePen(Qt::NoPen);
        axis.grid()->setPen(QPen(Qt::gray, 1, Qt::DotLine, Qt::FlatCap));
        axis.grid()->setZeroLinePen(Qt::NoPen);
    }

    // Copied to each stick: a fifth of the time of drawing it anew.
    static QPixmap circle(const QColor& colour)
    {
        QPixmap picture(3, 3);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setPen(colour);
        painter.setBrush(colour);
        painter.drawEllipse(QPoint(1, 1), 1, 1);
        return picture;
    }

    void drawCurve(const PlotScene& scene)
    {
        const QPen pen(scene.curveColour, 2);
        QCPGraph* curve = mPlot.addGraph();
        for (const QPointF& vertex : scene.curve)
            curve->addData(vertex.x(), vertex.y());
        curve->setPen(pen);
        curve->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssCircle, pen, Qt::gray, 4));
    }

    void drawSticks(const PlotScene& scene)
    {
        mSticks = mPlot.addGraph();
        // A layer with a buffer of its own, so that the grid is not drawn again with each
        // result.
        mPlot.addLayer("samples", mPlot.layer("main"));
        mPlot.layer("samples")->setMode(QCPLayer::lmBuffered);
        mSticks->setLayer("samples");
        for (const QPointF& sample : scene.sticks)
            mSticks->addData(sample.x(), sample.y());
        mSticks->setLineStyle(QCPGraph::lsImpulse);
        mSticks->setPen(QPen(scene.stickColour, 1));
        mSticks->setScatterStyle(QCPScatterStyle(circle(scene.stickColour)));
    }

    QCustomPlot mPlot;
    QCPGraph* mSticks = nullptr; // owned by the plot
};

} // namespace

int main(int argc, char** argv)
{
    return plot_comparison::run<QCustomPlotRival>(argc, argv, "qcustomplot");
}
