#pragma once

#include "ecu/configuration/SectionResult.h"

#include <QString>
#include <QXmlStreamReader>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

class QXmlStreamWriter;

/// Writes the Base64 text of `bytes` as a CDATA section into the open element.
void writeBase64(QXmlStreamWriter& writer, std::span<const std::uint8_t> bytes);

/// Reads the current element's text, decodes it from Base64 and leaves the reader at the
/// element's end. Text that is no Base64 gives what its valid characters decode to; an
/// element that holds elements gives nothing and stops the reader.
std::vector<std::uint8_t> readBase64(QXmlStreamReader& reader);

/// Writes an element `name` with the attribute id = `id` around the Base64 text of `bytes`.
void writeIndexedElement(QXmlStreamWriter& writer, const QString& name, int id,
                         std::span<const std::uint8_t> bytes);

/// Why the reader's element is not the one of this name and id: "wrong xml format", "id missing"
/// or "wrong id value"; empty when it is.
std::string indexedElementError(const QXmlStreamReader& reader, const QString& name, int id);

/// Writes an element `name` for each record, counted by id from 0, into the open section.
/// @param encode gives the bytes of a record
template<typename Records, typename Encode>
void writeIndexedElements(QXmlStreamWriter& writer, const QString& name, const Records& records,
                          Encode encode)
{
    int id = 0;
    for (const auto& record : records)
        writeIndexedElement(writer, name, id++, encode(record));
}

/// Reads what writeIndexedElements() wrote, up to `maxCount` records; what stands behind them is
/// left to the reader's caller. Fails as indexedElementError() tells and with `wrongData`.
/// @param decode gives the record of (bytes, id), or none
template<typename Record, typename Decode>
SectionResult<std::vector<Record>> readIndexedElements(QXmlStreamReader& reader,
                                                       const QString& name, std::size_t maxCount,
                                                       const char* wrongData, Decode decode)
{
    std::vector<Record> records;
    while (records.size() < maxCount && reader.readNextStartElement()) {
        const int id = static_cast<int>(records.size());
        if (std::string error = indexedElementError(reader, name, id); !error.empty())
            return {.error = std::move(error)};
        const std::optional<Record> record = decode(readBase64(reader), id);
        if (!record)
            return {.error = wrongData};
        records.push_back(*record);
    }
    return {.value = std::move(records)};
}
