#pragma once

#include "tests/support/patience.h"

#include <QProcess>
#include <QString>
#include <QStringList>

/// What a run of the program left.
struct CtlResult
{
    int exitStatus = -1; ///< -1 after a crash or when it did not end
    QString output;
    QString errorOutput;
};

/// Runs tarvioctl as a user does: the process, its output, its exit status.
class CtlProcess
{
public:
    explicit CtlProcess(const QStringList& arguments);
    ~CtlProcess();
    CtlProcess(const CtlProcess&) = delete;
    CtlProcess& operator=(const CtlProcess&) = delete;

    /// Runs to the end, which the program has to find by itself.
    static CtlResult run(const QStringList& arguments);

    /// Runs to the end with standard error going where standard output does.
    static CtlResult runIntoOneStream(const QStringList& arguments);

    /// Runs to the end on a terminal; none of the arguments may need quotes.
    static CtlResult runOnTerminal(const QStringList& arguments);

    /// Runs to the end while nobody reads standard output.
    static CtlResult runIntoClosedPipe(const QStringList& arguments);

    /// Waits until standard output, or standard error, holds the text.
    bool waitForOutput(const QString& text);
    bool waitForErrorOutput(const QString& text);

    /// As the keys Ctrl-C do; nothing where the program has ended.
    void interrupt();

    bool isRunning() const { return mProcess.state() == QProcess::Running; }

    CtlResult waitForEnd();

private:
    CtlProcess(const QString& program, const QStringList& arguments);
    static CtlResult runInShell(const QString& script, const QStringList& arguments);
    bool waitFor(const QString& text, const QString& stream);
    void collect();

    QProcess mProcess;
    QString mOutput;
    QString mErrorOutput;
};

/// The options that point a command at a simulated ECU on this machine, which a busy machine may
/// keep from answering for long. Where nobody answers the wait has to be short. Of an option that
/// is given twice the last one counts.
QStringList ecuOptions(quint16 controlPort, int timeoutMs = kAnswerPatienceMs);
