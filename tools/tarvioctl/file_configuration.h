#pragma once

#include "ecu/configuration/EcuConfiguration.h"

#include <QString>
#include <QStringList>

namespace tarvioctl {

class PartSelection;

/// What a settings file holds for the ECU.
struct FileConfiguration
{
    EcuConfiguration values;
    QStringList elements; ///< of the parts that it holds and that are selected
};

/// Reads the selected parts. Throws Refusal for a file that cannot be read or is not wholly as it
/// should be: nothing is taken from half a file.
FileConfiguration loadFile(const QString& fileName, const PartSelection& selection);

} // namespace tarvioctl
