#include "tools/tarvioctl/EcuAddress.h"

#include "ecu/store/ConnectionSettings.h"
#include "ecu/store/settings_store.h"
#include "tools/common/OptionReader.h"
#include "tools/tarvioctl/Console.h"

#include <QCommandLineParser>
#include <QStringList>

#include <stdexcept>

namespace tarvioctl {

namespace {

constexpr int kMaxTimeoutMs = 60'000;

LinkSettings withOptions(LinkSettings link, const cli::OptionReader& reader)
{
    link.ecuIp = reader.address("ecu").value_or(link.ecuIp);
    link.controlPort = reader.port("control-port", 1).value_or(link.controlPort);
    link.receivePort = reader.port("receive-port", 1).value_or(link.receivePort);
    link.freespacePort = reader.port("fsp-port", 0).value_or(link.freespacePort);
    return link;
}

} // namespace

EcuChannel::EcuChannel(const LinkSettings& link, std::optional<std::uint32_t> timeoutMs)
    : mSocket(link.ecuIp.toStdString(), link.controlPort), mClient(&mSocket)
{
    if (timeoutMs)
        mSocket.setReceiveTimeout(*timeoutMs);
}

QList<QCommandLineOption> EcuAddress::options()
{
    const auto option = [](const char* name, const char* description, const char* value) {
        return QCommandLineOption(QLatin1String(name), QLatin1String(description),
                                  QLatin1String(value));
    };
    return {option("ecu", "Address of the ECU.", "address"),
            option("control-port", "Port of the ECU's control socket.", "port"),
            option("receive-port", "Local port of the measurement results.", "port"),
            option("fsp-port", "Local port of the freespace packages, 0 = none.", "port"),
            option("timeout", "Longest wait for a reply, 1 to 60000 (500).", "ms")};
}

EcuAddress::EcuAddress(const QCommandLineParser& parser, Console& console)
    : mStore(settings::openStore(nullptr)), mConsole(console)
{
    const cli::OptionReader reader(parser);
    const auto originOf = [&reader](const char* option, bool isStored) {
        if (reader.isSet(option))
            return Origin::CommandLine;
        return isStored ? Origin::Store : Origin::Default;
    };
    const settings::StoredPorts stored = settings::storedPorts(*mStore);
    mLink = withOptions(settings::readConnection(*mStore).link, reader);
    mAddressOrigin = originOf("ecu", true);
    mControlOrigin = originOf("control-port", stored.hasControl);
    mReceiveOrigin = originOf("receive-port", stored.hasReceive);
    mFreespaceOrigin = originOf("fsp-port", stored.hasFreespace);
    if (const std::optional<int> timeout = reader.wholeNumber("timeout", 1, kMaxTimeoutMs))
        mTimeoutMs = static_cast<std::uint32_t>(*timeout);
}

LinkSettings EcuAddress::link() const
{
    if (mLink.ecuIp.isEmpty())
        throw std::invalid_argument("Nobody has said where the ECU is: give --ecu ADDRESS.");
    tellOrigins({{QStringLiteral("ECU %1").arg(mLink.ecuIp), mAddressOrigin},
                 {QStringLiteral("control port %1").arg(mLink.controlPort), mControlOrigin}});
    return mLink;
}

cli::StreamPorts EcuAddress::streamPorts() const
{
    const QString freespacePort =
        mLink.freespacePort == 0 ? QStringLiteral("none") : QString::number(mLink.freespacePort);
    tellOrigins({{QStringLiteral("receive port %1").arg(mLink.receivePort), mReceiveOrigin},
                 {QStringLiteral("freespace port %1").arg(freespacePort), mFreespaceOrigin}});
    return {.measurements = mLink.receivePort, .freespaces = mLink.freespacePort};
}

std::unique_ptr<EcuChannel> EcuAddress::openChannel() const
{
    return std::make_unique<EcuChannel>(link(), mTimeoutMs);
}

void EcuAddress::tellOrigins(const QList<NamedValue>& values) const
{
    const auto tell = [&](Origin origin, const QString& whose) {
        QStringList texts;
        for (const NamedValue& value : values)
            if (value.origin == origin)
                texts += value.text;
        if (texts.isEmpty())
            return;
        texts[0][0] = texts[0][0].toUpper();
        mConsole.tell(QStringLiteral("%1, %2.").arg(texts.join(QStringLiteral(", ")), whose));
    };
    tell(Origin::Store, QStringLiteral("as stored by Tarvio"));
    tell(Origin::Default, QStringLiteral("by default: Tarvio has stored nothing else"));
}

} // namespace tarvioctl
