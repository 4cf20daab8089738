#pragma once

#include "ecu/configuration/SectionResult.h"
#include "orv_decoder/MseqStep.h"

#include <span>
#include <vector>

class QXmlStreamReader;
class QXmlStreamWriter;

/// Writes one element for each step into the open section of a settings file.
void writeSequenceSection(QXmlStreamWriter& writer, std::span<const orv::MseqStep> steps);

/// Reads the steps of the current section. A thirteenth is left to the reader's caller. Fails with
/// "wrong xml format", "id missing", "wrong id value", "wrong data format".
SectionResult<std::vector<orv::MseqStep>> readSequenceSection(QXmlStreamReader& reader);
