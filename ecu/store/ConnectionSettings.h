#pragma once

#include "ecu/link/LinkSettings.h"

#include <QString>

class QSettings;

/// What the connection dialog edits: the link, and what the ECU alone needs to know. What the ECU
/// itself holds is an orv::EcuNetworkSettings.
struct ConnectionSettings
{
    LinkSettings link;
    QString ecuSubnet;
    QString ecuGateway;
    QString hostIp;
};

namespace settings {

/// Writes what a first start begins with. The freespace port is left to its default.
void writeDefaultNetwork(QSettings& store);

/// Reads what the program uses. An address that is missing or incomplete is empty; a port that is
/// missing or no port is its default: 50002 (control), 50001 (measurement results), 50003
/// (freespace packages).
ConnectionSettings readConnection(const QSettings& store);

/// Which ports readConnection takes from the store; the others are its defaults.
struct StoredPorts
{
    bool hasControl = false;
    bool hasReceive = false;
    bool hasFreespace = false;
};
StoredPorts storedPorts(const QSettings& store);

/// True when values of a settings file wait to be accepted.
bool hasImportedConnection(const QSettings& store);

/// Reads the values that wait and, for each that the file did not hold, the one in use.
ConnectionSettings readImportedConnection(const QSettings& store);

/// Makes the values those in use and forgets what waits.
void acceptConnection(QSettings& store, const ConnectionSettings& connection);

/// Forgets what waits to be accepted.
void forgetImportedConnection(QSettings& store);

} // namespace settings
