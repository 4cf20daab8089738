#pragma once

#include "orv_decoder/OrvSensorPosition.h"
#include "orv_decoder/SensorMountPosition.h"

#include <QWidget>

#include <string>

class QXmlStreamReader;
class QXmlStreamWriter;

namespace orv {
class OrvCtrlClient;
}

/// Edits the mount positions of the twelve sensors, reads them from the ECU and writes them.
class OrvgSensorPositionView : public QWidget
{
    Q_OBJECT

public:
    explicit OrvgSensorPositionView(QWidget* parent = nullptr);

    /// The client is borrowed; a null one changes nothing.
    void setCtrlClient(orv::OrvCtrlClient* client);

    orv::SensorMountPositions positions() const;

    /// Moves one sensor to the x, y and direction of `position` and selects its column; an id of
    /// 12 or more clears the selection instead.
    void setPosition(std::uint8_t sensorId, const orv::OrvSensorPosition& position);

public slots:
    bool onReadSensorPositionTbClicked(bool silent = false);
    bool onWriteSensorPositionTbClicked(bool silent = false);
    void setEditMode(bool editMode);
    void writeXml(QXmlStreamWriter& writer);
    bool readFromXml(QXmlStreamReader& reader, std::string& errString);
};
