#include "tools/tarvioctl/texts.h"

#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/constants.h"

#include <stdexcept>

namespace tarvioctl {

QString dotted(std::uint32_t address)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(address & 0xFF)
        .arg(address >> 8 & 0xFF)
        .arg(address >> 16 & 0xFF)
        .arg(address >> 24);
}

std::uint8_t sensorOf(const QString& text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < 1 || number > orv::kSensorCount)
        throw std::invalid_argument(QStringLiteral("A sensor is a number from 1 to %1, not \"%2\".")
                                        .arg(orv::kSensorCount)
                                        .arg(text)
                                        .toStdString());
    return static_cast<std::uint8_t>(number - 1);
}

QString noAnswer(const orv::OrvCtrlClient& client)
{
    return QStringLiteral("The ECU does not answer as it should (%1): see \"tarvioctl doctor\".")
        .arg(QString::fromStdString(client.lastError()));
}

} // namespace tarvioctl
