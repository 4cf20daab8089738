#pragma once

#include <cstdint>
#include <span>
#include <vector>

class QString;
class QXmlStreamReader;
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

/// Moves the reader to the next child element of a section; false when there is none.
/// Throws std::invalid_argument: "wrong xml format" when it is not called `name`, "id missing",
/// "wrong id value" when its id is not `id`.
bool readIndexedElement(QXmlStreamReader& reader, const QString& name, int id);
