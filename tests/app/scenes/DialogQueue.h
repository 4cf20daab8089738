#pragma once

#include "tests/app/scenes/Stage.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVector>

/// Looks at each modal dialog that opens while it lives, from within the dialog's own event loop,
/// and answers it.
class DialogQueue : public QObject
{
    Q_OBJECT

public:
    DialogQueue(Stage::Look look, QVector<Stage::Answer> answers);

private:
    void meet();
    void answer(QWidget& dialog);

    const Stage::Look mLook;
    QVector<Stage::Answer> mAnswers;
    QVector<QPointer<QWidget>> mMet;
    QTimer mTimer;
};
