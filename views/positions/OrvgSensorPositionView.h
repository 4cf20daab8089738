#pragma once

#include "orv_decoder/OrvSensorPosition.h"
#include "orv_decoder/SensorMountPosition.h"
#include "views/common/EcuExchange.h"

#include <QWidget>

#include <memory>
#include <string>

class OrvgSensorPositionItemModel;
class QXmlStreamReader;
class QXmlStreamWriter;

namespace orv {
class OrvCtrlClient;
}

namespace Ui {
class OrvgSensorPositionView;
}

/// Edits the mount positions of the twelve sensors, reads them from the ECU and writes them.
///
/// Exchanges with the ECU block. A `silent` call asks nothing and shows no failure. A value that
/// is still being typed counts as entered when the positions are read, written or saved.
class OrvgSensorPositionView : public QWidget
{
    Q_OBJECT

public:
    explicit OrvgSensorPositionView(QWidget* parent = nullptr);
    ~OrvgSensorPositionView() override;

    /// The client is borrowed; a null one changes nothing.
    void setCtrlClient(orv::OrvCtrlClient* client);

    orv::SensorMountPositions positions() const;
    void setPositions(const orv::SensorMountPositions& positions);

    /// Moves one sensor to the x, y and direction of `position` and selects its column; an id of
    /// 12 or more clears the selection instead.
    void setPosition(std::uint8_t sensorId, const orv::OrvSensorPosition& position);

signals:
    /// Something of the sensors of this range, 0..11, changed: read, imported, typed or moved.
    void positionsChanged(int firstSensor, int lastSensor);

public slots:
    /// False without a client, when the user declines and when the exchange failed.
    bool onReadSensorPositionTbClicked(bool silent = false);
    bool onWriteSensorPositionTbClicked(bool silent = false);
    /// True while the positions are edited elsewhere: the table is read-only and has no buttons.
    void setEditMode(bool editMode);
    /// Writes the content of the open section of a settings file.
    void writeXml(QXmlStreamWriter& writer);
    /// Takes the positions of the current section; on failure the model is unchanged.
    bool readFromXml(QXmlStreamReader& reader, std::string& errString);

private:
    void setUpTable();
    void connectSignals();
    OrvgSensorPositionItemModel& editedModel();

    std::unique_ptr<Ui::OrvgSensorPositionView> mUi;
    OrvgSensorPositionItemModel* mModel;
    EcuExchange mEcu{this};
};
