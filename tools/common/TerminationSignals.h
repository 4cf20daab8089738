#pragma once

#include <QObject>

namespace cli {

/// Turns SIGINT, SIGTERM and SIGHUP into a Qt signal. One object a process; without effect where
/// there are no such signals.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);

signals:
    void terminated();
};

} // namespace cli
