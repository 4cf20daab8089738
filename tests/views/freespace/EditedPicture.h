#pragma once

#include "tests/views/freespace/picture.h"

#include <QTimeLine>

/// A picture in edit mode, 900 x 600, with all sensors 1.5 m apart on the vehicle's x axis.
class EditedPicture : public OrvgFreespaceGraphicsView
{
public:
    EditedPicture()
    {
        orv::SensorMountPositions positions;
        for (std::size_t id = 0; id < positions.size(); ++id)
            positions[id].x = static_cast<std::int16_t>(1500 * static_cast<int>(id) - 8000);
        setPositions(positions);
        resize(900, 600);
        onSetEditMode(true);
        setInteractive(true);
        show();
    }

    OrvgSensorItem& sensor(std::uint8_t id) { return *picture::sensor(*this, id); }

    QPoint pixel(std::uint8_t id) { return mapFromScene(sensor(id).pos()) + QPoint(4, 0); }

    double zoom() const { return transform().m11(); }

    auto runningZooms() const { return findChildren<QTimeLine*>().size(); }

    // How many pixels the place at `pixel` moves while a zoom runs.
    template<typename Zoom>
    double driftAfterZoom(Zoom start, QPoint pixel)
    {
        const QPointF place = mapToScene(pixel);
        start();
        for (int step = 0; step < 15; ++step)
            scalingTime();
        return ((mapToScene(pixel) - place) * zoom()).manhattanLength();
    }

    double zoomOfNextStep()
    {
        const double before = zoom();
        scalingTime();
        return zoom() / before;
    }
};
