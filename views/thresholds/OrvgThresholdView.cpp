#include "views/thresholds/OrvgThresholdView.h"

OrvgThresholdView::OrvgThresholdView(QWidget* parent) : QWidget(parent) {}

void OrvgThresholdView::setCtrlClient(orv::OrvCtrlClient*) {}

QByteArray OrvgThresholdView::saveState() const
{
    return {};
}

bool OrvgThresholdView::restoreState(const QByteArray&)
{
    return false;
}

void OrvgThresholdView::onNewMeasResult(orv::OrvMeasurementResult) {}

void OrvgThresholdView::writeXml(QXmlStreamWriter&) {}

bool OrvgThresholdView::readFromXml(QXmlStreamReader&, std::string&)
{
    return false;
}

bool OrvgThresholdView::onReceiveAll(bool)
{
    return false;
}

bool OrvgThresholdView::onTransmitAll(bool)
{
    return false;
}
