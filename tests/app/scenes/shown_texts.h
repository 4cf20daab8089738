#pragma once

#include <QFont>
#include <QPalette>
#include <QRect>
#include <QSize>
#include <QString>
#include <QVector>

class QWidget;

/// A text that is seen, or heard from a screen reader, and where it stands.
struct ShownText
{
    const QWidget* widget = nullptr;
    QString text;
    QRect place = {};    ///< of the text in its widget; empty for what is not painted there
    QSize needed = {};   ///< by the text; empty where its room is not looked at
    QSize room = {};     ///< for the text
    bool isData = false; ///< comes from elsewhere: a file, the network, the user
    bool isDim = false;  ///< of what cannot be used now
};

/// All texts of the window's visible parts, with those of menus, headers, cells, tabs, the status
/// bar, tool tips and names for screen readers.
QVector<ShownText> shownTexts(QWidget& window);
