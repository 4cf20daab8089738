#include "ecu/configuration/EcuConfiguration.h"

#include "ecu/configuration/all_thresholds.h"
#include "ecu/configuration/position_section.h"
#include "ecu/configuration/sequence_section.h"
#include "ecu/configuration/threshold_section.h"
#include "orv_decoder/OrvCtrlClient.h"

namespace {

void takeThresholds(EcuConfiguration& held, std::span<const orv::SensorThreshold> records)
{
    for (const orv::SensorThreshold& record : records)
        held.thresholds.at(record.sensorId) = record;
}

// A read that fails in the middle keeps no half of a sequence.
bool readSequence(EcuConfiguration& held, orv::OrvCtrlClient& client)
{
    std::vector<orv::MseqStep> steps;
    const bool isRead = client.readMeasurementSequence(steps);
    if (isRead)
        held.sequence = std::move(steps);
    return isRead;
}

bool readThresholds(EcuConfiguration& held, orv::OrvCtrlClient& client)
{
    const ThresholdReading reading = readAllThresholds(client);
    takeThresholds(held, reading.records);
    return reading.failures.isEmpty();
}

PartHolder sequenceHolder(EcuConfiguration& held, orv::OrvCtrlClient* client)
{
    return {
        .writeXml = [&held](auto& writer) { writeSequenceSection(writer, held.sequence); },
        .readFromXml =
            [&held](auto& reader, auto& error) {
                return takeSection(readSequenceSection(reader), error,
                                   [&held](const auto& steps) { held.sequence = steps; });
            },
        .readFromEcu = [&held, client] { return client && readSequence(held, *client); },
        .writeToEcu =
            [&held, client] { return client && client->writeMeasurementSequence(held.sequence); }};
}

PartHolder thresholdHolder(EcuConfiguration& held, orv::OrvCtrlClient* client)
{
    return {
        .writeXml = [&held](auto& writer) { writeThresholdSection(writer, held.thresholds); },
        .readFromXml =
            [&held](auto& reader, auto& error) {
                return takeSection(readThresholdSection(reader), error,
                                   [&held](const auto& records) { takeThresholds(held, records); });
            },
        .readFromEcu = [&held, client] { return client && readThresholds(held, *client); },
        .writeToEcu = [&held,
                       client] { return client && writeAllThresholds(*client, held.thresholds); }};
}

PartHolder positionHolder(EcuConfiguration& held, orv::OrvCtrlClient* client)
{
    return {
        .writeXml = [&held](auto& writer) { writePositionSection(writer, held.positions); },
        .readFromXml =
            [&held](auto& reader, auto& error) {
                return takeSection(readPositionSection(reader), error,
                                   [&held](const auto& positions) { held.positions = positions; });
            },
        .readFromEcu = [&held,
                        client] { return client && client->readSensorPositions(held.positions); },
        .writeToEcu = [&held,
                       client] { return client && client->writeSensorPositions(held.positions); }};
}

} // namespace

std::array<orv::SensorThreshold, orv::kSensorCount> EcuConfiguration::emptyThresholds()
{
    std::array<orv::SensorThreshold, orv::kSensorCount> records{};
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
        records[sensor].sensorId = sensor;
    return records;
}

QStringList EcuConfiguration::readFrom(orv::OrvCtrlClient& client)
{
    return readAllFromEcu(ecuParts(holdersOf(*this, &client)));
}

QStringList EcuConfiguration::writeTo(orv::OrvCtrlClient& client) const
{
    EcuConfiguration written = *this;
    return writeAllToEcu(ecuParts(holdersOf(written, &client)));
}

ConfigurationHolders holdersOf(EcuConfiguration& configuration, orv::OrvCtrlClient* client)
{
    return {.sequence = sequenceHolder(configuration, client),
            .thresholds = thresholdHolder(configuration, client),
            .positions = positionHolder(configuration, client)};
}
