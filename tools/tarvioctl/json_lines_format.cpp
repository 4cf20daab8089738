#include "ecu/configuration/binary_angle.h"
#include "tools/tarvioctl/JsonText.h"
#include "tools/tarvioctl/RecordFormat.h"

#include <span>

namespace tarvioctl {

namespace {

void addNumbers(JsonText& json, const char* name, const std::vector<int>& numbers)
{
    json.name(name);
    json.begin('[');
    for (const int number : numbers)
        json.value(qint64{number});
    json.end(']');
}

void addPoint(JsonText& json, const orv::OrvPoint& point)
{
    json.begin('{');
    json.field("xMm", qint64{point.x});
    json.field("yMm", qint64{point.y});
    json.end('}');
}

void addPoints(JsonText& json, const char* name, std::span<const orv::OrvPoint> points)
{
    json.name(name);
    json.begin('[');
    for (const orv::OrvPoint& point : points)
        addPoint(json, point);
    json.end(']');
}

void addEcho(JsonText& json, std::uint8_t sensorId, const orv::OrvSensorEcho& echo)
{
    json.begin('{');
    json.field("sensor", qint64{shownSensor(sensorId)});
    json.field("timeOfFlightUs", qint64{echo.timeOfFlight});
    json.field("magnitude", qint64{echo.magnitude});
    json.field("secondValue", qint64{echo.secondValue});
    json.end('}');
}

void addDistance(JsonText& json, const QString& wedge, const orv::OrvDistanceItem& item)
{
    json.begin('{');
    json.field("wedge", wedge);
    json.field("distanceMm", qint64{item.distanceMm});
    json.name("firstPoint");
    addPoint(json, item.firstPoint);
    json.name("secondPoint");
    addPoint(json, item.secondPoint);
    json.end('}');
}

void addDistances(JsonText& json, const orv::OrvFreespaceEntry& entry)
{
    json.name("distances");
    json.begin('[');
    for (std::size_t index = 0; index < entry.distances.size(); ++index)
        if (entry.distances[index].isPresent())
            addDistance(json, wedgeName(index), entry.distances[index]);
    json.end(']');
}

void addEntry(JsonText& json, const orv::OrvFreespaceEntry& entry)
{
    json.begin('{');
    json.field("sensor", qint64{shownSensor(entry.sensorId)});
    json.field("xMm", qint64{entry.position.x});
    json.field("yMm", qint64{entry.position.y});
    json.field("directionDegrees", degreesOf(entry.position.direction));
    addPoints(json, "corners", entry.corners);
    addPoints(json, "arcEnds", entry.arcEnds);
    addPoints(json, "secondPair", entry.secondPair);
    addDistances(json, entry);
    json.end('}');
}

JsonText beginRecord(const Arrival& arrival, const QString& stream)
{
    JsonText json;
    json.begin('{');
    json.field("record", static_cast<qint64>(arrival.number));
    json.field("arrivalTime", timeText(arrival.time));
    json.field("sender", arrival.sender);
    json.field("stream", stream);
    return json;
}

class JsonLinesFormat : public RecordFormat
{
public:
    QString text(const Arrival& arrival, const orv::OrvMeasurementResult& result) const override
    {
        JsonText json = beginRecord(arrival, QStringLiteral("measurement"));
        json.field("measurementWord", qint64{result.measurementWord});
        addNumbers(json, "sendingSensors", sendingSensors(result));
        addNumbers(json, "listeningSensors", listeningSensors(result));
        json.name("echoes");
        json.begin('[');
        for (const auto& [sensorId, echoes] : result.echoes)
            for (const orv::OrvSensorEcho& echo : echoes)
                addEcho(json, sensorId, echo);
        json.end(']');
        json.end('}');
        return json.text();
    }

    QString text(const Arrival& arrival, const orv::OrvFreespacePackage& package) const override
    {
        JsonText json = beginRecord(arrival, QStringLiteral("freespace"));
        json.name("entries");
        json.begin('[');
        for (const orv::OrvFreespaceEntry& entry : package.entries)
            addEntry(json, entry);
        json.end(']');
        json.end('}');
        return json.text();
    }
};

} // namespace

std::unique_ptr<RecordFormat> jsonLinesFormat()
{
    return std::make_unique<JsonLinesFormat>();
}

} // namespace tarvioctl
