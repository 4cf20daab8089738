#include "views/positions/OrvgSensorPositionView.h"

OrvgSensorPositionView::OrvgSensorPositionView(QWidget* parent) : QWidget(parent) {}

void OrvgSensorPositionView::setCtrlClient(orv::OrvCtrlClient*) {}

orv::SensorMountPositions OrvgSensorPositionView::positions() const
{
    return {};
}

void OrvgSensorPositionView::setPosition(std::uint8_t, const orv::OrvSensorPosition&) {}

bool OrvgSensorPositionView::onReadSensorPositionTbClicked(bool)
{
    return false;
}

bool OrvgSensorPositionView::onWriteSensorPositionTbClicked(bool)
{
    return false;
}

void OrvgSensorPositionView::setEditMode(bool) {}

void OrvgSensorPositionView::writeXml(QXmlStreamWriter&) {}

bool OrvgSensorPositionView::readFromXml(QXmlStreamReader&, std::string&)
{
    return false;
}
