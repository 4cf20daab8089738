#include "views/thresholds/ThresholdEditor.h"

#include "orv_decoder/tables.h"
#include "views/common/threshold_style.h"

#include <QComboBox>
#include <QFormLayout>

namespace {

constexpr int kLastTimeIndex = static_cast<int>(orv::kSegmentDurationsUs.size()) - 1;
constexpr int kLastLevelIndex = static_cast<int>(orv::kThresholdLevels.size()) - 1;

void addTimes(QComboBox& box)
{
    for (int index = kLastTimeIndex; index >= 0; --index)
        box.addItem(segmentDurationText(index));
}

void addLevels(QComboBox& box)
{
    for (int index = kLastLevelIndex; index >= 0; --index) {
        const double level{orv::kThresholdLevels[static_cast<std::size_t>(index)]};
        box.addItem(QStringLiteral("%1").arg(level, 5, 'f', 5));
    }
}

} // namespace

ThresholdEditor::ThresholdEditor(QWidget* parent)
    : QFrame(parent, Qt::Popup | Qt::FramelessWindowHint)
    , mTimeCb(new QComboBox(this))
    , mLevelCb(new QComboBox(this))
{
    setFrameShape(QFrame::Box);
    setFocusProxy(mTimeCb);
    mTimeCb->setObjectName(QStringLiteral("mTimeCb"));
    mLevelCb->setObjectName(QStringLiteral("mLevelCb"));
    // The background that the editor gets as a style sheet would take the highlight from the lists.
    for (QComboBox* box : {mTimeCb, mLevelCb})
        box->setStyleSheet(QStringLiteral("background: none;"));
    addTimes(*mTimeCb);
    addLevels(*mLevelCb);
    auto* layout = new QFormLayout(this);
    layout->setContentsMargins(5, 2, 5, 2);
    layout->addRow(tr("? t"), mTimeCb);
    layout->addRow(tr("Val"), mLevelCb);
}

QPoint ThresholdEditor::indexes() const
{
    return {kLastTimeIndex - mTimeCb->currentIndex(), kLastLevelIndex - mLevelCb->currentIndex()};
}

void ThresholdEditor::setIndexes(QPoint indexes)
{
    mTimeCb->setCurrentIndex(kLastTimeIndex - indexes.x());
    mLevelCb->setCurrentIndex(kLastLevelIndex - indexes.y());
}
