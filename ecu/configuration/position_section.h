#pragma once

#include "ecu/configuration/SectionResult.h"
#include "orv_decoder/SensorMountPosition.h"

class QXmlStreamReader;
class QXmlStreamWriter;

/// Writes the whole table into the open section of a settings file.
void writePositionSection(QXmlStreamWriter& writer, const orv::SensorMountPositions& positions);

/// Reads the table of the current section and leaves the reader at the section's end. Fails with
/// "Invalid data format of sensor positions".
SectionResult<orv::SensorMountPositions> readPositionSection(QXmlStreamReader& reader);
