#pragma once

#include "orv_decoder/MseqStep.h"

#include <span>
#include <string>
#include <vector>

class QXmlStreamReader;
class QXmlStreamWriter;

/// Writes one element for each step into the open section of a settings file.
void writeSequenceSection(QXmlStreamWriter& writer, std::span<const orv::MseqStep> steps);

/// Reads the steps of the current section. A thirteenth is left to the reader's caller. False
/// with the reason in `error`: "wrong xml format", "id missing", "wrong id value", "wrong data
/// format".
bool readSequenceSection(QXmlStreamReader& reader, std::vector<orv::MseqStep>& steps,
                         std::string& error);
