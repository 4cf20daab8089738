#pragma once

#include "ecu/recording/EchoSamples.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "orv_decoder/SensorThreshold.h"
#include "views/common/accessible_picture.h"
#include "views/plot/PlotGeometry.h"
#include "views/plot/StickPicture.h"

#include <QColor>
#include <QWidget>

#include <vector>

/// Draws echo amplitude against time of flight for one sensor, with an optional threshold curve.
///
/// Time runs from 0 to 30000 microseconds over the width, amplitude from 0 to full scale over the
/// height. Each time of flight with echoes is one stick.
class OrvgPlotWidget : public QWidget
{
    Q_OBJECT
    TARVIO_ACCESSIBLE_PICTURE

public:
    explicit OrvgPlotWidget(QWidget* parent = nullptr);

    /// What is kept of the samples from now on, without those that are there: everything at first.
    /// A plot that is never saved needs the drawn values alone.
    void setSampleStore(SampleStore store);

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

    /// Writes the samples, everything of which is kept, as CSV; a file that cannot be written is
    /// told in a warning box.
    void save(const QString& fileName);

public slots:
    /// Empties the samples and redraws.
    void resetData();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void invalidateBackground();
    void rebuildBackground();
    void paintGrid(QPainter& painter) const;
    void paintThresholds(QPainter& painter) const;

    void invalidateSamples();
    std::vector<Stick> sticks() const;

    PlotGeometry geometryInPixels() const;

    EchoSamples mSamples;
    EchoValue mShownValue = EchoValue::Maximum;
    orv::ThresholdEntries mThresholds{};
    QColor mThresholdColor;
    int mMarkedColumn = -1;
    bool mThresholdsShown = false;

    StickPicture mPicture; // on grid and thresholds; null when one of them has changed
    bool mIsStale = true;  // the samples have changed
};
