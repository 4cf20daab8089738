#include "ecu/store/NetworkSettings.h"

#include <QSettings>

namespace {

std::uint16_t readPort(const QSettings& store, const QString& key, int defaultPort)
{
    const int port = store.value(key, defaultPort).toInt();
    return port >= 0 && port <= 0xFFFF ? static_cast<std::uint16_t>(port) : std::uint16_t{0};
}

} // namespace

namespace settings {

bool hasGroup(const QSettings& store, const QString& group)
{
    return store.childGroups().contains(group);
}

void writeDefaultNetwork(QSettings& store)
{
    store.beginGroup(kNetworkGroup);
    store.setValue(QStringLiteral("ecu_ip"), QStringLiteral("192.168.1.3"));
    store.setValue(QStringLiteral("ecu_subnet"), QStringLiteral("255.255.255.0"));
    store.setValue(QStringLiteral("ecu_gateway"), QStringLiteral("192.168.1.1"));
    store.setValue(QStringLiteral("control_port"), QStringLiteral("50002"));
    store.setValue(QStringLiteral("host_ip"), QStringLiteral("192.168.1.5"));
    store.setValue(QStringLiteral("receive_port"), QStringLiteral("50001"));
    store.endGroup();
}

NetworkSettings readNetwork(QSettings& store)
{
    NetworkSettings network;
    store.beginGroup(kNetworkGroup);
    network.receivePort = readPort(store, QStringLiteral("receive_port"), 0);
    network.freespacePort = readPort(store, QStringLiteral("fsp_port"), 50003);
    network.controlPort = readPort(store, QStringLiteral("control_port"), 50002);
    network.ecuIp = store.value(QStringLiteral("ecu_ip")).toString();
    store.endGroup();
    return network;
}

} // namespace settings
