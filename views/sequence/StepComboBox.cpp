#include "views/sequence/StepComboBox.h"

StepComboBox::StepComboBox(const QStringList& words, QWidget* parent) : QComboBox(parent)
{
    addItems(words);
    connect(this, QOverload<int>::of(&QComboBox::activated), this, [this] {
        if (mIsListInUse)
            emit chosenFromList(this);
    });
}

void StepComboBox::showPopup()
{
    mIsListInUse = true;
    QComboBox::showPopup();
}

// The opened list takes the keys itself: what arrives here changes the closed box.
void StepComboBox::keyPressEvent(QKeyEvent* event)
{
    mIsListInUse = false;
    QComboBox::keyPressEvent(event);
}
