#include "tests/app/faults/ecu_data.h"

#include <QStringList>
#include <QXmlStreamWriter>

namespace {

QString addressText(std::uint32_t address)
{
    QStringList octets;
    for (int k = 0; k < 4; ++k)
        octets << QString::number(address >> 8 * k & 0xFF);
    return octets.join('.');
}

} // namespace

QString textOf(const std::function<void(QXmlStreamWriter&)>& writeSections)
{
    QString text;
    QXmlStreamWriter writer(&text);
    writer.setAutoFormatting(true);
    writer.writeStartElement(QStringLiteral("Views"));
    writeSections(writer);
    writer.writeEndElement();
    return text;
}

orv::EcuNetworkSettings networkOfSeed(int seed)
{
    const auto number = static_cast<std::uint32_t>(seed);
    const auto port = static_cast<std::uint16_t>(seed);
    return {.valid = true,
            .ecuIp = 0x0100A8C0U + (number << 24),
            .subnetMask = 0x0000FFFFU + (number << 16),
            .gateway = 0x0000A8C0U + (number << 24),
            .controlPort = static_cast<std::uint16_t>(2000 + port),
            .hostIp = 0x0200A8C0U + (number << 24),
            .receivePort = static_cast<std::uint16_t>(4000 + port),
            .freespacePort = static_cast<std::uint16_t>(6000 + port)};
}

QString textOf(const EcuConfiguration& configuration)
{
    EcuConfiguration written = configuration;
    const ConfigurationHolders holders = holdersOf(written);
    return textOf([&holders](QXmlStreamWriter& writer) {
        holders.sequence.writeXml(writer);
        holders.thresholds.writeXml(writer);
        holders.positions.writeXml(writer);
    });
}

QString fieldsOf(const orv::EcuNetworkSettings& network)
{
    QStringList fields;
    for (const std::uint32_t address :
         {network.ecuIp, network.subnetMask, network.gateway, network.hostIp})
        fields << addressText(address);
    for (const int port : {network.controlPort, network.receivePort, network.freespacePort})
        fields << QString::number(port);
    return fields.join(' ');
}

EcuConfiguration keptBy(const ecusim::EcuState& ecu)
{
    return {.sequence = ecu.sequence, .thresholds = ecu.keptThresholds, .positions = ecu.positions};
}
