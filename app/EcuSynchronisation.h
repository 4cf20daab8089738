#pragma once

#include "ecu/configuration/ConfigurationPart.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVector>

class QMainWindow;

/// The commands that read and transmit the whole configuration of the ECU in one go: the question,
/// the wait cursor and the messages around it. Blocks while the ECU is talked to.
class EcuSynchronisation
{
    Q_DECLARE_TR_FUNCTIONS(EcuSynchronisation)

public:
    /// The window is borrowed: its status bar and the parent of the boxes.
    EcuSynchronisation(QVector<ConfigurationPart> parts, QMainWindow* window);

    /// Asks first and tells how it went.
    void readInteractively() const;

    /// Asks nothing and tells nothing.
    void readSilently() const;

    /// Asks nothing and tells how it went.
    void transmit() const;

private:
    void report(const QStringList& failures, const QString& failure, const QString& success) const;

    QVector<ConfigurationPart> mParts;
    QMainWindow* mWindow; // borrowed
};
