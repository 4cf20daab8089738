#pragma once

#include <QColor>
#include <QPointF>
#include <QVector>

/// What the compared plots draw: times in microseconds from left to right, amplitudes as fractions
/// of full scale. Understood by C++17 too, which is all that Qwt's headers are.
struct PlotScene
{
    double timeRangeUs = 0;
    QVector<double> gridTimes;
    QVector<double> gridLevels;
    QVector<QPointF> curve;
    QVector<QPointF> sticks;
    QColor background;
    QColor curveColour;
    QColor stickColour;
};
