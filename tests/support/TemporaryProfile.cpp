#include "tests/support/TemporaryProfile.h"

namespace {

// A fresh object each time sees what the program has written meanwhile.
QSettings openStore()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("maltrex"),
                     QStringLiteral("tarvio"));
}

} // namespace

TemporaryProfile::TemporaryProfile()
{
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, mFolder.path());
}

void TemporaryProfile::setNetwork(std::uint16_t controlPort, std::uint16_t receivePort,
                                  std::uint16_t fspPort)
{
    setValue(QStringLiteral("network/ecu_ip"), QStringLiteral("127.0.0.1"));
    setValue(QStringLiteral("network/ecu_subnet"), QStringLiteral("255.0.0.0"));
    setValue(QStringLiteral("network/ecu_gateway"), QStringLiteral("127.0.0.1"));
    setValue(QStringLiteral("network/host_ip"), QStringLiteral("127.0.0.1"));
    setValue(QStringLiteral("network/control_port"), controlPort);
    setValue(QStringLiteral("network/receive_port"), receivePort);
    setValue(QStringLiteral("network/fsp_port"), fspPort);
}

void TemporaryProfile::setValue(const QString& key, const QVariant& value)
{
    openStore().setValue(key, value);
}

void TemporaryProfile::remove(const QString& key)
{
    openStore().remove(key);
}

QVariant TemporaryProfile::value(const QString& key) const
{
    return openStore().value(key);
}

QStringList TemporaryProfile::keys(const QString& group) const
{
    QSettings store = openStore();
    store.beginGroup(group);
    return store.childKeys();
}

QStringList TemporaryProfile::groups() const
{
    return openStore().childGroups();
}

QString TemporaryProfile::fileName() const
{
    return openStore().fileName();
}
