#include "app/store_or_tell.h"

#include "ecu/store/settings_store.h"

#include <QCoreApplication>
#include <QDir>
#include <QMessageBox>

namespace {

struct SettingsStore
{
    Q_DECLARE_TR_FUNCTIONS(SettingsStore)
};

} // namespace

void storeOrTell(const QSettings& store, QWidget* parent)
{
    if (settings::writeStore(store))
        return;
    const QString file = QDir::toNativeSeparators(settings::storeFileName());
    QMessageBox::warning(parent, SettingsStore::tr("Settings not stored"),
                         SettingsStore::tr("The settings could not be written to\n%1").arg(file));
}
