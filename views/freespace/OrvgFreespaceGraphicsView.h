#pragma once

#include "orv_decoder/SensorMountPosition.h"
#include "orv_decoder/metatypes.h"

#include <QGraphicsView>

#include <cstdint>

class FreespaceScene;
class OrvgSensorItem;

/// Draws the surroundings of the vehicle from above, as its sensors see them. In edit mode the
/// sensors can be selected (mouse, Page Up, Page Down), dragged and turned (wheel) instead.
class OrvgFreespaceGraphicsView : public QGraphicsView
{
    Q_OBJECT

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

signals:
    /// A sensor was selected, moved or turned by the user; id 255 when none is selected any more.
    /// During a drag the position is the one before the latest mouse move; its end makes up for it.
    void fspSelected(uint8_t fspId, orv::OrvSensorPosition sensorPosition);

public slots:
    void scalingTime();
    void animationFinished();
    /// Draws a package, but not in edit mode. Entries of unknown sensors are passed over.
    void onNewFreespacePackage(orv::OrvFreespacePackage fspPackage);
    /// In edit mode the mouse and the keys reach the sensors, and there are no freespaces.
    void onSetEditMode(bool state);
    void onSelectionChanged();
    void onZoomIn();
    void onZoomOut();

protected:
    bool event(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void announce(const OrvgSensorItem& sensor);
    void endDrag();
    void turn(OrvgSensorItem& sensor, int wheelDelta);
    void zoom(int steps);
    void forgetMouse();
    bool showsOriginInMiddle(QSize viewportSize) const;

    FreespaceScene* mScene; // a child
    orv::OrvSensorPosition mAnnouncedPosition;
    QPoint mZoomAnchor;
    int mPendingZoomSteps = 0;
    bool mEditMode = false;
    bool mDragging = false;
};
