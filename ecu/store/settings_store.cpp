#include "ecu/store/settings_store.h"

#include "ecu/store/ini_format.h"

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

bool isReadable(const QFileInfo& file)
{
    return !file.exists() || (file.isFile() && file.size() <= settings::kMaxStoreSize);
}

// None when a value in the file says that it is longer than any memory. Opened by its name, the
// store reads this file alone, and none that all programs of the organisation share.
std::unique_ptr<QSettings> readStore(const QString& fileName)
{
    const QSettings reader(fileName, kFormat);
    try {
        // Qt puts the reading off until here.
        // cppcheck-suppress ignoredReturnValue ; asked for what asking does
        reader.allKeys();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    // It shares what was read.
    return std::make_unique<QSettings>(fileName, settings::safeIniFormat());
}

} // namespace

namespace settings {

// Told without opening it: where it lies is where every other store of the user would.
QString storeFileName()
{
    const QSettings other(kFormat, QSettings::UserScope,
                          kOrganisation + QStringLiteral("-no-such-store"));
    const QString folder = QFileInfo(other.fileName()).path();
    return QStringLiteral("%1/%2/%3.ini").arg(folder, kOrganisation, kApplication);
}

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

// A status stays what it was once: another object on the same file has that of this attempt. It
// writes what waits while it opens.
bool writeStore(const QSettings& store)
{
    const QSettings attempt(store.fileName(), store.format());
    return attempt.status() != QSettings::AccessError;
}

bool hasGroup(const QSettings& store, const QString& group)
{
    return store.childGroups().contains(group);
}

} // namespace settings
