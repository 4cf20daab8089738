#include "views/plot/OrvgPlotWidget.h"

OrvgPlotWidget::OrvgPlotWidget(QWidget* parent) : QWidget(parent) {}

void OrvgPlotWidget::addData(const std::vector<orv::OrvSensorEcho>&) {}

void OrvgPlotWidget::clear() {}

void OrvgPlotWidget::setMaximumMode(bool) {}

void OrvgPlotWidget::setThresholds(const orv::ThresholdEntries&) {}

void OrvgPlotWidget::setThresholdsShown(bool) {}

void OrvgPlotWidget::setThresholdColor(const QColor&) {}

void OrvgPlotWidget::setMarkedColumn(int) {}

void OrvgPlotWidget::save(const QString&) {}

void OrvgPlotWidget::resetData() {}
