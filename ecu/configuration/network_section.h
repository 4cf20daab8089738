#pragma once

#include "ecu/configuration/ConfigurationPart.h"

#include <string>

class QSettings;
class QXmlStreamReader;
class QXmlStreamWriter;

/// The section of a settings file that holds the host's side of the link.
namespace settings {

/// Writes six values of the live group as text elements. The freespace port is none of them.
void writeNetworkSection(QXmlStreamWriter& writer, QSettings& store);

/// Stores the text of every child element under the element's name in the group of imported
/// values, where the connection dialog finds them; the live group stays as it is. Elements beyond
/// the 32nd and names or texts that no setting has the length of are left out. False with the
/// reason in `error` for an element that holds elements; those before it are stored.
bool importNetworkSection(QXmlStreamReader& reader, QSettings& store, std::string& error);

/// Both as a part of the configuration. The ECU has its network settings from the connection
/// dialog alone.
/// @param store borrowed
ConfigurationPart networkPart(QSettings& store);

} // namespace settings
