#include "views/live/OrvgLiveView.h"

OrvgLiveView::OrvgLiveView(QWidget* parent) : QWidget(parent) {}

QByteArray OrvgLiveView::saveState() const
{
    return {};
}

bool OrvgLiveView::restoreState(const QByteArray&)
{
    return false;
}

void OrvgLiveView::onNewMeasResult(orv::OrvMeasurementResult) {}
