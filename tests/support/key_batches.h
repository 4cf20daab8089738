#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QString>

/// Puts every key of the text into the event queue before any of them is handled, as hands do that
/// are faster than the program, and then lets it catch up.
inline void typeAtOnce(QObject* receiver, const QString& text)
{
    for (const QChar character : text) {
        const int key = character.toUpper().unicode();
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
            QCoreApplication::postEvent(receiver,
                                        new QKeyEvent(type, key, Qt::NoModifier, character));
    }
    QCoreApplication::processEvents();
}
