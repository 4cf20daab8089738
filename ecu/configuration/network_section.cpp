#include "ecu/configuration/network_section.h"

#include "ecu/store/network_keys.h"

#include <QCoreApplication>
#include <QSettings>
#include <QStringList>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

// The freespace port is none of them.
const QStringList& elements()
{
    using namespace settings;
    static const QStringList names{kEcuIp,       kEcuSubnet, kEcuGateway,
                                   kControlPort, kHostIp,    kReceivePort};
    return names;
}

// The store must not grow with whatever a file holds.
constexpr int kMaxElements = 32;
constexpr int kMaxNameLength = 64;
constexpr int kMaxTextLength = 256;

} // namespace

namespace settings {

void writeNetworkSection(QXmlStreamWriter& writer, QSettings& store)
{
    store.beginGroup(kNetworkGroup);
    for (const QString& element : elements())
        writer.writeTextElement(element, store.value(element).toString());
    store.endGroup();
}

bool importNetworkSection(QXmlStreamReader& reader, QSettings& store, std::string& error)
{
    store.beginGroup(kImportedNetworkGroup);
    for (int count = 0; reader.readNextStartElement(); ++count) {
        const QString name = reader.name().toString();
        const QString text = reader.readElementText();
        if (reader.hasError())
            break;
        if (count < kMaxElements && name.size() <= kMaxNameLength && text.size() <= kMaxTextLength)
            store.setValue(name, text);
    }
    store.endGroup();
    error = reader.errorString().toStdString();
    return !reader.hasError();
}

ConfigurationPart networkPart(QSettings& store)
{
    const QString name = QStringLiteral("Network");
    return {.element = name,
            .errorName = QCoreApplication::translate("Configuration", "Network"),
            .writeXml = [&store](QXmlStreamWriter& writer) { writeNetworkSection(writer, store); },
            .readFromXml =
                [&store](QXmlStreamReader& reader, std::string& error) {
                    return importNetworkSection(reader, store, error);
                }};
}

} // namespace settings
