#include "ecu/configuration/EcuConfiguration.h"
#include "ecu/configuration/SettingsFile.h"
#include "ecu/store/ConnectionSettings.h"
#include "fuzz/InputFile.h"
#include "fuzz/InputScript.h"
#include "fuzz/ecu_properties.h"

#include <QSettings>
#include <QXmlStreamWriter>

#include <algorithm>

namespace {

// Resources cannot be written: the store lives in memory alone.
const QString kStoreInMemory = QStringLiteral(":/store-of-the-fuzzer");

constexpr int kMaxReportedLength = 400;

/// Who takes in a settings file.
class Importer
{
public:
    ImportReport read(const QString& fileName)
    {
        ImportReport report = file().read(fileName, [](const QString&) { return true; });
        settings::acceptConnection(mStore, settings::readImportedConnection(mStore));
        return report;
    }

    QByteArray document() { return file().document(); }

    const EcuConfiguration& configuration() const { return mConfiguration; }

    /// What a file holds of the link; the freespace port is not in it.
    bool isLinkedLike(const Importer& other) const
    {
        const ConnectionSettings own = settings::readConnection(mStore);
        const ConnectionSettings its = settings::readConnection(other.mStore);
        return own.link.ecuIp == its.link.ecuIp && own.link.controlPort == its.link.controlPort &&
               own.link.receivePort == its.link.receivePort && own.ecuSubnet == its.ecuSubnet &&
               own.ecuGateway == its.ecuGateway && own.hostIp == its.hostIp;
    }

private:
    SettingsFile file()
    {
        return SettingsFile(configurationParts(mStore, holdersOf(mConfiguration)));
    }

    QSettings mStore{kStoreInMemory, QSettings::IniFormat};
    EcuConfiguration mConfiguration;
};

bool isWithinItsLimits(const EcuConfiguration& configuration)
{
    const auto isThreshold = [](const orv::SensorThreshold& record) {
        return record.scale < orv::kThresholdScaleLimit;
    };
    return configuration.sequence.size() <= orv::kMaxStepCount &&
           std::ranges::all_of(configuration.sequence, &orv::MseqStep::valid) &&
           std::ranges::all_of(configuration.thresholds, isThreshold);
}

// A message that filled the screen would be as bad as none.
bool canBeShown(const ImportReport& report)
{
    return report.abortText.size() <= kMaxReportedLength &&
           report.sectionErrors.count(QLatin1Char('\n')) <= 16 &&
           report.sectionErrors.size() <= 16 * kMaxReportedLength;
}

void writeRecords(QXmlStreamWriter& writer, InputScript& script, const QString& element)
{
    const unsigned count = script.below(16);
    for (unsigned id = 0; id < count; ++id) {
        writer.writeStartElement(element);
        writer.writeAttribute(QStringLiteral("id"), QString::number(id));
        writer.writeCDATA(byteArray(script.block()).toBase64());
        writer.writeEndElement();
    }
}

void writeNetworkValues(QXmlStreamWriter& writer, InputScript& script)
{
    static const QStringList names{"ecu_ip",  "ecu_subnet",   "ecu_gateway", "control_port",
                                   "host_ip", "receive_port", "fsp_port",    "other"};
    const unsigned count = script.below(40);
    for (unsigned i = 0; i < count; ++i) {
        const QString& name = names[static_cast<int>(script.below(8))];
        writer.writeTextElement(name, QString::fromLatin1(byteArray(script.block())));
    }
}

void writePositions(QXmlStreamWriter& writer, InputScript& script)
{
    writer.writeCDATA(byteArray(script.block()).toBase64());
}

void writeSection(QXmlStreamWriter& writer, InputScript& script)
{
    static const QStringList names{"Network", "MSEQ", "Thresholds", "MountPositions"};
    const unsigned section = script.below(4);
    writer.writeStartElement(names[static_cast<int>(section)]);
    if (section == 0)
        writeNetworkValues(writer, script);
    else if (section == 1)
        writeRecords(writer, script, QStringLiteral("Step"));
    else if (section == 2)
        writeRecords(writer, script, QStringLiteral("Sensor"));
    else
        writePositions(writer, script);
    writer.writeEndElement();
}

bool fileHolds(const InputFile& input)
{
    Importer first;
    if (!canBeShown(first.read(input.name())) || !isWithinItsLimits(first.configuration()))
        return false;
    const QByteArray document = first.document();
    Importer second;
    const ImportReport report = second.read(InputFile(document).name());
    return report.isComplete() && second.isLinkedLike(first) && second.document() == document &&
           second.configuration() == first.configuration();
}

} // namespace

bool settingsFileHolds(std::span<const std::uint8_t> bytes)
{
    return fileHolds(InputFile(byteArray(bytes)));
}

bool settingsSectionsHold(std::span<const std::uint8_t> bytes)
{
    InputScript script(bytes);
    QByteArray document;
    QXmlStreamWriter writer(&document);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("OrvgProject"));
    while (!script.isAtEnd())
        writeSection(writer, script);
    writer.writeEndDocument();
    return fileHolds(InputFile(document));
}
