#include "app/WindowState.h"

#include "ecu/store/NetworkSettings.h"

#include <QSettings>

#include <utility>

void WindowState::add(const QString& key, Save save, Restore restore)
{
    mParts.push_back({key, std::move(save), std::move(restore)});
}

void WindowState::save(QSettings& store) const
{
    store.beginGroup(settings::kWindowGroup);
    for (const Part& part : mParts)
        store.setValue(part.key, part.save());
    store.endGroup();
}

bool WindowState::restore(QSettings& store) const
{
    if (!settings::hasGroup(store, settings::kWindowGroup))
        return false;
    store.beginGroup(settings::kWindowGroup);
    for (const Part& part : mParts) {
        if (store.contains(part.key))
            part.restore(store.value(part.key).toByteArray());
    }
    store.endGroup();
    return true;
}
