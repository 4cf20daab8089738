#pragma once

#include "tests/views/common/EditorFixture.h"
#include "views/positions/OrvgSensorPositionItemModel.h"
#include "views/positions/OrvgSensorPositionView.h"

#include <QDoubleSpinBox>

/// A position view with a scripted ECU.
class PositionViewFixture
    : public EditorFixture<OrvgSensorPositionView, OrvgSensorPositionItemModel>
{
public:
    PositionViewFixture() { view.resize(1000, 600); }

    QToolButton& readButton() { return button("readSensorPositionTb"); }
    QToolButton& writeButton() { return button("writeSensorPositionTb"); }

    /// The editor that a double click on the cell opened, or null.
    QDoubleSpinBox* openEditor(int row, int column)
    {
        pressTwice(row, column);
        return table().findChild<QDoubleSpinBox*>();
    }

    /// The bumpers of a car, as the ECU reports them for its twelve sensors.
    static orv::SensorMountPositions aCar()
    {
        orv::SensorMountPositions positions;
        constexpr std::array<std::int16_t, 6> kAcross = {850, 650, 240, -240, -650, -850};
        constexpr std::array<std::uint16_t, 6> kFrontYaw = {14564, 6372, 1821, 63716, 59165, 50973};
        constexpr std::array<std::uint16_t, 6> kRearYaw = {18205, 26397, 30948,
                                                           34589, 39140, 47332};
        for (std::size_t i = 0; i < 6; ++i) {
            positions[i] = {
                .x = 3650, .y = kAcross[i], .height = 520, .yaw = kFrontYaw[i], .pitch = 911};
            positions[11 - i] = {
                .x = -900, .y = kAcross[i], .height = 560, .yaw = kRearYaw[i], .pitch = 547};
        }
        return positions;
    }
};
