#include "app/store_or_tell.h"

#include "ecu/store/settings_store.h"

#include <QCoreApplication>
#include <QDir>
#include <QMessageBox>

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("SettingsStore", text);
}

} // namespace

void storeOrTell(const QSettings& store, QWidget* parent)
{
    if (settings::writeStore(store))
        return;
    const QString file = QDir::toNativeSeparators(settings::storeFileName());
    QMessageBox::warning(parent, translated("Settings not stored"),
                         translated("The settings could not be written to\n%1").arg(file));
}
