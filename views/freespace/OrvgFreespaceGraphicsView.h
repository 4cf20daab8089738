#pragma once

#include "orv_decoder/SensorMountPosition.h"
#include "orv_decoder/metatypes.h"
#include "views/common/accessible_picture.h"

#include <QGraphicsView>

#include <cstdint>

class AnimatedZoom;
class FreespaceScene;
class MarkerEditor;

/// Draws the surroundings of the vehicle from above, as its sensors see them. In edit mode the
/// sensors can be selected (mouse, Page Up, Page Down), moved (mouse, arrow keys) and turned
/// (wheel) instead. The picture can be scrolled, dragged (middle button), zoomed (Ctrl + wheel, +,
/// -) and brought back (Home) in both modes.
class OrvgFreespaceGraphicsView : public QGraphicsView
{
    Q_OBJECT
    TARVIO_ACCESSIBLE_PICTURE

public:
    explicit OrvgFreespaceGraphicsView(QWidget* parent = nullptr);
    ~OrvgFreespaceGraphicsView() override;

    bool isEditMode() const { return mEditMode; }

    /// Places the markers of all sensors.
    void setPositions(const orv::SensorMountPositions& positions);

    /// Places the marker of one sensor, 0..11, without announcing it.
    void setPosition(std::uint8_t sensorId, const orv::OrvSensorPosition& position);

    /// Moves the selected sensor; does nothing when none is selected.
    void setSelectedPosition(const orv::OrvSensorPosition& position);

    /// Shows all markers; without any the vehicle's origin, as the view does at first.
    void showVehicle();

signals:
    /// A sensor was selected, moved or turned by the user; id 255 when none is selected any more.
    /// During a drag the position is the one before the latest mouse move; its end makes up for it.
    void fspSelected(uint8_t fspId, orv::OrvSensorPosition sensorPosition);

public slots:
    void scalingTime();
    void animationFinished();
    /// Draws a package, but not in edit mode. Entries of unknown sensors are passed over.
    void onNewFreespacePackage(const orv::OrvFreespacePackage& fspPackage);
    /// In edit mode the mouse and the keys reach the sensors, and there are no freespaces.
    void onSetEditMode(bool state);
    void onSelectionChanged();
    void onZoomIn();
    void onZoomOut();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    // What stays in sight when the size of the view changes.
    enum class Framing { Origin, Vehicle, PlaceOfUser };

    void connectSignals();
    bool takeKey(const QKeyEvent& event);
    bool editByKey(const QKeyEvent& event);
    void bringIntoSight(const QRectF& place);
    void zoom(int steps);
    void forgetMouse();
    void paintFocus();

    FreespaceScene* mScene; // like the others a child, or a child of one
    MarkerEditor* mEditor;
    AnimatedZoom* mZoom;
    Framing mFraming = Framing::Origin;
    bool mEditMode = false;
};
