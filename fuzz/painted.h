#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QWidget>

/// Lets what widgets have put off happen now: layouts, deletions. Timers stand still.
inline void settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// Lays the widget out as on a screen, but nobody paints it.
inline void showUnseen(QWidget& widget, QSize size)
{
    widget.setAttribute(Qt::WA_DontShowOnScreen);
    widget.resize(size);
    widget.show();
    settle();
}

/// The widget as it looks now.
inline QImage painted(QWidget& widget)
{
    settle();
    QImage image(widget.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    widget.render(&image);
    return image;
}
