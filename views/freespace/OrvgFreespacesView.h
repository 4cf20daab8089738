#pragma once

#include "orv_decoder/metatypes.h"

#include <QByteArray>
#include <QWidget>

#include <cstdint>
#include <memory>

class OrvgSensorParameterWidget;
class OrvgSensorPositionView;

namespace Ui {
class OrvgFreespacesView;
}

/// Shows the freespaces of the sensors and lets the user place the sensors in edit mode, in step
/// with the table of the sensor position view.
class OrvgFreespacesView : public QWidget
{
    Q_OBJECT

public:
    /// The position view is borrowed and must not be null.
    explicit OrvgFreespacesView(OrvgSensorPositionView* positions, QWidget* parent = nullptr);
    ~OrvgFreespacesView() override;

    /// How the splitter divides the view.
    QByteArray saveState() const;
    bool restoreState(const QByteArray& state);

signals:
    void editModeActivated();
    /// The picture takes over the positions of the table.
    void loadPositions();

public slots:
    void onLoadButtonClicked();
    void onNewFreespacePackage(const orv::OrvFreespacePackage& fspPackage);
    void onSetEditMode(bool state);
    void onSensorSelected(uint8_t fspId, orv::OrvSensorPosition sensorPosition);
    void onSensorParameterChanged(orv::OrvSensorPosition sensorPosition);

private:
    void createParameterWidget();
    void createDistanceCells();
    void keepWidthInBothModes();
    void connectSignals();
    void showMode(bool editMode);
    void placeSensors();
    void followPositions(int firstSensor, int lastSensor);
    void showDistances(const orv::OrvFreespaceEntry& entry);

    OrvgSensorPositionView* mPositions; // borrowed from the main window
    std::unique_ptr<Ui::OrvgFreespacesView> mUi;
    OrvgSensorParameterWidget* mParameters = nullptr;
    std::uint8_t mSelectedSensor;
};
