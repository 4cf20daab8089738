#pragma once

#include "tests/views/freespace/picture.h"
#include "tests/views/positions/PositionViewFixture.h"
#include "views/freespace/OrvgFreespacesView.h"
#include "views/freespace/OrvgSensorParameterWidget.h"

#include <QTableWidget>
#include <QToolButton>

/// The freespaces view on top of a position view that holds the positions of a car.
class FreespacesFixture
{
public:
    FreespacesFixture()
    {
        positions.model().setPositions(PositionViewFixture::aCar());
        view.resize(1000, 600);
        view.show();
    }

    template<typename Widget>
    Widget& part(const char* name)
    {
        return *view.findChild<Widget*>(QLatin1String(name));
    }

    OrvgFreespaceGraphicsView& picture() { return part<OrvgFreespaceGraphicsView>("graphicsView"); }
    OrvgSensorParameterWidget& parameters()
    {
        return *view.findChild<OrvgSensorParameterWidget*>();
    }
    void click(const char* button) { part<QToolButton>(button).click(); }
    void setEditMode(bool on) { part<QToolButton>("mModeButton").setChecked(on); }
    void select(std::uint8_t id) { picture::sensor(picture(), id)->setSelected(true); }

    QString cell(int row, int column)
    {
        return part<QTableWidget>("mTable").item(row, column)->text();
    }
    QStringList row(int row) { return {cell(row, 0), cell(row, 1), cell(row, 2)}; }

    /// The columns of the position table that are selected as a whole.
    QList<int> selectedColumns()
    {
        QList<int> columns;
        for (const QModelIndex& column : positions.table().selectionModel()->selectedColumns())
            columns << column.column();
        return columns;
    }

    PositionViewFixture positions;
    OrvgFreespacesView view{&positions.view};
};
