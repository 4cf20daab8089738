#pragma once

#include "orv_decoder/OrvMeasurementResult.h"
#include "orv_decoder/SensorThreshold.h"

#include <QColor>
#include <QWidget>

#include <vector>

/// Draws echo amplitude against time of flight for one sensor, with an optional threshold curve.
class OrvgPlotWidget : public QWidget
{
    Q_OBJECT

public:
    explicit OrvgPlotWidget(QWidget* parent = nullptr);

    /// Adds the echoes whose time of flight is not 0 to the samples.
    void addData(const std::vector<orv::OrvSensorEcho>& echoes);

    /// Empties the samples without redrawing.
    void clear();

    /// true: the maximum of each time of flight; false: the mean.
    void setMaximumMode(bool maximum);

    void setThresholds(const orv::ThresholdEntries& entries);
    void setThresholdsShown(bool shown);
    void setThresholdColor(const QColor& color);

    /// Marks one vertex of the threshold curve; -1 marks none.
    void setMarkedColumn(int column);

    /// Writes the samples as CSV; a file that cannot be written is told in a warning box.
    void save(const QString& fileName);

public slots:
    /// Empties the samples and redraws.
    void resetData();
};
