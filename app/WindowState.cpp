#include "app/WindowState.h"

#include "ecu/store/settings_store.h"

#include <QSettings>

#include <utility>

namespace {

const QString kGroup = QStringLiteral("main_window");

} // namespace

void WindowState::add(const QString& key, Save save, Restore restore)
{
    mParts.push_back({key, std::move(save), std::move(restore)});
}

void WindowState::save(QSettings& store) const
{
    store.beginGroup(kGroup);
    for (const Part& part : mParts)
        store.setValue(part.key, part.save());
    store.endGroup();
}

bool WindowState::restore(QSettings& store) const
{
    if (!settings::hasGroup(store, kGroup))
        return false;
    store.beginGroup(kGroup);
    for (const Part& part : mParts) {
        if (store.contains(part.key))
            part.restore(store.value(part.key).toByteArray());
    }
    store.endGroup();
    return true;
}
