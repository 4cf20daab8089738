#pragma once

#include "ecu/configuration/ConfigurationPart.h"

class QSettings;

/// What one part needs of whoever holds it, a view or a plain record. The operations with the ECU
/// ask nothing, tell nothing and return success; what could not be read stays as it was.
struct PartHolder
{
    std::function<void(QXmlStreamWriter&)> writeXml;
    std::function<bool(QXmlStreamReader&, std::string&)> readFromXml;
    std::function<bool()> readFromEcu;
    std::function<bool()> writeToEcu;
};

/// The holders of everything that the ECU is configured with.
struct ConfigurationHolders
{
    PartHolder sequence;
    PartHolder thresholds;
    PartHolder positions;
};

/// What is exchanged with the ECU in one go, in the order of a settings file.
QVector<ConfigurationPart> ecuParts(const ConfigurationHolders& holders);

/// All that stands in a settings file, in its order: the host's side of the link, then the parts
/// of the ECU. Each has a check box in the form of OrvgOpenXmlSettingsDialog.
/// @param store holds the network part, borrowed
QVector<ConfigurationPart> configurationParts(QSettings& store,
                                              const ConfigurationHolders& holders);
