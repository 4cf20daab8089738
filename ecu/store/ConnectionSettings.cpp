#include "ecu/store/ConnectionSettings.h"

#include "ecu/store/NetworkSettings.h"

#include <QSettings>

namespace {

constexpr int kDefaultControlPort = 50002;
constexpr int kDefaultFreespacePort = 50003;

QString pathOf(const QString& group, const char* key)
{
    return group + QLatin1Char('/') + QLatin1String(key);
}

QVariant value(const QSettings& store, const char* key, int defaultValue = 0)
{
    const QVariant live = store.value(pathOf(settings::kNetworkGroup, key), defaultValue);
    return store.value(pathOf(settings::kImportedNetworkGroup, key), live);
}

QString address(const QSettings& store, const char* key)
{
    return value(store, key).toString();
}

} // namespace

namespace settings {

ConnectionSettings readConnection(const QSettings& store)
{
    ConnectionSettings connection;
    connection.ecuIp = address(store, "ecu_ip");
    connection.ecuSubnet = address(store, "ecu_subnet");
    connection.ecuGateway = address(store, "ecu_gateway");
    connection.controlPort = value(store, "control_port", kDefaultControlPort).toInt();
    connection.hostIp = address(store, "host_ip");
    connection.receivePort = value(store, "receive_port").toInt();
    connection.freespacePort = value(store, "fsp_port", kDefaultFreespacePort).toInt();
    return connection;
}

void acceptConnection(QSettings& store, const ConnectionSettings& connection)
{
    store.beginGroup(kNetworkGroup);
    store.setValue(QStringLiteral("ecu_ip"), connection.ecuIp);
    store.setValue(QStringLiteral("ecu_subnet"), connection.ecuSubnet);
    store.setValue(QStringLiteral("ecu_gateway"), connection.ecuGateway);
    store.setValue(QStringLiteral("control_port"), connection.controlPort);
    store.setValue(QStringLiteral("host_ip"), connection.hostIp);
    store.setValue(QStringLiteral("receive_port"), connection.receivePort);
    store.setValue(QStringLiteral("fsp_port"), connection.freespacePort);
    store.endGroup();
    if (hasGroup(store, kImportedNetworkGroup))
        store.remove(kImportedNetworkGroup);
}

} // namespace settings
