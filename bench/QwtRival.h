#pragma once

#include <QSize>

#include <memory>

struct PlotScene;
class QPointF;
class QWidget;
class QwtPlot;

/// The scene drawn by Qwt, set to be as fast as it can.
class QwtRival
{
public:
    QwtRival(const PlotScene& scene, QSize size);
    ~QwtRival();

    QWidget& widget();
    void setStick(int index, const QPointF& point);
    void paint();

private:
    class Samples;

    void createCanvas(const PlotScene& scene);
    void drawGrid(const PlotScene& scene);
    void drawCurve(const PlotScene& scene);
    void drawSticks(const PlotScene& scene);

    std::unique_ptr<QwtPlot> mPlot;
    Samples* mSamples; // owned by its curve
};
