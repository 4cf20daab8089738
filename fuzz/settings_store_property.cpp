#include "ecu/store/ConnectionSettings.h"
#include "ecu/store/ip_address.h"
#include "ecu/store/settings_store.h"
#include "fuzz/InputFile.h"
#include "fuzz/ecu_properties.h"

#include <QDir>
#include <QSettings>

#include <memory>

namespace {

bool isAddress(const QString& text)
{
    return text.isEmpty() || completeAddress(text) == text;
}

bool isUsable(const ConnectionSettings& connection)
{
    return isAddress(connection.link.ecuIp) && isAddress(connection.ecuSubnet) &&
           isAddress(connection.ecuGateway) && isAddress(connection.hostIp) &&
           connection.link.controlPort != 0 && connection.link.receivePort != 0;
}

bool isSame(const ConnectionSettings& one, const ConnectionSettings& other)
{
    return one.link.ecuIp == other.link.ecuIp && one.link.controlPort == other.link.controlPort &&
           one.link.receivePort == other.link.receivePort &&
           one.link.freespacePort == other.link.freespacePort && one.ecuSubnet == other.ecuSubnet &&
           one.ecuGateway == other.ecuGateway && one.hostIp == other.hostIp;
}

/// The folder of all stores of the user, with the input as the program's own.
class StoreFolder
{
public:
    explicit StoreFolder(const QByteArray& content)
    {
        QDir(mFolder.path()).mkdir(QStringLiteral("maltrex"));
        QFile file(fileName());
        file.open(QIODevice::WriteOnly);
        file.write(content);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, mFolder.path());
    }

    std::unique_ptr<QSettings> open() const
    {
        return std::unique_ptr<QSettings>(settings::openStore(nullptr));
    }

    QByteArray content() const
    {
        QFile file(fileName());
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

private:
    QString fileName() const { return mFolder.filePath(QStringLiteral("maltrex/tarvio.ini")); }

    QTemporaryDir mFolder;
};

// Read from another folder: Qt knows a store again by its name, and what it held.
bool isStored(const QByteArray& content, const ConnectionSettings& connection)
{
    const StoreFolder folder(content);
    const auto store = folder.open();
    return !settings::hasImportedConnection(*store) &&
           isSame(settings::readConnection(*store), connection);
}

} // namespace

bool settingsStoreHolds(std::span<const std::uint8_t> bytes)
{
    const StoreFolder folder(byteArray(bytes));
    const auto store = folder.open();
    const ConnectionSettings inUse = settings::readConnection(*store);
    const ConnectionSettings imported = settings::readImportedConnection(*store);
    if (!isUsable(inUse) || !isUsable(imported))
        return false;
    settings::acceptConnection(*store, imported);
    store->sync();
    return isSame(settings::readConnection(*store), imported) &&
           isStored(folder.content(), imported);
}
