#include "ecu/configuration/threshold_section.h"

#include "ecu/configuration/xml_sections.h"
#include "orv_decoder/constants.h"

namespace {

const QString kSensorElement = QStringLiteral("Sensor");

std::optional<orv::SensorThreshold> decodedRecord(std::span<const std::uint8_t> bytes, int sensorId)
{
    return orv::checkedThreshold(bytes, static_cast<std::uint8_t>(sensorId)).record;
}

} // namespace

void writeThresholdSection(QXmlStreamWriter& writer, std::span<const orv::SensorThreshold> records)
{
    writeIndexedElements(writer, kSensorElement, records, orv::encodeThreshold);
}

SectionResult<std::vector<orv::SensorThreshold>> readThresholdSection(QXmlStreamReader& reader)
{
    SectionResult<std::vector<orv::SensorThreshold>> section =
        readIndexedElements<orv::SensorThreshold>(reader, kSensorElement, orv::kSensorCount,
                                                  "wrong thresholds data format", decodedRecord);
    // There is no thirteenth sensor.
    if (section.value && section.value->size() == orv::kSensorCount)
        reader.skipCurrentElement();
    return section;
}
