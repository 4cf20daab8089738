#include "ecu/configuration/xml_sections.h"

#include <QByteArray>
#include <QXmlStreamWriter>

namespace {

const QString kIdAttribute = QStringLiteral("id");

} // namespace

void writeBase64(QXmlStreamWriter& writer, std::span<const std::uint8_t> bytes)
{
    const QByteArray block(reinterpret_cast<const char*>(bytes.data()),
                           static_cast<int>(bytes.size()));
    writer.writeCDATA(QString::fromLatin1(block.toBase64()));
}

std::vector<std::uint8_t> readBase64(QXmlStreamReader& reader)
{
    const QByteArray text = reader.readElementText().toLatin1();
    // An element inside stops the reader; what stands before it is no block.
    if (reader.hasError())
        return {};
    const QByteArray block = QByteArray::fromBase64(text);
    return {block.begin(), block.end()};
}

void writeIndexedElement(QXmlStreamWriter& writer, const QString& name, int id,
                         std::span<const std::uint8_t> bytes)
{
    writer.writeStartElement(name);
    writer.writeAttribute(kIdAttribute, QString::number(id));
    writeBase64(writer, bytes);
    writer.writeEndElement();
}

std::string indexedElementError(const QXmlStreamReader& reader, const QString& name, int id)
{
    if (reader.name() != name)
        return "wrong xml format";
    const QXmlStreamAttributes attributes = reader.attributes();
    if (!attributes.hasAttribute(kIdAttribute))
        return "id missing";
    bool isNumber = false;
    const bool isExpected = attributes.value(kIdAttribute).toInt(&isNumber) == id && isNumber;
    return isExpected ? "" : "wrong id value";
}
