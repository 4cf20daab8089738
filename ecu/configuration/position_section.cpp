#include "ecu/configuration/position_section.h"

#include "ecu/configuration/xml_sections.h"

void writePositionSection(QXmlStreamWriter& writer, const orv::SensorMountPositions& positions)
{
    writeBase64(writer, orv::encodeMountPositions(positions));
}

SectionResult<orv::SensorMountPositions> readPositionSection(QXmlStreamReader& reader)
{
    if (const auto positions = orv::decodeMountPositions(readBase64(reader)))
        return {.value = positions};
    return {.error = "Invalid data format of sensor positions"};
}
