#include "ecu/store/ip_address.h"

#include <QString>
#include <QStringList>

#include <algorithm>

namespace {

constexpr QLatin1Char kDot('.');

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

} // namespace

bool isOctet(const QString& text)
{
    return !text.isEmpty() && text.size() <= kMaxOctetDigits &&
           std::all_of(text.begin(), text.end(), isDigit) && text.toInt() <= kMaxOctet;
}

QString withoutLeadingZeros(const QString& octet)
{
    return octet.isEmpty() ? octet : QString::number(octet.toUInt());
}

QString completeAddress(const QString& text)
{
    QStringList octets = text.trimmed().split(kDot);
    if (octets.size() != kOctetCount || !std::all_of(octets.begin(), octets.end(), isOctet))
        return {};
    for (QString& octet : octets)
        octet = withoutLeadingZeros(octet);
    return octets.join(kDot);
}
