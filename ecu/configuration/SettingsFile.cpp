#include "ecu/configuration/SettingsFile.h"

#include "ecu/configuration/settings_text.h"

#include <QDebug>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <stdexcept>

namespace {

const QString kRootElement = QStringLiteral("OrvgProject");
const QString kDocumentType = QStringLiteral("<!DOCTYPE tarvio>");

const QString kInvalidFile = QStringLiteral("invalid xml file");

// A complete file has four.
constexpr int kMaxSections = 16;

// A message quotes names and texts of the file.
constexpr int kMaxErrorLength = 200;

[[noreturn]] void raise(const QString& text)
{
    throw std::invalid_argument(text.toStdString());
}

[[noreturn]] void raiseUnknownCategory(const QString& element)
{
    raise(QStringLiteral("Unknown category ") + element);
}

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

QString readSection(const SettingsSection& section, const QString& text)
{
    QXmlStreamReader reader(text);
    reader.readNextStartElement();
    std::string error;
    if (!section.read(reader, error))
        return QString::fromStdString(error);
    if (reader.error() == QXmlStreamReader::UnexpectedElementError)
        return reader.errorString();
    // More than the section may hold, a thirteenth step for one.
    if (reader.readNextStartElement())
        raiseUnknownCategory(reader.name().toString());
    return {};
}

void importSection(const SettingsSection& section, QXmlStreamReader& reader, ImportReport& report)
{
    // Each section is read from a text of its own, so that no failure inside, wherever it leaves
    // the reader, can hide or swallow the sections after it.
    const QString text = copyElement(reader);
    const QString error = reader.hasError() ? reader.errorString() : readSection(section, text);
    if (!error.isEmpty())
        report.sectionErrors += section.errorName + QStringLiteral(": ") +
                                error.left(kMaxErrorLength) + QLatin1Char('\n');
}

} // namespace

SettingsFile::SettingsFile(QVector<SettingsSection> sections) : mSections(std::move(sections)) {}

QByteArray SettingsFile::document() const
{
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeDTD(kDocumentType);
    writer.writeStartElement(kRootElement);
    for (const SettingsSection& section : mSections) {
        writer.writeStartElement(section.element);
        section.write(writer);
        writer.writeEndElement();
    }
    writer.writeEndDocument();
    return bytes;
}

ImportReport SettingsFile::read(const QString& fileName, const Selection& isSelected) const
{
    ImportReport report;
    QXmlStreamReader reader(settingsText(fileName));
    try {
        readSections(reader, isSelected, report);
    } catch (const std::invalid_argument& error) {
        report.abortText = QString::fromStdString(error.what()).left(kMaxErrorLength);
    }
    return report;
}

QStringList SettingsFile::sectionsOf(const QString& fileName)
{
    QXmlStreamReader reader(settingsText(fileName));
    if (!reader.readNextStartElement() || reader.name() != kRootElement)
        return {};
    QStringList names;
    while (reader.readNextStartElement() && names.size() < kMaxSections) {
        names.append(reader.name().toString());
        reader.skipCurrentElement();
    }
    return names;
}

void SettingsFile::readSections(QXmlStreamReader& reader, const Selection& isSelected,
                                ImportReport& report) const
{
    if (!reader.readNextStartElement())
        raise(kInvalidFile);
    if (reader.name() != kRootElement)
        raise(QStringLiteral("not an OrvgProject"));
    for (int count = 0; reader.readNextStartElement(); ++count) {
        if (count == kMaxSections)
            raise(kInvalidFile);
        const QString element = reader.name().toString();
        qDebug() << element;
        const SettingsSection& section = sectionNamed(element);
        if (isSelected(element))
            importSection(section, reader, report);
        else
            reader.skipCurrentElement();
    }
    // Nothing may stand behind the root.
    while (!reader.atEnd())
        reader.readNext();
    if (reader.hasError())
        raise(reader.errorString());
}

const SettingsSection& SettingsFile::sectionNamed(const QString& element) const
{
    const auto found = std::find_if(
        mSections.begin(), mSections.end(),
        [&element](const SettingsSection& section) { return section.element == element; });
    if (found == mSections.end())
        raiseUnknownCategory(element);
    return *found;
}
