#pragma once

#include <QApplication>
#include <QTimer>

#include <functional>

/// Lets a test act on the next modal dialog of a kind from within the dialog's own event loop.
/// Call it before what opens the dialog; `context` is what the wait lives as long as.
template<typename Dialog>
void whenOpened(QObject* context, std::function<void(Dialog&)> act)
{
    auto* timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, context, [timer, act = std::move(act)] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer->stop();
        timer->deleteLater();
        act(*dialog);
    });
    timer->start(1);
}
