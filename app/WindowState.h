#pragma once

#include "app/saved_states.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <utility>
#include <vector>

class QMainWindow;
class QSettings;

/// What the main window keeps of its looks between two runs, in the group "main_window" of the
/// settings store. The parts are restored in the order in which they were added; what the store
/// holds of a part and is not sound leaves the part as it is.
class WindowState
{
public:
    using Save = std::function<QByteArray()>;
    using IsSound = std::function<bool(const QByteArray&)>;
    using Restore = std::function<void(const QByteArray&)>;

    struct Part
    {
        QString key;
        Save save;
        IsSound isSound;
        Restore restore;
    };

    void add(Part part) { mParts.push_back(std::move(part)); }

    /// Adds the geometry of the window and the layout of its docks. The window has its first size
    /// and its docks; neither becomes larger than that or the desktop.
    void addWindow(QMainWindow* window);

    /// Adds a view whose saveState() and restoreState() are those of its splitter.
    template<typename View>
    void addView(const QString& key, View* view)
    {
        add({.key = key,
             .save = [view] { return view->saveState(); },
             .isSound =
                 [view](const QByteArray& state) {
                     return isSoundSplitterState(state, view->saveState());
                 },
             .restore = [view](const QByteArray& state) { view->restoreState(state); }});
    }

    void save(QSettings& store) const;

    /// Restores each part whose key is there.
    void restore(QSettings& store) const;

private:
    std::vector<Part> mParts;
};
