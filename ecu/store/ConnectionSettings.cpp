#include "ecu/store/ConnectionSettings.h"

#include "ecu/store/ip_address.h"
#include "ecu/store/network_keys.h"
#include "ecu/store/settings_store.h"

#include <QSettings>

#include <limits>
#include <optional>

namespace {

constexpr std::uint16_t kDefaultControlPort = 50002;
constexpr std::uint16_t kDefaultReceivePort = 50001;
constexpr std::uint16_t kDefaultFreespacePort = 50003;

constexpr int kNoPort = 0;
constexpr int kMinPort = 1;
constexpr int kMaxPort = std::numeric_limits<std::uint16_t>::max();

QVariant valueIn(const QSettings& store, const QString& group, const QString& key)
{
    return store.value(group + QLatin1Char('/') + key);
}

/// The values in use or, where there are any, those that wait to be accepted.
class ValueReader
{
public:
    enum class First { InUse, Imported };

    ValueReader(const QSettings& store, First first) : mStore(store), mFirst(first) {}

    QString address(const QString& key) const { return completeAddress(value(key).toString()); }

    std::optional<std::uint16_t> port(const QString& key, int minimum = kMinPort) const
    {
        bool isNumber = false;
        const int port = value(key).toInt(&isNumber);
        const bool isPort = isNumber && port >= minimum && port <= kMaxPort;
        return isPort ? std::optional(static_cast<std::uint16_t>(port)) : std::nullopt;
    }

private:
    QVariant value(const QString& key) const
    {
        QVariant inUse = valueIn(mStore, settings::kNetworkGroup, key);
        if (mFirst == First::InUse)
            return inUse;
        const QVariant imported = valueIn(mStore, settings::kImportedNetworkGroup, key);
        return imported.isValid() ? imported : inUse;
    }

    const QSettings& mStore;
    First mFirst;
};

ConnectionSettings connectionOf(const ValueReader& reader)
{
    using namespace settings;
    return {.link = {.ecuIp = reader.address(kEcuIp),
                     .controlPort = reader.port(kControlPort).value_or(kDefaultControlPort),
                     .receivePort = reader.port(kReceivePort).value_or(kDefaultReceivePort),
                     .freespacePort =
                         reader.port(kFreespacePort, kNoPort).value_or(kDefaultFreespacePort)},
            .ecuSubnet = reader.address(kEcuSubnet),
            .ecuGateway = reader.address(kEcuGateway),
            .hostIp = reader.address(kHostIp)};
}

} // namespace

namespace settings {

void writeDefaultNetwork(QSettings& store)
{
    store.beginGroup(kNetworkGroup);
    store.setValue(kEcuIp, QStringLiteral("192.168.1.3"));
    store.setValue(kEcuSubnet, QStringLiteral("255.255.255.0"));
    store.setValue(kEcuGateway, QStringLiteral("192.168.1.1"));
    store.setValue(kControlPort, QString::number(kDefaultControlPort));
    store.setValue(kHostIp, QStringLiteral("192.168.1.5"));
    store.setValue(kReceivePort, QString::number(kDefaultReceivePort));
    store.endGroup();
}

ConnectionSettings readConnection(const QSettings& store)
{
    return connectionOf(ValueReader(store, ValueReader::First::InUse));
}

StoredPorts storedPorts(const QSettings& store)
{
    const ValueReader reader(store, ValueReader::First::InUse);
    return {.hasControl = reader.port(kControlPort).has_value(),
            .hasReceive = reader.port(kReceivePort).has_value(),
            .hasFreespace = reader.port(kFreespacePort, kNoPort).has_value()};
}

bool hasImportedConnection(const QSettings& store)
{
    return hasGroup(store, kImportedNetworkGroup);
}

ConnectionSettings readImportedConnection(const QSettings& store)
{
    return connectionOf(ValueReader(store, ValueReader::First::Imported));
}

void acceptConnection(QSettings& store, const ConnectionSettings& connection)
{
    store.beginGroup(kNetworkGroup);
    store.setValue(kEcuIp, connection.link.ecuIp);
    store.setValue(kEcuSubnet, connection.ecuSubnet);
    store.setValue(kEcuGateway, connection.ecuGateway);
    store.setValue(kControlPort, int{connection.link.controlPort});
    store.setValue(kHostIp, connection.hostIp);
    store.setValue(kReceivePort, int{connection.link.receivePort});
    store.setValue(kFreespacePort, int{connection.link.freespacePort});
    store.endGroup();
    forgetImportedConnection(store);
}

void forgetImportedConnection(QSettings& store)
{
    store.remove(kImportedNetworkGroup);
}

} // namespace settings
