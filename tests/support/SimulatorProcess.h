#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

/// Runs the simulated ECU as a process of its own; the process ends with the object.
class SimulatorProcess
{
public:
    /// Starts it and waits until it listens or has ended. A free control port is chosen unless the
    /// arguments name one.
    explicit SimulatorProcess(const QStringList& arguments = {});
    ~SimulatorProcess();
    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;

    /// True once the process has said that it listens, until it ends.
    bool isListening() const;

    /// The port on 127.0.0.1 (or the given address); 0 when it does not listen.
    quint16 controlPort() const { return mControlPort; }

    /// Sends SIGTERM and waits; returns the exit status, -1 after a crash or when it does not end.
    int stop();

    /// Waits for a process that ends by itself; returns as stop() does.
    int waitForEnd();

    /// Waits until standard output holds the text.
    bool waitForOutput(const QString& text);

    /// Everything on standard output so far.
    QString output();

    /// Everything on standard error so far.
    QString errorOutput();

private:
    void waitUntilListening();

    QProcess mProcess;
    QString mOutput;
    QString mErrorOutput;
    quint16 mControlPort = 0;
};
