#include "app/WindowState.h"

#include <QLayout>
#include <QMainWindow>
#include <QScreen>
#include <QSettings>

namespace {

const QString kGroup = QStringLiteral("main_window");

constexpr int kDocksVersion = 0;

QRect desktopOf(const QWidget& window)
{
    return window.screen()->virtualGeometry();
}

// Docks side by side may need more room than there is.
void restoreDocks(QMainWindow& window, const QByteArray& state, const QSize& largest)
{
    const QByteArray own = window.saveState(kDocksVersion);
    const QSize size = window.size();
    window.restoreState(state, kDocksVersion);
    const QSize needed = window.minimumSizeHint();
    if (needed.width() <= largest.width() && needed.height() <= largest.height())
        return;
    window.restoreState(own, kDocksVersion);
    // The window has grown meanwhile.
    window.layout()->activate();
    window.resize(size);
}

} // namespace

void WindowState::addWindow(QMainWindow* window)
{
    // A window may be larger than the smallest screens, but no larger than it was made for.
    const QSize largest = desktopOf(*window).size().expandedTo(window->size());
    add({.key = QStringLiteral("geometry"),
         .save = [window] { return window->saveGeometry(); },
         .isSound =
             [=](const QByteArray& geometry) {
                 return isSoundGeometry(geometry, desktopOf(*window), largest);
             },
         .restore = [window](const QByteArray& geometry) { window->restoreGeometry(geometry); }});
    add({.key = QStringLiteral("state"),
         .save = [window] { return window->saveState(kDocksVersion); },
         .isSound =
             [window](const QByteArray& state) {
                 return isSoundDockState(state, window->saveState(kDocksVersion),
                                         desktopOf(*window));
             },
         .restore = [=](const QByteArray& state) { restoreDocks(*window, state, largest); }});
}

void WindowState::save(QSettings& store) const
{
    store.beginGroup(kGroup);
    for (const Part& part : mParts)
        store.setValue(part.key, part.save());
    store.endGroup();
}

void WindowState::restore(QSettings& store) const
{
    store.beginGroup(kGroup);
    for (const Part& part : mParts) {
        const QByteArray state = store.value(part.key).toByteArray();
        if (!state.isEmpty() && part.isSound(state))
            part.restore(state);
    }
    store.endGroup();
}
