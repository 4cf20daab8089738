#include "tests/tools/wireshark/decoder_readings.h"

#include "orv_decoder/ControlFrame.h"
#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "orv_decoder/tables.h"
#include "tools/ecu_simulator/EcuCommands.h"

#include <QString>

#include <optional>

namespace {

QString dotted(std::uint32_t address)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(address & 0xFF)
        .arg(address >> 8 & 0xFF)
        .arg(address >> 16 & 0xFF)
        .arg(address >> 24);
}

double degrees(std::uint16_t angle)
{
    return angle * 360.0 / 65536;
}

QJsonArray jsonOfEcho(const orv::OrvSensorEcho& echo)
{
    const std::size_t index = orv::magnitudeIndex(echo.magnitude);
    return {echo.timeOfFlight, echo.magnitude, double(orv::kMagnitudesDb[index]),
            double(orv::kMagnitudeLevels[index]), echo.secondValue};
}

QJsonArray jsonOfPoint(orv::OrvPoint point)
{
    return {point.x, point.y};
}

template<std::size_t N>
QJsonArray jsonOfPoints(const std::array<orv::OrvPoint, N>& points)
{
    QJsonArray array;
    for (const orv::OrvPoint point : points)
        array += jsonOfPoint(point);
    return array;
}

QJsonArray jsonOfDistances(const orv::OrvFreespaceEntry& entry)
{
    QJsonArray array;
    for (std::size_t i = 0; i < entry.distances.size(); ++i) {
        const orv::OrvDistanceItem& item = entry.distances[i];
        if (item.isPresent())
            array += QJsonArray{int(i), item.distanceMm, jsonOfPoint(item.firstPoint),
                                jsonOfPoint(item.secondPoint)};
    }
    return array;
}

QJsonObject jsonOfEntry(const orv::OrvFreespaceEntry& entry)
{
    const orv::OrvSensorPosition& position = entry.position;
    return {{"sensor", entry.sensorId},
            {"corners", jsonOfPoints(entry.corners)},
            {"arcEnds", jsonOfPoints(entry.arcEnds)},
            {"secondPair", jsonOfPoints(entry.secondPair)},
            {"position", QJsonArray{position.x, position.y, position.direction}},
            {"degrees", degrees(position.direction)},
            {"distances", jsonOfDistances(entry)}};
}

// Writes carry a record behind the access, reads nothing or a sensor.
QJsonObject recordOfRequest(const orv::ControlRequest& request)
{
    if (static_cast<orv::ControlCommand>(request.code) == orv::ControlCommand::FirmwareVersion)
        return {};
    const std::span<const std::uint8_t> rest = std::span(request.payload).subspan(1);
    switch (rest.size()) {
    case 0:
        return {};
    case 1:
        return request.code == 0 ? jsonOf(std::vector<orv::MseqStep>())
                                 : QJsonObject{{"sensor", rest.front()}};
    case orv::SensorThreshold::kWireSize:
        return jsonOf(orv::decodeThreshold(rest).value());
    case orv::EcuNetworkSettings::kWireSize:
        return jsonOf(orv::decodeNetworkSettings(rest).value());
    case orv::kSensorCount* orv::SensorMountPosition::kWireSize:
        return jsonOf(orv::decodeMountPositions(rest).value());
    default:
        break;
    }
    std::vector<orv::MseqStep> steps;
    for (auto left = rest.subspan(1); !left.empty(); left = left.subspan(orv::MseqStep::kWireSize))
        steps.push_back(orv::decodeStep(left).value());
    return jsonOf(steps);
}

int statusFromSimulatedEcu(std::span<const std::uint8_t> datagram)
{
    ecusim::EcuState state = ecusim::defaultEcuState();
    const auto answer = ecusim::EcuCommands(state, {}).answer(datagram, 0);
    return answer.reply[answer.reply.size() - 2];
}

} // namespace

QJsonObject readingOfMeasurement(std::span<const std::uint8_t> datagram)
{
    const auto result = orv::decodeDatagram<orv::OrvMeasurementResult>(datagram);
    if (!result)
        return {{"accepted", false}};
    QJsonObject sensors;
    for (const auto& [id, echoes] : result->echoes) {
        QJsonArray array = {static_cast<int>(result->role(id))};
        for (const orv::OrvSensorEcho& echo : echoes)
            array += jsonOfEcho(echo);
        sensors[QString::number(id)] = array;
    }
    return {{"accepted", true},
            {"word", qint64{result->measurementWord}},
            {"send", result->sendMask},
            {"receive", result->receiveMask},
            {"sensors", sensors}};
}

QJsonObject readingOfFreespace(std::span<const std::uint8_t> datagram)
{
    const auto package = orv::decodeDatagram<orv::OrvFreespacePackage>(datagram);
    if (!package)
        return {{"accepted", false}};
    QJsonArray entries;
    for (const orv::OrvFreespaceEntry& entry : package->entries)
        entries += jsonOfEntry(entry);
    return {{"accepted", true}, {"entries", entries}};
}

QJsonObject readingOfRequest(std::span<const std::uint8_t> datagram)
{
    const auto request = orv::decodeRequest(datagram);
    QJsonObject reading = {{"status", statusFromSimulatedEcu(datagram)}};
    if (!request)
        return reading;
    reading["code"] = request->code;
    if (reading["status"] == 0)
        reading["record"] = recordOfRequest(*request);
    return reading;
}

QJsonObject jsonOf(const orv::SensorThreshold& threshold)
{
    QJsonArray segments;
    for (const std::uint8_t entry : threshold.entries) {
        const std::size_t time = orv::timeIndexOf(entry);
        const std::size_t level = orv::levelIndexOf(entry);
        segments += QJsonArray{int(time), int(level), orv::kSegmentDurationsUs[time],
                               double(orv::kThresholdLevels[level]),
                               double(orv::kThresholdLevelsDb[level])};
    }
    return {{"sensor", threshold.sensorId}, {"segments", segments}, {"scale", threshold.scale}};
}

QJsonObject jsonOf(const std::vector<orv::MseqStep>& steps)
{
    QJsonArray array;
    for (const orv::MseqStep& step : steps)
        array += QJsonArray{step.activeMask, step.passiveMask, step.modulation, step.code,
                            step.fifthValue};
    return {{"stepCount", int(steps.size())}, {"steps", array}};
}

QJsonObject jsonOf(const orv::FirmwareVersion& version)
{
    return {{"firmware", QString::fromStdString(version.text())}};
}

QJsonObject jsonOf(const orv::EcuNetworkSettings& settings)
{
    return {
        {"addresses", QJsonArray{dotted(settings.ecuIp), dotted(settings.subnetMask),
                                 dotted(settings.gateway), dotted(settings.hostIp)}},
        {"ports", QJsonArray{settings.receivePort, settings.controlPort, settings.freespacePort}}};
}

QJsonObject jsonOf(const orv::SensorMountPositions& positions)
{
    QJsonArray array;
    for (const orv::SensorMountPosition& position : positions)
        array += QJsonArray{position.x,
                            position.y,
                            position.height,
                            position.yaw,
                            position.pitch,
                            position.roll,
                            degrees(position.yaw),
                            degrees(position.pitch),
                            degrees(position.roll)};
    return {{"positions", array}};
}
