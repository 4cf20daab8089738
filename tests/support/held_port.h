#pragma once

#include <QFile>
#include <QString>
#include <QtTest>

#include <cstdint>

/// True while somebody holds the UDP port on every address of this machine. Asks the system's
/// table: a trial bind would take the port from whom it waits for.
inline bool isPortHeld(std::uint16_t port)
{
    QFile table(QStringLiteral("/proc/net/udp"));
    return table.open(QIODevice::ReadOnly) &&
           table.readAll().contains(QStringLiteral(" 00000000:%1 ")
                                        .arg(port, 4, 16, QLatin1Char('0'))
                                        .toUpper()
                                        .toLatin1());
}

/// Waits until somebody holds the port.
inline bool waitUntilPortIsHeld(std::uint16_t port)
{
    return QTest::qWaitFor([port] { return isPortHeld(port); }, 30000);
}
