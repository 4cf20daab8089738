#include "ecu/configuration/configuration_parts.h"

#include "ecu/configuration/network_section.h"

#include <QCoreApplication>

namespace {

struct PartNames
{
    const char* element;   // in a settings file
    const char* errorName; // when reading the file fails
    const char* ecuName;   // when an exchange fails
};

ConfigurationPart part(const PartNames& names, int turn, const PartHolder& holder)
{
    return {.element = QString::fromLatin1(names.element),
            .errorName = QCoreApplication::translate("Configuration", names.errorName),
            .writeXml = holder.writeXml,
            .readFromXml = holder.readFromXml,
            .ecu = EcuTransfer{.name = QCoreApplication::translate("Configuration", names.ecuName),
                               .turn = turn,
                               .read = holder.readFromEcu,
                               .write = holder.writeToEcu}};
}

} // namespace

QVector<ConfigurationPart> ecuParts(const ConfigurationHolders& holders)
{
    return {part({"MSEQ", QT_TRANSLATE_NOOP("Configuration", "Measurement sequence"),
                  QT_TRANSLATE_NOOP("Configuration", "measurement sequence")},
                 2, holders.sequence),
            part({"Thresholds", QT_TRANSLATE_NOOP("Configuration", "Thresholds"),
                  QT_TRANSLATE_NOOP("Configuration", "thresholds")},
                 1, holders.thresholds),
            part({"MountPositions", QT_TRANSLATE_NOOP("Configuration", "MountPositions"),
                  QT_TRANSLATE_NOOP("Configuration", "sensor positions")},
                 3, holders.positions)};
}

QVector<ConfigurationPart> configurationParts(QSettings& store, const ConfigurationHolders& holders)
{
    return QVector<ConfigurationPart>{settings::networkPart(store)} + ecuParts(holders);
}
