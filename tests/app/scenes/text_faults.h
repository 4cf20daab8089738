#pragma once

#include <QString>
#include <QStringList>

class QWidget;

/// What is wrong with a text that the pseudo-translator should have translated; empty if nothing.
/// It has to be in brackets as a whole, and may be several such, one a line; plain letters inside
/// are a part that was not translated.
QString translationFault(const QString& text);

/// The faults of all texts of the window.
QStringList translationFaults(QWidget& window);
