#include "tools/tarvioctl/texts.h"

#include "orv_decoder/OrvCtrlClient.h"

namespace tarvioctl {

QString dotted(std::uint32_t address)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(address & 0xFF)
        .arg(address >> 8 & 0xFF)
        .arg(address >> 16 & 0xFF)
        .arg(address >> 24);
}

QString noAnswer(const orv::OrvCtrlClient& client)
{
    return QStringLiteral("The ECU does not answer as it should (%1): see \"tarvioctl doctor\".")
        .arg(QString::fromStdString(client.lastError()));
}

} // namespace tarvioctl
