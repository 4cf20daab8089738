#pragma once

#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/SensorMountPosition.h"
#include "orv_decoder/constants.h"
#include "views/freespace/FreespaceAges.h"

#include <QGraphicsScene>
#include <QVector>

#include <array>
#include <cstdint>

class FreespaceItem;
class OrvgSensorItem;

/// The vehicle's origin, one marker for each sensor seen so far and the freespaces of the sensors
/// that report. Holds at most one item of each kind for a sensor, whatever arrives.
class FreespaceScene : public QGraphicsScene
{
    Q_OBJECT

public:
    explicit FreespaceScene(QObject* parent = nullptr);

    /// Draws a package; entries of unknown sensors are passed over.
    void draw(const orv::OrvFreespacePackage& package);
    void removeFreespaces();

    /// Places the markers of all sensors.
    void setPositions(const orv::SensorMountPositions& positions);

    /// Places the marker of one sensor, 0..11.
    void setPosition(std::uint8_t id, const orv::OrvSensorPosition& position);

    /// What the markers cover; null when there are none.
    QRectF markersRect() const;

    /// In ascending order.
    QVector<OrvgSensorItem*> selectedSensors() const;

    /// The selected sensor with the lowest number, or null.
    OrvgSensorItem* selectedSensor() const { return selectedSensors().value(0); }

    /// Selects the sensor after (step 1) or before (step -1) the selected one instead of it, round
    /// in a circle.
    void selectNeighbour(int step);

    /// Ends what the mouse does with the markers, when it will not get to them any more.
    void forgetMouse();

private:
    void drawVehicleOrigin();
    void removeOutdated(const orv::OrvFreespacePackage& package);
    void placeFreespace(const orv::OrvFreespaceEntry& entry);
    void raise(std::uint8_t id);
    void removeFreespace(std::size_t id);
    OrvgSensorItem* neighbour(int step) const;

    // The items belong to the scene; null until they are there.
    std::array<OrvgSensorItem*, orv::kSensorCount> mSensorItems = {};
    std::array<FreespaceItem*, orv::kSensorCount> mFreespaceItems = {};
    FreespaceAges mAges;
};
