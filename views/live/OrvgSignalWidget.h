#pragma once

#include "orv_decoder/OrvMeasurementResult.h"
#include "views/common/accessible_picture.h"

#include <QWidget>

#include <vector>

class QPainter;

/// One echo picture: each echo is a horizontal line, the later the higher, the stronger the longer.
///
/// The pictures of a timeline are clickable: they show the sensor's role by their frame and a hand
/// as cursor while they have an echo. The large picture of the live view is not.
class OrvgSignalWidget : public QWidget
{
    Q_OBJECT
    TARVIO_ACCESSIBLE_PICTURE

public:
    /// The large picture: no echoes, not clickable.
    explicit OrvgSignalWidget(QWidget* parent = nullptr);

    /// A picture in a timeline: clickable.
    OrvgSignalWidget(const std::vector<orv::OrvSensorEcho>& echos, QWidget* parent);

    /// Takes over the echoes into the buffer that is there: nothing is allocated unless there are
    /// more of them than this picture ever had.
    void setSignal(const std::vector<orv::OrvSensorEcho>& echos);
    void setRole(orv::OrvSensorRole role);

    /// Takes over the role and the echoes of another picture.
    void copyFrom(const OrvgSignalWidget& other);

    /// Paints the picture with its top left corner at the painter's origin.
    void paint(QPainter& painter) const;

    const std::vector<orv::OrvSensorEcho>& echoes() const { return mEchoes; }
    orv::OrvSensorRole role() const { return mRole; }
    bool isClickable() const { return mIsClickable; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void updateCursor();
    void paintEmptySlot(QPainter& painter) const;
    void paintRoleFrame(QPainter& painter) const;
    void paintEchoes(QPainter& painter) const;

    orv::OrvSensorRole mRole = orv::OrvSensorRole::NotInvolved;
    bool mIsClickable = false;
    std::vector<orv::OrvSensorEcho> mEchoes;
};
