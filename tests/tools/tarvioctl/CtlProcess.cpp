#include "tests/tools/tarvioctl/CtlProcess.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QSettings>

#include <csignal>

namespace {

constexpr int kPatienceMs = 60000;

// The process shall find the stores that the test sees, a TemporaryProfile's for one.
QProcessEnvironment environmentOfTest()
{
    const QSettings anyStore(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("any"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), QFileInfo(anyStore.fileName()).path());
    return environment;
}

} // namespace

CtlProcess::CtlProcess(const QStringList& arguments)
    : CtlProcess(QStringLiteral(TARVIO_CTL), arguments)
{}

CtlProcess::CtlProcess(const QString& program, const QStringList& arguments)
{
    mProcess.setProcessEnvironment(environmentOfTest());
    mProcess.start(program, arguments);
    mProcess.waitForStarted();
}

CtlProcess::~CtlProcess()
{
    if (mProcess.state() == QProcess::NotRunning)
        return;
    mProcess.kill();
    mProcess.waitForFinished();
}

CtlResult CtlProcess::run(const QStringList& arguments)
{
    return CtlProcess(arguments).waitForEnd();
}

CtlResult CtlProcess::runIntoClosedPipe(const QStringList& arguments)
{
    // The pipe's reader ends at once; only bash tells the status of what stands before it.
    return runInShell(QStringLiteral("\"$0\" \"$@\" | true; exit ${PIPESTATUS[0]}"), arguments);
}

CtlResult CtlProcess::runIntoOneStream(const QStringList& arguments)
{
    return runInShell(QStringLiteral("exec \"$0\" \"$@\" 2>&1"), arguments);
}

CtlResult CtlProcess::runOnTerminal(const QStringList& arguments)
{
    return runInShell(QStringLiteral("exec script -qec \"$0 $*\" /dev/null"), arguments);
}

CtlResult CtlProcess::runInShell(const QString& script, const QStringList& arguments)
{
    return CtlProcess(QStringLiteral("bash"),
                      QStringList{QStringLiteral("-c"), script, QStringLiteral(TARVIO_CTL)} +
                          arguments)
        .waitForEnd();
}

bool CtlProcess::waitForOutput(const QString& text)
{
    return waitFor(text, mOutput);
}

bool CtlProcess::waitForErrorOutput(const QString& text)
{
    return waitFor(text, mErrorOutput);
}

void CtlProcess::interrupt()
{
    // 0 once it has ended, by which kill() means all that run with this test.
    if (const auto process = static_cast<pid_t>(mProcess.processId()); process > 0)
        ::kill(process, SIGINT);
}

CtlResult CtlProcess::waitForEnd()
{
    if (mProcess.state() != QProcess::NotRunning)
        mProcess.waitForFinished(kPatienceMs);
    collect();
    const bool hasEnded =
        mProcess.state() == QProcess::NotRunning && mProcess.exitStatus() == QProcess::NormalExit;
    return {.exitStatus = hasEnded ? mProcess.exitCode() : -1,
            .output = mOutput,
            .errorOutput = mErrorOutput};
}

// The stream is one of the two that collect() fills.
bool CtlProcess::waitFor(const QString& text, const QString& stream)
{
    QElapsedTimer waited;
    waited.start();
    collect();
    while (!stream.contains(text) && mProcess.state() == QProcess::Running &&
           !waited.hasExpired(kPatienceMs)) {
        mProcess.waitForReadyRead(50);
        collect();
    }
    return stream.contains(text);
}

void CtlProcess::collect()
{
    mOutput += QString::fromUtf8(mProcess.readAllStandardOutput());
    mErrorOutput += QString::fromUtf8(mProcess.readAllStandardError());
}

QStringList ecuOptions(quint16 controlPort, int timeoutMs)
{
    return {QStringLiteral("--ecu"),          QStringLiteral("127.0.0.1"),
            QStringLiteral("--control-port"), QString::number(controlPort),
            QStringLiteral("--timeout"),      QString::number(timeoutMs)};
}
