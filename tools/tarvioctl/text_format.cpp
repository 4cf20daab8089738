#include "tools/tarvioctl/RecordFormat.h"

#include <QStringList>

namespace tarvioctl {

namespace {

QString listText(const std::vector<int>& sensors)
{
    QStringList numbers;
    for (const int sensor : sensors)
        numbers += QString::number(sensor);
    return numbers.isEmpty() ? QStringLiteral("none") : numbers.join(QLatin1Char(','));
}

QString echoesText(std::uint8_t sensorId, const std::vector<orv::OrvSensorEcho>& echoes)
{
    QStringList texts;
    for (const orv::OrvSensorEcho& echo : echoes)
        texts += QStringLiteral("%1 us magnitude %2").arg(echo.timeOfFlight).arg(echo.magnitude);
    return QStringLiteral("; sensor %1: %2")
        .arg(shownSensor(sensorId))
        .arg(texts.join(QStringLiteral(", ")));
}

QString entryText(const orv::OrvFreespaceEntry& entry)
{
    QStringList texts;
    for (std::size_t index = 0; index < entry.distances.size(); ++index)
        if (entry.distances[index].isPresent())
            texts += QStringLiteral("%1 %2 mm")
                         .arg(wedgeName(index))
                         .arg(entry.distances[index].distanceMm);
    return QStringLiteral("; sensor %1: %2")
        .arg(shownSensor(entry.sensorId))
        .arg(texts.isEmpty() ? QStringLiteral("free") : texts.join(QStringLiteral(", ")));
}

class TextFormat : public RecordFormat
{
public:
    QString text(const Arrival& arrival, const orv::OrvMeasurementResult& result) const override
    {
        QString line = QStringLiteral("%1 measurement %2 from %3: sending %4, listening %5")
                           .arg(timeText(arrival.time))
                           .arg(result.measurementWord)
                           .arg(arrival.sender, listText(sendingSensors(result)),
                                listText(listeningSensors(result)));
        for (const auto& [sensorId, echoes] : result.echoes)
            line += echoesText(sensorId, echoes);
        return line;
    }

    QString text(const Arrival& arrival, const orv::OrvFreespacePackage& package) const override
    {
        QString line = QStringLiteral("%1 freespace from %2: %3 sensors")
                           .arg(timeText(arrival.time), arrival.sender)
                           .arg(package.entries.size());
        for (const orv::OrvFreespaceEntry& entry : package.entries)
            line += entryText(entry);
        return line;
    }
};

} // namespace

std::unique_ptr<RecordFormat> textFormat()
{
    return std::make_unique<TextFormat>();
}

} // namespace tarvioctl
