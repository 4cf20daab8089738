#pragma once

#include "orv_decoder/OrvCtrlClient.h"
#include "tests/support/CursorWatchingSocket.h"
#include "views/sequence/OrvgMseqStepItemModel.h"
#include "views/sequence/OrvgMseqView.h"

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QTableView>
#include <QToolButton>
#include <QtTest>

/// A sequence view with a scripted ECU, its parts found by their names.
class SequenceViewFixture
{
public:
    SequenceViewFixture() { view.resize(1100, 320); }

    template<typename Widget>
    Widget& part(const char* name)
    {
        return *view.findChild<Widget*>(QLatin1String(name));
    }

    QTableView& table() { return part<QTableView>("mseqTable"); }
    OrvgMseqStepItemModel& model() { return static_cast<OrvgMseqStepItemModel&>(*table().model()); }
    QToolButton& button(const char* name) { return part<QToolButton>(name); }
    void click(const char* name) { QTest::mouseClick(&button(name), Qt::LeftButton); }

    void setCurrent(int row, int column = 0)
    {
        table().setCurrentIndex(model().index(row, column));
    }

    QString text(int row, int column)
    {
        return model().index(row, column).data(Qt::DisplayRole).toString();
    }

    /// The open editor of the current cell, or null.
    QComboBox* editor()
    {
        return qobject_cast<QComboBox*>(table().indexWidget(table().currentIndex()));
    }

    /// A double click on the cell as the window system delivers it.
    void doubleClick(int row, int column)
    {
        view.show();
        const QModelIndex cell = model().index(row, column);
        table().scrollTo(cell);
        const QPoint center = table().visualRect(cell).center();
        QTest::mouseDClick(view.windowHandle(), Qt::LeftButton, {},
                           table().viewport()->mapTo(&view, center));
    }

    /// The editor that a double click on the cell opened, or null. The button is still pressed, so
    /// the list is not open yet.
    QComboBox* openEditor(int row, int column)
    {
        view.show();
        const QModelIndex cell = model().index(row, column);
        table().scrollTo(cell);
        const QPoint center = table().visualRect(cell).center();
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, center);
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, center);
        return editor();
    }

    /// Step i sends with sensor i, its neighbours listen.
    static std::vector<orv::MseqStep> steps(std::size_t count)
    {
        std::vector<orv::MseqStep> result(count);
        for (std::size_t i = 0; i < count; ++i)
            result[i] = {.valid = true,
                         .activeMask = static_cast<std::uint16_t>(1U << i),
                         .passiveMask = static_cast<std::uint16_t>(7U << i >> 1 & 0x0FFF)};
        return result;
    }

    /// What the ECU answers when it holds these steps.
    static std::vector<std::uint8_t> reply(const std::vector<orv::MseqStep>& steps)
    {
        std::vector<std::uint8_t> bytes = {static_cast<std::uint8_t>(steps.size())};
        for (const orv::MseqStep& step : steps) {
            const std::vector<std::uint8_t> block = orv::encodeStep(step);
            bytes.insert(bytes.end(), block.begin(), block.end());
        }
        return bytes;
    }

    CursorWatchingSocket socket;
    orv::OrvCtrlClient client{&socket};
    OrvgMseqView view{nullptr, &client};
    QAbstractItemModelTester tester{&model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};
};
