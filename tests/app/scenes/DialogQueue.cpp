#include "tests/app/scenes/DialogQueue.h"

#include <QApplication>

#include <algorithm>
#include <utility>

DialogQueue::DialogQueue(Stage::Look look, QVector<Stage::Answer> answers)
    : mLook(std::move(look)), mAnswers(std::move(answers))
{
    connect(&mTimer, &QTimer::timeout, this, &DialogQueue::meet);
    mTimer.start(1);
}

void DialogQueue::meet()
{
    // A dialog may come back, a file dialog after a question for one.
    mMet.erase(std::remove_if(mMet.begin(), mMet.end(),
                              [](const auto& met) { return !met || !met->isVisible(); }),
               mMet.end());
    const QPointer<QWidget> dialog = QApplication::activeModalWidget();
    if (!dialog || !dialog->isVisible() || mMet.contains(dialog))
        return;
    mMet.append(dialog);
    QCoreApplication::processEvents();
    mLook(*dialog);
    // Later: a timer does not fire again before it has returned, and the answer may open another
    // dialog.
    QMetaObject::invokeMethod(
        this,
        [this, dialog] {
            if (dialog)
                answer(*dialog);
        },
        Qt::QueuedConnection);
}

void DialogQueue::answer(QWidget& dialog)
{
    const Stage::Answer act = mAnswers.isEmpty() ? Stage::dismiss() : mAnswers.takeFirst();
    act(dialog);
}
