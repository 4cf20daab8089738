#include "views/sequence/OrvgMseqStepItemModel.h"

#include "ecu/configuration/step_words.h"
#include "orv_decoder/constants.h"

#include <QColor>

#include <algorithm>

namespace {

constexpr int kColumnCount = 1 + orv::kSensorCount;
constexpr int kMaxStepCount = static_cast<int>(orv::kMaxStepCount);

constexpr QColor kModeColor(200, 205, 200);
constexpr QColor kActiveColor(250, 220, 180);
constexpr QColor kPassiveColor(200, 200, 250);

bool isMode(const QModelIndex& index)
{
    return index.column() == OrvgMseqStepItemModel::kModeColumn;
}

int sensorOf(const QModelIndex& index)
{
    return index.column() - 1;
}

QString textOf(const SequenceStep& step, const QModelIndex& index)
{
    if (isMode(index))
        return modeWords().at(static_cast<int>(modeOf(step)));
    return stateWords().at(static_cast<int>(stateOf(step, sensorOf(index))));
}

QVariant colorOf(const SequenceStep& step, const QModelIndex& index)
{
    if (isMode(index))
        return kModeColor;
    switch (stateOf(step, sensorOf(index))) {
    case SensorState::Active:
        return kActiveColor;
    case SensorState::Passive:
        return kPassiveColor;
    case SensorState::Disabled:
        break;
    }
    return {};
}

void setWord(SequenceStep& step, const QModelIndex& index, int word)
{
    const QStringList words = isMode(index) ? modeWords() : stateWords();
    if (word < 0 || word >= words.size())
        return;
    if (isMode(index))
        setMode(step, static_cast<StepMode>(word));
    else
        setState(step, sensorOf(index), static_cast<SensorState>(word));
}

} // namespace

int OrvgMseqStepItemModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(mSteps.size());
}

int OrvgMseqStepItemModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kColumnCount;
}

QVariant OrvgMseqStepItemModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || section < 0)
        return {};
    if (orientation == Qt::Vertical)
        return tr("Step %1").arg(section + 1);
    if (section == kModeColumn)
        return tr("Mode");
    return section < kColumnCount ? tr("Sens %1").arg(section) : QVariant();
}

QVariant OrvgMseqStepItemModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const SequenceStep& step = mSteps.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return textOf(step, index);
    case Qt::TextAlignmentRole:
        return Qt::AlignCenter;
    case Qt::BackgroundRole:
        return colorOf(step, index);
    default:
        return {};
    }
}

Qt::ItemFlags OrvgMseqStepItemModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsEnabled;
}

bool OrvgMseqStepItemModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    setWord(mSteps[index.row()], index, value.toInt());
    emit dataChanged(index, index, {Qt::EditRole});
    return true;
}

void OrvgMseqStepItemModel::insertEmptyStep(int row)
{
    insertStep(row, {});
}

void OrvgMseqStepItemModel::cloneStep(int row)
{
    if (hasStep(row))
        insertStep(row, mSteps.at(row));
}

void OrvgMseqStepItemModel::removeStep(int row)
{
    if (!hasStep(row))
        return;
    beginRemoveRows({}, row, row);
    mSteps.remove(row);
    endRemoveRows();
}

void OrvgMseqStepItemModel::setSteps(std::span<const orv::MseqStep> records)
{
    beginResetModel();
    mSteps.clear();
    for (const orv::MseqStep& record : records.first(std::min(records.size(), orv::kMaxStepCount)))
        mSteps.append(stepOf(record));
    endResetModel();
}

std::vector<orv::MseqStep> OrvgMseqStepItemModel::steps() const
{
    std::vector<orv::MseqStep> records(static_cast<std::size_t>(mSteps.size()));
    std::ranges::transform(mSteps, records.begin(), recordOf);
    return records;
}

void OrvgMseqStepItemModel::insertStep(int row, const SequenceStep& step)
{
    if (row < 0 || row > mSteps.size() || mSteps.size() >= kMaxStepCount)
        return;
    beginInsertRows({}, row, row);
    mSteps.insert(row, step);
    endInsertRows();
}
