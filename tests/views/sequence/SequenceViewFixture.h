#pragma once

#include "tests/views/common/EditorFixture.h"
#include "views/sequence/OrvgMseqStepItemModel.h"
#include "views/sequence/OrvgMseqView.h"

#include <QComboBox>

/// A sequence view with a scripted ECU.
class SequenceViewFixture : public EditorFixture<OrvgMseqView, OrvgMseqStepItemModel>
{
public:
    SequenceViewFixture() { view.resize(1100, 320); }

    QString text(int row, int column)
    {
        return model().index(row, column).data(Qt::DisplayRole).toString();
    }

    /// The open editor of the current cell, or null.
    QComboBox* editor()
    {
        return qobject_cast<QComboBox*>(table().indexWidget(table().currentIndex()));
    }

    /// The editor that a double click on the cell opened, or null. The button is still pressed, so
    /// the list is not open yet.
    QComboBox* openEditor(int row, int column)
    {
        pressTwice(row, column);
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
};
