#pragma once

#include <QStringList>

#include <functional>

class QWidget;

namespace orv {
class OrvCtrlClient;
}

/// What stands around a view's exchanges with the ECU: the question before something is
/// overwritten, the wait cursor, and the box that tells a failure. A `silent` caller is neither
/// asked nor told. Without a client nothing happens.
class EcuExchange
{
public:
    /// @param view the parent of the boxes, borrowed
    explicit EcuExchange(QWidget* view) : mView(view) {}

    /// The client is borrowed; a null one changes nothing.
    void setClient(orv::OrvCtrlClient* client);
    orv::OrvCtrlClient* client() const { return mClient; }

    /// Whether what the user changed may be overwritten.
    bool mayOverwrite(bool silent, const QString& title) const;

    /// Blocks while `exchange` talks to the ECU; it returns success, and the client's last error
    /// is what a failure is told with.
    bool run(bool silent, const std::function<bool(orv::OrvCtrlClient&)>& exchange) const;

    /// The same for several exchanges that return the failures as they are told, one line each.
    bool runAll(bool silent,
                const std::function<QStringList(orv::OrvCtrlClient&)>& exchanges) const;

private:
    QWidget* mView;
    orv::OrvCtrlClient* mClient = nullptr; // borrowed
};
