#include "ecu/configuration/binary_angle.h"
#include "tools/tarvioctl/RecordFormat.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <span>

namespace tarvioctl {

namespace {

QJsonArray listOf(const std::vector<int>& sensors)
{
    QJsonArray list;
    for (const int sensor : sensors)
        list.append(sensor);
    return list;
}

QJsonObject objectOf(const orv::OrvPoint& point)
{
    return {{QStringLiteral("xMm"), point.x}, {QStringLiteral("yMm"), point.y}};
}

QJsonArray listOf(std::span<const orv::OrvPoint> points)
{
    QJsonArray list;
    for (const orv::OrvPoint& point : points)
        list.append(objectOf(point));
    return list;
}

QJsonObject objectOf(std::uint8_t sensorId, const orv::OrvSensorEcho& echo)
{
    return {{QStringLiteral("sensor"), shownSensor(sensorId)},
            {QStringLiteral("timeOfFlightUs"), echo.timeOfFlight},
            {QStringLiteral("magnitude"), echo.magnitude},
            {QStringLiteral("secondValue"), echo.secondValue}};
}

QJsonArray listOfEchoes(const orv::OrvMeasurementResult& result)
{
    QJsonArray list;
    for (const auto& [sensorId, echoes] : result.echoes)
        for (const orv::OrvSensorEcho& echo : echoes)
            list.append(objectOf(sensorId, echo));
    return list;
}

QJsonArray listOfDistances(const orv::OrvFreespaceEntry& entry)
{
    QJsonArray list;
    for (std::size_t index = 0; index < entry.distances.size(); ++index) {
        const orv::OrvDistanceItem& item = entry.distances[index];
        if (item.isPresent())
            list.append(QJsonObject{{QStringLiteral("wedge"), wedgeName(index)},
                                    {QStringLiteral("distanceMm"), item.distanceMm},
                                    {QStringLiteral("firstPoint"), objectOf(item.firstPoint)},
                                    {QStringLiteral("secondPoint"), objectOf(item.secondPoint)}});
    }
    return list;
}

QJsonObject objectOf(const orv::OrvFreespaceEntry& entry)
{
    const orv::OrvSensorPosition& position = entry.position;
    return {{QStringLiteral("sensor"), shownSensor(entry.sensorId)},
            {QStringLiteral("xMm"), position.x},
            {QStringLiteral("yMm"), position.y},
            {QStringLiteral("directionDegrees"), degreesOf(position.direction)},
            {QStringLiteral("corners"), listOf(entry.corners)},
            {QStringLiteral("arcEnds"), listOf(entry.arcEnds)},
            {QStringLiteral("secondPair"), listOf(entry.secondPair)},
            {QStringLiteral("distances"), listOfDistances(entry)}};
}

QJsonObject recordOf(const Arrival& arrival, const QString& stream)
{
    return {{QStringLiteral("record"), static_cast<qint64>(arrival.number)},
            {QStringLiteral("arrivalTime"), timeText(arrival.time)},
            {QStringLiteral("sender"), arrival.sender},
            {QStringLiteral("stream"), stream}};
}

QString lineOf(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

class JsonLinesFormat : public RecordFormat
{
public:
    QString text(const Arrival& arrival, const orv::OrvMeasurementResult& result) const override
    {
        QJsonObject record = recordOf(arrival, QStringLiteral("measurement"));
        record[QStringLiteral("measurementWord")] = static_cast<qint64>(result.measurementWord);
        record[QStringLiteral("sendingSensors")] = listOf(sendingSensors(result));
        record[QStringLiteral("listeningSensors")] = listOf(listeningSensors(result));
        record[QStringLiteral("echoes")] = listOfEchoes(result);
        return lineOf(record);
    }

    QString text(const Arrival& arrival, const orv::OrvFreespacePackage& package) const override
    {
        QJsonArray entries;
        for (const orv::OrvFreespaceEntry& entry : package.entries)
            entries.append(objectOf(entry));
        QJsonObject record = recordOf(arrival, QStringLiteral("freespace"));
        record[QStringLiteral("entries")] = entries;
        return lineOf(record);
    }
};

} // namespace

std::unique_ptr<RecordFormat> jsonLinesFormat()
{
    return std::make_unique<JsonLinesFormat>();
}

} // namespace tarvioctl
