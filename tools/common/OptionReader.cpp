#include "tools/common/OptionReader.h"

#include "ecu/store/ip_address.h"
#include "orv_decoder/constants.h"

#include <QCommandLineParser>

#include <stdexcept>

namespace cli {

bool OptionReader::isSet(const char* name) const
{
    return mParser.isSet(QLatin1String(name));
}

QString OptionReader::text(const char* name) const
{
    return mParser.value(QLatin1String(name));
}

double OptionReader::number(const char* name, double from, double to, double otherwise) const
{
    if (!isSet(name))
        return otherwise;
    bool isNumber = false;
    const double value = text(name).toDouble(&isNumber);
    // Written so that it refuses "nan" too.
    if (!isNumber || !(value >= from && value <= to))
        refuse(name, QStringLiteral("a number from %1 to %2").arg(from).arg(to));
    return value;
}

std::optional<int> OptionReader::wholeNumber(const char* name, int from, int to) const
{
    if (!isSet(name))
        return std::nullopt;
    return integer(name, text(name), from, to);
}

double OptionReader::share(const char* name) const
{
    return number(name, 0, 1, 0);
}

std::optional<std::uint16_t> OptionReader::port(const char* name, int lowest) const
{
    const std::optional<int> port = wholeNumber(name, lowest, 65535);
    return port ? std::optional(static_cast<std::uint16_t>(*port)) : std::nullopt;
}

std::optional<QString> OptionReader::address(const char* name) const
{
    if (!isSet(name))
        return std::nullopt;
    const QString address = completeAddress(text(name));
    if (address.isEmpty())
        refuse(name, QStringLiteral("an IPv4 address"));
    return address;
}

std::uint64_t OptionReader::seed(const char* name, std::uint64_t otherwise) const
{
    if (!isSet(name))
        return otherwise;
    bool isNumber = false;
    const std::uint64_t value = text(name).toULongLong(&isNumber);
    if (!isNumber)
        refuse(name, QStringLiteral("a whole number from 0"));
    return value;
}

std::uint16_t OptionReader::sensorMask(const char* name) const
{
    std::uint16_t mask = 0;
    const QStringList items = isSet(name) ? text(name).split(QLatin1Char(',')) : QStringList();
    for (const QString& item : items)
        mask |= static_cast<std::uint16_t>(1U << (integer(name, item, 1, orv::kSensorCount) - 1));
    return mask;
}

std::map<std::uint8_t, std::uint8_t> OptionReader::statuses(const char* name) const
{
    std::map<std::uint8_t, std::uint8_t> statuses;
    const QStringList items = mParser.values(QLatin1String(name));
    for (const QString& item : items) {
        const QStringList sides = item.split(QLatin1Char('='));
        if (sides.size() != 2)
            refuse(name, QStringLiteral("CODE=STATUS"));
        const auto code = static_cast<std::uint8_t>(integer(name, sides[0], 0, 255));
        statuses[code] = static_cast<std::uint8_t>(integer(name, sides[1], 0, 255));
    }
    return statuses;
}

int OptionReader::integer(const char* name, const QString& digits, int from, int to) const
{
    bool isNumber = false;
    const int value = digits.toInt(&isNumber);
    if (!isNumber || value < from || value > to)
        refuse(name, QStringLiteral("a whole number from %1 to %2").arg(from).arg(to));
    return value;
}

void OptionReader::refuse(const char* name, const QString& expected) const
{
    throw std::invalid_argument(QStringLiteral("--%1 takes %2, not \"%3\".")
                                    .arg(QLatin1String(name), expected,
                                         mParser.values(QLatin1String(name)).join(QLatin1Char(' ')))
                                    .toStdString());
}

} // namespace cli
