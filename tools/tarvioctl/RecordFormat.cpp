#include "tools/tarvioctl/RecordFormat.h"

#include "orv_decoder/constants.h"

#include <QDateTime>

namespace tarvioctl {

namespace {

std::vector<int> sensorsInRole(const orv::OrvMeasurementResult& result, orv::OrvSensorRole role)
{
    std::vector<int> sensors;
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
        if (result.role(sensor) == role)
            sensors.push_back(shownSensor(sensor));
    return sensors;
}

} // namespace

QString timeText(std::chrono::system_clock::time_point time)
{
    using namespace std::chrono;
    const auto microseconds = duration_cast<std::chrono::microseconds>(time.time_since_epoch());
    const QDateTime dateTime =
        QDateTime::fromMSecsSinceEpoch(duration_cast<milliseconds>(microseconds).count(), Qt::UTC);
    return QStringLiteral("%1%2Z")
        .arg(dateTime.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzz")))
        .arg(microseconds.count() % 1000, 3, 10, QLatin1Char('0'));
}

std::vector<int> sendingSensors(const orv::OrvMeasurementResult& result)
{
    return sensorsInRole(result, orv::OrvSensorRole::Sending);
}

std::vector<int> listeningSensors(const orv::OrvMeasurementResult& result)
{
    return sensorsInRole(result, orv::OrvSensorRole::ReceivingOnly);
}

QString wedgeName(std::size_t index)
{
    static const QString kNames[] = {QStringLiteral("left"), QStringLiteral("middle"),
                                     QStringLiteral("right")};
    return kNames[index];
}

} // namespace tarvioctl
