#include "ecu/configuration/SettingsFile.h"

#include "ecu/configuration/settings_text.h"

#include <QCoreApplication>
#include <QDebug>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>

namespace {

const QString kRootElement = QStringLiteral("OrvgProject");
const QString kDocumentType = QStringLiteral("<!DOCTYPE tarvio>");

// Many more than there are parts.
constexpr int kMaxSections = 16;

// A message quotes names and texts of the file.
constexpr int kMaxErrorLength = 200;

// For who collects the texts to be translated: what the readers of the sections say.
[[maybe_unused]] constexpr const char* kSectionErrors[] = {
    QT_TRANSLATE_NOOP("ImportErrors", "wrong xml format"),
    QT_TRANSLATE_NOOP("ImportErrors", "id missing"),
    QT_TRANSLATE_NOOP("ImportErrors", "wrong id value"),
    QT_TRANSLATE_NOOP("ImportErrors", "wrong data format"),
    QT_TRANSLATE_NOOP("ImportErrors", "wrong thresholds data format"),
    QT_TRANSLATE_NOOP("ImportErrors", "Invalid data format of sensor positions")};

struct ImportErrors
{
    Q_DECLARE_TR_FUNCTIONS(ImportErrors)
};

/// One section as it stands in a file.
struct SectionText
{
    QString element;
    QString text;  ///< the whole element, as far as it could be read
    QString error; ///< why it could not be read to its end; empty when it could
};

/// A file cut into its sections.
struct FileSections
{
    QVector<SectionText> sections;
    QString error = {}; ///< why nothing follows the last one; empty at the end of the file
};

/// The text of the current element, children included; leaves the reader at its end. Stops where
/// the reader stops at an error.
QString copyElement(QXmlStreamReader& reader)
{
    QString text;
    QXmlStreamWriter writer(&text);
    int depth = 0;
    do {
        writer.writeCurrentToken(reader);
        depth += reader.isStartElement() ? 1 : 0;
        depth -= reader.isEndElement() ? 1 : 0;
    } while (depth > 0 && reader.readNext() != QXmlStreamReader::Invalid);
    return text;
}

SectionText nextSection(QXmlStreamReader& reader)
{
    const QString element = reader.name().toString();
    const QString text = copyElement(reader);
    return {element, text, reader.errorString()};
}

// Each section is read from a text of its own, so that no failure inside, wherever it leaves the
// reader, can hide or swallow the sections after it.
FileSections cutFile(const QString& fileName)
{
    QXmlStreamReader reader(settingsText(fileName));
    if (!reader.readNextStartElement())
        return {{}, ImportErrors::tr("invalid xml file")};
    if (reader.name() != kRootElement)
        return {{}, ImportErrors::tr("not an OrvgProject")};
    QVector<SectionText> sections;
    while (reader.readNextStartElement()) {
        if (sections.size() == kMaxSections)
            return {sections, ImportErrors::tr("invalid xml file")};
        sections.append(nextSection(reader));
    }
    // Nothing may stand behind the root.
    while (!reader.atEnd())
        reader.readNext();
    return {sections, reader.errorString()};
}

QString unknownCategory(const QString& element)
{
    return ImportErrors::tr("Unknown category %1").arg(element).left(kMaxErrorLength);
}

// Why the part does not take the content of the reader's element; empty when it does.
QString contentError(const ConfigurationPart& part, QXmlStreamReader& reader)
{
    std::string error;
    if (!part.readFromXml(reader, error))
        return ImportErrors::tr(error.c_str());
    return reader.error() == QXmlStreamReader::UnexpectedElementError ? reader.errorString()
                                                                      : QString();
}

void importSection(const ConfigurationPart& part, const SectionText& section, ImportReport& report)
{
    QXmlStreamReader reader(section.text);
    reader.readNextStartElement();
    const QString error = section.error.isEmpty() ? contentError(part, reader) : section.error;
    if (!error.isEmpty())
        report.sectionErrors +=
            ImportErrors::tr("%1: %2").arg(part.errorName, error.left(kMaxErrorLength)) +
            QLatin1Char('\n');
    // More than the section may hold, a thirteenth step for one.
    else if (reader.readNextStartElement())
        report.abortText = unknownCategory(reader.name().toString());
}

} // namespace

SettingsFile::SettingsFile(QVector<ConfigurationPart> parts) : mParts(std::move(parts)) {}

QByteArray SettingsFile::document() const
{
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeDTD(kDocumentType);
    writer.writeStartElement(kRootElement);
    for (const ConfigurationPart& part : mParts) {
        writer.writeStartElement(part.element);
        part.writeXml(writer);
        writer.writeEndElement();
    }
    writer.writeEndDocument();
    return bytes;
}

ImportReport SettingsFile::read(const QString& fileName, const Selection& isSelected) const
{
    const FileSections file = cutFile(fileName);
    ImportReport report;
    for (const SectionText& section : file.sections) {
        qDebug() << section.element;
        const ConfigurationPart* part = partOf(section.element);
        if (!part)
            report.abortText = unknownCategory(section.element);
        else if (isSelected(section.element))
            importSection(*part, section, report);
        if (!report.abortText.isEmpty())
            return report;
    }
    report.abortText = file.error.left(kMaxErrorLength);
    return report;
}

QStringList SettingsFile::sectionsOf(const QString& fileName)
{
    QStringList names;
    const auto sections = cutFile(fileName).sections;
    for (const SectionText& section : sections)
        names.append(section.element);
    return names;
}

const ConfigurationPart* SettingsFile::partOf(const QString& element) const
{
    const auto found = std::ranges::find(mParts, element, &ConfigurationPart::element);
    return found == mParts.end() ? nullptr : &*found;
}
