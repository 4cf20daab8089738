#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <vector>

class QSettings;

/// What the main window keeps of its looks between two runs, in the group "main_window" of the
/// settings store. The parts are restored in the order in which they were added.
class WindowState
{
public:
    using Save = std::function<QByteArray()>;
    using Restore = std::function<void(const QByteArray&)>;

    void add(const QString& key, Save save, Restore restore);

    /// Adds a view that has saveState() and restoreState().
    template<typename View>
    void addView(const QString& key, View* view)
    {
        add(
            key, [view] { return view->saveState(); },
            [view](const QByteArray& state) { view->restoreState(state); });
    }

    void save(QSettings& store) const;

    /// Restores each part whose key is there; false when the store holds no state at all.
    bool restore(QSettings& store) const;

private:
    struct Part
    {
        QString key;
        Save save;
        Restore restore;
    };

    std::vector<Part> mParts;
};
