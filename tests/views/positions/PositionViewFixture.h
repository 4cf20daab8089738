#pragma once

#include "orv_decoder/OrvCtrlClient.h"
#include "tests/support/CursorWatchingSocket.h"
#include "views/positions/OrvgSensorPositionItemModel.h"
#include "views/positions/OrvgSensorPositionView.h"

#include <QAbstractItemModelTester>
#include <QDoubleSpinBox>
#include <QTableView>
#include <QToolButton>
#include <QtTest>

/// A position view with a scripted ECU, its parts found by their names.
class PositionViewFixture
{
public:
    PositionViewFixture()
    {
        view.resize(1000, 600);
        view.setCtrlClient(&client);
    }

    template<typename Widget>
    Widget& part(const char* name)
    {
        return *view.findChild<Widget*>(QLatin1String(name));
    }

    QTableView& table() { return *view.findChild<QTableView*>(); }
    OrvgSensorPositionItemModel& model()
    {
        return static_cast<OrvgSensorPositionItemModel&>(*table().model());
    }
    QToolButton& readButton() { return part<QToolButton>("readSensorPositionTb"); }
    QToolButton& writeButton() { return part<QToolButton>("writeSensorPositionTb"); }

    /// The editor that a double click on the cell opened, or null.
    QDoubleSpinBox* openEditor(int row, int column)
    {
        view.show();
        const QModelIndex cell = model().index(row, column);
        table().scrollTo(cell);
        const QPoint center = table().visualRect(cell).center();
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, center);
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, center);
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

    CursorWatchingSocket socket;
    orv::OrvCtrlClient client{&socket};
    OrvgSensorPositionView view;
    QAbstractItemModelTester tester{&model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};
};
