#include "tools/tarvioctl/configuration_diff.h"

#include "ecu/configuration/SequenceStep.h"
#include "ecu/configuration/binary_angle.h"
#include "ecu/configuration/step_words.h"
#include "orv_decoder/tables.h"

#include <algorithm>

namespace tarvioctl {

namespace {

/// Collects lines "what: from → to" for what is not the same.
class Changes
{
public:
    void add(const QString& what, const QString& from, const QString& to)
    {
        if (from != to)
            mLines += QStringLiteral("%1: %2 → %3").arg(what, from, to);
    }

    QStringList lines() const { return mLines; }

private:
    QStringList mLines;
};

QString sensorName(std::size_t sensor)
{
    return QStringLiteral("sensor %1").arg(sensor + 1);
}

QString thresholdText(std::uint8_t entry)
{
    return QStringLiteral("%1 ms %2")
        .arg(orv::kSegmentDurationsUs[orv::timeIndexOf(entry)] / 1000, 0, 'f', 2)
        .arg(double{orv::kThresholdLevels[orv::levelIndexOf(entry)]}, 0, 'f', 4);
}

QString scaleText(std::uint8_t scale)
{
    const QStringList words{QStringLiteral("50%"), QStringLiteral("62.5%"),
                            QStringLiteral("81.25%"), QStringLiteral("100%")};
    return words.value(scale, QStringLiteral("index %1").arg(scale));
}

QString maskText(std::uint16_t mask)
{
    return QStringLiteral("0x%1").arg(mask, 4, 16, QLatin1Char('0'));
}

// The words that the window shows, then the bits that it does not.
void addStep(Changes& changes, const QString& step, const SequenceStep& from,
             const SequenceStep& to)
{
    const auto name = [&step](const char* what) { return step + QLatin1String(what); };
    changes.add(name(", mode"), modeWords().at(static_cast<int>(modeOf(from))),
                modeWords().at(static_cast<int>(modeOf(to))));
    for (int sensor = 0; sensor < orv::kSensorCount; ++sensor)
        changes.add(step + QStringLiteral(", ") + sensorName(static_cast<std::size_t>(sensor)),
                    stateWords().at(static_cast<int>(stateOf(from, sensor))),
                    stateWords().at(static_cast<int>(stateOf(to, sensor))));
    if (!changes.lines().isEmpty())
        return;
    changes.add(name(", send mask"), maskText(from.sendMask), maskText(to.sendMask));
    changes.add(name(", listen mask"), maskText(from.listenMask), maskText(to.listenMask));
    changes.add(name(", modulation"), QString::number(from.modulation),
                QString::number(to.modulation));
    changes.add(name(", phase code"), QString::number(from.phaseCode),
                QString::number(to.phaseCode));
    changes.add(name(", fifth word"), QString::number(from.fifthWord),
                QString::number(to.fifthWord));
}

QString millimetres(int value)
{
    return QStringLiteral("%1 mm").arg(value);
}

// Neighbouring angles may read the same in degrees.
void addAngle(Changes& changes, const QString& what, std::uint16_t from, std::uint16_t to)
{
    const auto text = [](std::uint16_t angle) {
        return QStringLiteral("%1°").arg(degreesOf(angle), 0, 'f', 2);
    };
    const auto exactText = [text](std::uint16_t angle) {
        return QStringLiteral("%1 (%2 of 65536)").arg(text(angle)).arg(angle);
    };
    if (text(from) != text(to))
        changes.add(what, text(from), text(to));
    else
        changes.add(what, exactText(from), exactText(to));
}

void addPosition(Changes& changes, const QString& sensor, const orv::SensorMountPosition& from,
                 const orv::SensorMountPosition& to)
{
    changes.add(sensor + QStringLiteral(", x"), millimetres(from.x), millimetres(to.x));
    changes.add(sensor + QStringLiteral(", y"), millimetres(from.y), millimetres(to.y));
    changes.add(sensor + QStringLiteral(", height"), millimetres(from.height),
                millimetres(to.height));
    addAngle(changes, sensor + QStringLiteral(", yaw"), from.yaw, to.yaw);
    addAngle(changes, sensor + QStringLiteral(", pitch"), from.pitch, to.pitch);
    addAngle(changes, sensor + QStringLiteral(", roll"), from.roll, to.roll);
}

} // namespace

QStringList thresholdChanges(const EcuConfiguration& from, const EcuConfiguration& to)
{
    Changes changes;
    for (std::size_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
        const orv::SensorThreshold& former = from.thresholds[sensor];
        const orv::SensorThreshold& later = to.thresholds[sensor];
        for (std::size_t entry = 0; entry < orv::kThresholdEntryCount; ++entry)
            changes.add(QStringLiteral("%1, threshold %2").arg(sensorName(sensor)).arg(entry),
                        thresholdText(former.entries[entry]), thresholdText(later.entries[entry]));
        changes.add(sensorName(sensor) + QStringLiteral(", scale"), scaleText(former.scale),
                    scaleText(later.scale));
    }
    return changes.lines();
}

QStringList sequenceChanges(const EcuConfiguration& from, const EcuConfiguration& to)
{
    Changes count;
    count.add(QStringLiteral("sequence"), QStringLiteral("%1 steps").arg(from.sequence.size()),
              QStringLiteral("%1 steps").arg(to.sequence.size()));
    QStringList lines = count.lines();
    const std::size_t common = std::min(from.sequence.size(), to.sequence.size());
    for (std::size_t index = 0; index < common; ++index) {
        Changes changes;
        addStep(changes, QStringLiteral("step %1").arg(index + 1), stepOf(from.sequence[index]),
                stepOf(to.sequence[index]));
        lines += changes.lines();
    }
    return lines;
}

QStringList positionChanges(const EcuConfiguration& from, const EcuConfiguration& to)
{
    Changes changes;
    for (std::size_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
        addPosition(changes, sensorName(sensor), from.positions[sensor], to.positions[sensor]);
    return changes.lines();
}

QStringList changesOf(const QString& element, const EcuConfiguration& from,
                      const EcuConfiguration& to)
{
    if (element == QStringLiteral("Thresholds"))
        return thresholdChanges(from, to);
    if (element == QStringLiteral("MSEQ"))
        return sequenceChanges(from, to);
    if (element == QStringLiteral("MountPositions"))
        return positionChanges(from, to);
    return {};
}

} // namespace tarvioctl
