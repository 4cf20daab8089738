#include "tools/tarvioctl/RecordFormat.h"

#include <QStringList>

#include <array>

namespace tarvioctl {

namespace {

// The columns behind those of every record, empty where they do not apply.
enum Column {
    MeasurementWord,
    SendingSensors,
    ListeningSensors,
    Sensor,
    TimeOfFlightUs,
    Magnitude,
    SecondValue,
    Wedge,
    DistanceMm,
    FirstXMm,
    FirstYMm,
    SecondXMm,
    SecondYMm,
    ColumnCount
};

using Fields = std::array<QString, ColumnCount>;

QString sensorColumn(const std::vector<int>& sensors)
{
    QStringList numbers;
    for (const int sensor : sensors)
        numbers += QString::number(sensor);
    return numbers.join(QLatin1Char(' '));
}

// What all lines of a record begin with.
QString startOf(const Arrival& arrival, const QString& stream)
{
    return QStringList{QString::number(arrival.number), timeText(arrival.time), arrival.sender,
                       stream}
        .join(QLatin1Char(','));
}

QString lineOf(const QString& start, const Fields& fields)
{
    QString line = start;
    for (const QString& field : fields) {
        line += QLatin1Char(',');
        line += field;
    }
    return line;
}

Fields withEcho(Fields fields, std::uint8_t sensorId, const orv::OrvSensorEcho& echo)
{
    fields[Sensor] = QString::number(shownSensor(sensorId));
    fields[TimeOfFlightUs] = QString::number(echo.timeOfFlight);
    fields[Magnitude] = QString::number(echo.magnitude);
    fields[SecondValue] = QString::number(echo.secondValue);
    return fields;
}

Fields fieldsOf(const orv::OrvFreespaceEntry& entry, std::size_t index)
{
    const orv::OrvDistanceItem& item = entry.distances[index];
    Fields fields;
    fields[Sensor] = QString::number(shownSensor(entry.sensorId));
    fields[Wedge] = wedgeName(index);
    fields[DistanceMm] = QString::number(item.distanceMm);
    fields[FirstXMm] = QString::number(item.firstPoint.x);
    fields[FirstYMm] = QString::number(item.firstPoint.y);
    fields[SecondXMm] = QString::number(item.secondPoint.x);
    fields[SecondYMm] = QString::number(item.secondPoint.y);
    return fields;
}

class CsvFormat : public RecordFormat
{
public:
    QString header() const override
    {
        return QStringLiteral("record,arrivalTime,sender,stream,measurementWord,sendingSensors,"
                              "listeningSensors,sensor,timeOfFlightUs,magnitude,secondValue,"
                              "wedge,distanceMm,firstXMm,firstYMm,secondXMm,secondYMm");
    }

    QString text(const Arrival& arrival, const orv::OrvMeasurementResult& result) const override
    {
        const QString start = startOf(arrival, QStringLiteral("measurement"));
        Fields fields;
        fields[MeasurementWord] = QString::number(result.measurementWord);
        fields[SendingSensors] = sensorColumn(sendingSensors(result));
        fields[ListeningSensors] = sensorColumn(listeningSensors(result));
        QStringList lines;
        for (const auto& [sensorId, echoes] : result.echoes)
            for (const orv::OrvSensorEcho& echo : echoes)
                lines += lineOf(start, withEcho(fields, sensorId, echo));
        return lines.isEmpty() ? lineOf(start, fields) : lines.join(QLatin1Char('\n'));
    }

    QString text(const Arrival& arrival, const orv::OrvFreespacePackage& package) const override
    {
        const QString start = startOf(arrival, QStringLiteral("freespace"));
        QStringList lines;
        for (const orv::OrvFreespaceEntry& entry : package.entries)
            for (std::size_t index = 0; index < entry.distances.size(); ++index)
                if (entry.distances[index].isPresent())
                    lines += lineOf(start, fieldsOf(entry, index));
        return lines.isEmpty() ? lineOf(start, {}) : lines.join(QLatin1Char('\n'));
    }
};

} // namespace

std::unique_ptr<RecordFormat> csvFormat()
{
    return std::make_unique<CsvFormat>();
}

} // namespace tarvioctl
