#pragma once

#include <QFrame>
#include <QPoint>

class QComboBox;

/// The pop-up that edits one segment of a threshold curve: its time and its level. Both lists run
/// from the largest value down.
class ThresholdEditor : public QFrame
{
    Q_OBJECT

public:
    explicit ThresholdEditor(QWidget* parent);

    /// x is the time index 0..7, y the level index 0..31.
    QPoint indexes() const;
    void setIndexes(QPoint indexes);

private:
    QComboBox* mTimeCb;
    QComboBox* mLevelCb;
};
