#include "ecu/store/settings_store.h"

#include <QFileInfo>
#include <QSettings>

#include <memory>
#include <new>

namespace {

constexpr auto kFormat = QSettings::IniFormat;
const QString kOrganisation = QStringLiteral("maltrex");
const QString kApplication = QStringLiteral("tarvio");

// Resources cannot be written: a store below this name lives in memory alone.
const QString kNowhere = QStringLiteral(":/no-settings-store");

// The file of the store, told without opening it: where it lies is where every other store of the
// user would.
QString storeFileName()
{
    const QSettings other(kFormat, QSettings::UserScope,
                          kOrganisation + QStringLiteral("-no-such-store"));
    const QString folder = QFileInfo(other.fileName()).path();
    return QStringLiteral("%1/%2/%3.ini").arg(folder, kOrganisation, kApplication);
}

bool isReadable(const QFileInfo& file)
{
    return !file.exists() || (file.isFile() && file.size() <= settings::kMaxStoreSize);
}

// None when a value in the file says that it is longer than any memory. Opened by its name, the
// store reads this file alone, and none that all programs of the organisation share.
std::unique_ptr<QSettings> readStore(const QString& fileName)
{
    auto store = std::make_unique<QSettings>(fileName, kFormat);
    try {
        store->allKeys(); // Qt puts the reading off until here.
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    return store;
}

} // namespace

namespace settings {

QSettings* openStore(QObject* parent)
{
    std::unique_ptr<QSettings> store;
    if (const QString fileName = storeFileName(); isReadable(QFileInfo(fileName)))
        store = readStore(fileName);
    if (!store)
        store = std::make_unique<QSettings>(kNowhere, kFormat);
    store->setParent(parent);
    return store.release();
}

bool hasGroup(const QSettings& store, const QString& group)
{
    return store.childGroups().contains(group);
}

} // namespace settings
