#pragma once

#include <QString>

class QSettings;

/// Both ends of the link as the connection dialog edits them. Addresses are dotted text.
struct ConnectionSettings
{
    QString ecuIp;
    QString ecuSubnet;
    QString ecuGateway;
    int controlPort = 0;
    QString hostIp;
    int receivePort = 0;   ///< measurement results
    int freespacePort = 0; ///< freespace packages; 0 = the ECU sends none
};

namespace settings {

/// Reads the values of an import that waits to be accepted and, for each one it does not have,
/// the live one; the live ones alone when no import waits.
ConnectionSettings readConnection(const QSettings& store);

/// Makes the values the live ones and forgets an import.
void acceptConnection(QSettings& store, const ConnectionSettings& connection);

} // namespace settings
