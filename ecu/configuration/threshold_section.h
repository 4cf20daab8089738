#pragma once

#include "ecu/configuration/SectionResult.h"
#include "orv_decoder/SensorThreshold.h"

#include <span>
#include <vector>

class QXmlStreamReader;
class QXmlStreamWriter;

/// Writes one element for each record into the open section of a settings file.
void writeThresholdSection(QXmlStreamWriter& writer, std::span<const orv::SensorThreshold> records);

/// Reads the records of the current section and leaves the reader at the section's end; elements
/// behind the twelfth sensor are passed over. Fails with "wrong xml format", "id missing", "wrong
/// id value", "wrong thresholds data format".
SectionResult<std::vector<orv::SensorThreshold>> readThresholdSection(QXmlStreamReader& reader);
