#pragma once

#include <QObject>

#include <memory>

namespace cli {

/// Turns SIGINT, SIGTERM and SIGHUP into a Qt signal while it lives; afterwards they do what they
/// did before. A SIGHUP that is ignored, as under nohup, stays so. One object at a time; without
/// effect where there are no such signals.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

signals:
    void terminated();

private:
    class Handlers;

    std::unique_ptr<Handlers> mHandlers; // none where nothing can be handled
};

} // namespace cli
