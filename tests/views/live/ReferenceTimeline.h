#pragma once

#include "orv_decoder/OrvMeasurementResult.h"

#include <QFrame>
#include <QList>
#include <QWidget>

#include <vector>

class QHBoxLayout;

/// What one slot of a timeline shows, painted primitive by primitive with nothing kept.
class ReferenceSlot : public QWidget
{
public:
    using QWidget::QWidget;

    std::vector<orv::OrvSensorEcho> echoes;
    orv::OrvSensorRole role = orv::OrvSensorRole::NotInvolved;

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A timeline that is slow and plain: a widget for each slot, laid out by a box layout, each
/// painted anew with each result. A timeline has to look like it to the pixel.
class ReferenceTimeline : public QFrame
{
public:
    explicit ReferenceTimeline(QWidget* parent = nullptr);

    void addMeasurement(const std::vector<orv::OrvSensorEcho>& echoes, orv::OrvSensorRole role);

private:
    void prependSlot();

    QHBoxLayout* mLayout;
    QList<ReferenceSlot*> mSlots; // oldest first
};
