#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class QMainWindow;

/// One part of the ECU's configuration and the silent operations that move it.
struct EcuItem
{
    QString name; ///< as a failure is listed
    std::function<bool()> read;
    std::function<bool()> write;
};

/// Reads and transmits the whole configuration of the ECU in one go. Every item is attempted, also
/// after a failure of another one. Blocks while the ECU is talked to.
class EcuSynchronisation
{
    Q_DECLARE_TR_FUNCTIONS(EcuSynchronisation)

public:
    /// The window is borrowed: its status bar and the parent of the boxes.
    EcuSynchronisation(QVector<EcuItem> items, QMainWindow* window);

    /// Asks first and tells how it went.
    void readInteractively() const;

    /// Asks nothing and tells nothing.
    void readSilently() const;

    /// Asks nothing and tells how it went.
    void transmit() const;

private:
    using Operation = std::function<bool()> EcuItem::*;

    QStringList failuresOf(Operation operation) const;
    void report(const QStringList& failures, const QString& failure, const QString& success) const;

    QVector<EcuItem> mItems;
    QMainWindow* mWindow; // borrowed
};
