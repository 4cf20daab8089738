#include "ecu/configuration/threshold_section.h"

#include "ecu/configuration/xml_sections.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/constants.h"

#include <QString>
#include <QXmlStreamReader>

#include <stdexcept>

namespace {

const QString kSensorElement = QStringLiteral("Sensor");

// Whether the section's end is still ahead of the reader.
enum class Reached {
    SectionEnd,
    LastSensor,
};

orv::SensorThreshold readRecord(QXmlStreamReader& reader, std::uint8_t sensorId)
{
    orv::SensorThreshold record;
    std::string reason;
    if (!orv::checkedThreshold(readBase64(reader), sensorId, record, reason))
        throw std::runtime_error("wrong thresholds data format");
    return record;
}

Reached readRecords(QXmlStreamReader& reader, std::vector<orv::SensorThreshold>& records)
{
    for (std::uint8_t id = 0; id < orv::kSensorCount; ++id) {
        if (!readIndexedElement(reader, kSensorElement, id))
            return Reached::SectionEnd;
        records.push_back(readRecord(reader, id));
    }
    return Reached::LastSensor;
}

} // namespace

void writeThresholdSection(QXmlStreamWriter& writer, std::span<const orv::SensorThreshold> records)
{
    int id = 0;
    for (const orv::SensorThreshold& record : records)
        writeIndexedElement(writer, kSensorElement, id++, orv::encodeThreshold(record));
}

bool readThresholdSection(QXmlStreamReader& reader, std::vector<orv::SensorThreshold>& records,
                          std::string& error)
{
    try {
        if (readRecords(reader, records) == Reached::LastSensor)
            reader.skipCurrentElement();
        return true;
    } catch (const std::invalid_argument& wrongElement) {
        error = wrongElement.what();
        reader.skipCurrentElement(); // the element that was refused
    } catch (const std::runtime_error& wrongContent) {
        error = wrongContent.what();
    }
    reader.skipCurrentElement();
    return false;
}
