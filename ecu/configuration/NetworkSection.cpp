#include "ecu/configuration/NetworkSection.h"

#include "ecu/store/NetworkSettings.h"

#include <QSettings>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <array>

namespace {

constexpr std::array kElements = {"ecu_ip",       "ecu_subnet", "ecu_gateway",
                                  "control_port", "host_ip",    "receive_port"};

// The store must not grow with whatever a file holds.
constexpr int kMaxElements = 32;
constexpr int kMaxNameLength = 64;
constexpr int kMaxTextLength = 256;

} // namespace

namespace settings {

void writeNetworkSection(QXmlStreamWriter& writer, QSettings& store)
{
    store.beginGroup(kNetworkGroup);
    for (const char* name : kElements) {
        const QString element = QString::fromLatin1(name);
        writer.writeTextElement(element, store.value(element).toString());
    }
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

} // namespace settings
