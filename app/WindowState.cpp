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

// On the smallest screens the program is larger than the desktop from the start.
QSize largestSizeOf(const QWidget& window)
{
    return desktopOf(window).size().expandedTo(window.size());
}

// Docks side by side may need more room than there is.
void restoreDocks(QMainWindow& window, const QByteArray& state)
{
    const QByteArray own = window.saveState(kDocksVersion);
    const QSize size = window.size();
    const QSize largest = largestSizeOf(window);
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
    add({.key = QStringLiteral("geometry"),
         .save = [window] { return window->saveGeometry(); },
         .isSound =
             [window](const QByteArray& geometry) {
                 return isSoundGeometry(geometry, desktopOf(*window), largestSizeOf(*window));
             },
         .restore = [window](const QByteArray& geometry) { window->restoreGeometry(geometry); }});
    add({.key = QStringLiteral("state"),
         .save = [window] { return window->saveState(kDocksVersion); },
         .isSound =
             [window](const QByteArray& state) {
                 return isSoundDockState(state, window->saveState(kDocksVersion),
                                         desktopOf(*window));
             },
         .restore = [window](const QByteArray& state) { restoreDocks(*window, state); }});
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
