#pragma once

#include "ecu/configuration/SequenceStep.h"
#include "orv_decoder/MseqStep.h"

#include <QAbstractTableModel>
#include <QVector>

#include <span>
#include <vector>

/// The steps of the measurement sequence: a row for each step, a column for the step's mode and
/// one for each sensor. Cells show words; their edit value is set as the index of the word in the
/// order of StepMode and SensorState.
class OrvgMseqStepItemModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// The columns behind it belong to the sensors.
    static constexpr int kModeColumn = 0;

    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Takes the edit role alone. An integer that stands for no word changes nothing.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    /// Inserts a step in amplitude modulation with every sensor disabled. Like the two below it
    /// ignores a row that cannot be: there are at most 12 steps.
    void insertEmptyStep(int row);
    /// Inserts a copy of the step of this row above it.
    void cloneStep(int row);
    void removeStep(int row);

    /// Replaces all steps; those beyond the twelfth are dropped.
    void setSteps(std::span<const orv::MseqStep> records);
    std::vector<orv::MseqStep> steps() const;

private:
    bool hasStep(int row) const { return row >= 0 && row < mSteps.size(); }
    void insertStep(int row, const SequenceStep& step);

    QVector<SequenceStep> mSteps;
};
