#pragma once

#include <QMessageBox>
#include <QObject>
#include <QTimer>
#include <QVector>

/// Answers every message box that opens and keeps what it said. Create it before the action that
/// opens the box.
class MessageBoxWatcher : public QObject
{
    Q_OBJECT

public:
    struct Box
    {
        QMessageBox::Icon icon;
        QString title;
        QString text;
        QMessageBox::StandardButtons buttons;
    };

    /// @param answer the button that is pressed; a box without it is closed by its default button
    explicit MessageBoxWatcher(QMessageBox::StandardButton answer = QMessageBox::Ok);

    void setAnswer(QMessageBox::StandardButton answer) { mAnswer = answer; }

    /// Leaves the boxes that open from now on to the test.
    void rest() { mTimer.stop(); }

    const QVector<Box>& boxes() const { return mBoxes; }
    void forget() { mBoxes.clear(); }

private:
    void look();

    QMessageBox::StandardButton mAnswer;
    QVector<Box> mBoxes;
    QTimer mTimer;
};
