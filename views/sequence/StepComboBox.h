#pragma once

#include <QComboBox>

/// The editor of a cell of the sequence table. Choosing from the opened list ends the editing,
/// walking through the items with the arrow keys does not.
class StepComboBox : public QComboBox
{
    Q_OBJECT

public:
    StepComboBox(const QStringList& words, QWidget* parent);

    void showPopup() override;

signals:
    void chosenFromList(QWidget* editor);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool mIsListInUse = false;
};
