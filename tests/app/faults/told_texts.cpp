#include "tests/app/faults/told_texts.h"

#include <algorithm>

namespace {

using Exchanges = std::vector<CarriedOut>;

const QString kFailure = QStringLiteral("Communication error: %1");

QString firstReason(const Exchanges& exchanges)
{
    const auto failed = std::ranges::find_if(
        exchanges, [](const CarriedOut& exchange) { return !exchange.reason.isEmpty(); });
    return failed == exchanges.end() ? QString() : failed->reason;
}

QStringList failedParts(const Exchanges& exchanges)
{
    const QStringList names = {"thresholds", "measurement sequence", "sensor positions"};
    QStringList failed;
    for (const CarriedOut& exchange : exchanges) {
        const QString& name = names[static_cast<int>(exchange.group)];
        if (!exchange.reason.isEmpty() && !failed.contains(name))
            failed << name;
    }
    return failed;
}

Told parts(const Exchanges& exchanges, const QString& failure, const QString& success)
{
    const QStringList failed = failedParts(exchanges);
    if (failed.isEmpty())
        return {.boxes = {}, .status = success};
    return {.boxes = {kFailure.arg(failure + failed.join('\n'))}, .status = {}};
}

} // namespace

told::Tell told::afterQuestion(const char* title, Tell tell)
{
    const QString question =
        QString::fromLatin1(title) +
        QStringLiteral(": Current changes would be overwritten. Are You sure?");
    return [question, tell = std::move(tell)](const Exchanges& exchanges) {
        Told told = tell(exchanges);
        told.boxes.prepend(question);
        return told;
    };
}

Told told::failures(const Exchanges& exchanges)
{
    const QString reason = firstReason(exchanges);
    return reason.isEmpty() ? Told() : Told{.boxes = {kFailure.arg(reason)}, .status = {}};
}

Told told::failuresBySensor(const Exchanges& exchanges)
{
    QStringList lines;
    for (const CarriedOut& exchange : exchanges) {
        if (!exchange.reason.isEmpty())
            lines << QStringLiteral("Sensor %1: ").arg(exchange.exchange.sensor + 1, 2) +
                         exchange.reason;
    }
    return lines.isEmpty() ? Told() : Told{.boxes = {kFailure.arg(lines.join('\n'))}, .status = {}};
}

Told told::readParts(const Exchanges& exchanges)
{
    return parts(exchanges,
                 QStringLiteral("Some communication errors are detected during reading \n\n"),
                 QStringLiteral("ECU data sync: SUCCESS!"));
}

Told told::transmittedParts(const Exchanges& exchanges)
{
    return parts(exchanges,
                 QStringLiteral("Some communication errors are detected during transmitting. \n\n"),
                 QStringLiteral("Setting successfully transmitted to ECU!"));
}

Told told::transmittedConnection(const Exchanges& exchanges)
{
    const QString success =
        QStringLiteral("Settings written: Network settings are successfully transmitted.\n"
                       "Please reset the ECU to apply new settings");
    const QString reason = firstReason(exchanges);
    return {.boxes = {reason.isEmpty() ? success : kFailure.arg(reason)}, .status = {}};
}

Told told::lostConnection(const Exchanges& exchanges)
{
    if (firstReason(exchanges).isEmpty())
        return {};
    return {.boxes = {},
            .status = QStringLiteral("Connection to ECU lost"),
            .link = QStringLiteral("ECU disconnected.")};
}

Told told::foundConnection(const Exchanges&)
{
    return {.boxes = {}, .status = QStringLiteral("ECU (re)connected. Firmware version: 2.14.0")};
}

Told told::recorded(const Exchanges&)
{
    return {.boxes = {}, .status = {}, .link = QStringLiteral("ECU connected.")};
}
