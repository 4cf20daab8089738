#include "views/freespace/OrvgFreespacesView.h"

OrvgFreespacesView::OrvgFreespacesView(OrvgSensorPositionView*, QWidget* parent) : QWidget(parent)
{
    setWindowTitle(tr("Freespaces"));
}

QByteArray OrvgFreespacesView::saveState() const
{
    return {};
}

bool OrvgFreespacesView::restoreState(const QByteArray&)
{
    return false;
}

void OrvgFreespacesView::onNewFreespacePackage(orv::OrvFreespacePackage) {}
