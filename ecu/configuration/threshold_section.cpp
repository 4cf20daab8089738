#include "ecu/configuration/threshold_section.h"

#include "ecu/configuration/xml_sections.h"
#include "orv_decoder/constants.h"

#include <QString>
#include <QXmlStreamReader>

#include <stdexcept>

namespace {

const QString kSensorElement = QStringLiteral("Sensor");

orv::SensorThreshold readRecord(QXmlStreamReader& reader, std::uint8_t sensorId)
{
    const auto record = orv::checkedThreshold(readBase64(reader), sensorId).record;
    if (!record)
        throw std::invalid_argument("wrong thresholds data format");
    return *record;
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
        while (records.size() < orv::kSensorCount) {
            const auto id = static_cast<std::uint8_t>(records.size());
            if (!readIndexedElement(reader, kSensorElement, id))
                return true;
            records.push_back(readRecord(reader, id));
        }
    } catch (const std::invalid_argument& wrong) {
        error = wrong.what();
        return false;
    }
    // There is no thirteenth sensor.
    reader.skipCurrentElement();
    return true;
}
