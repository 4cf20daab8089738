#include "tests/support/SimulatorProcess.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

// Only bounds a process that hangs; everything below waits for events.
constexpr int kPatienceMs = 30000;

QStringList withControlPort(QStringList arguments)
{
    const bool isGiven =
        std::any_of(arguments.cbegin(), arguments.cend(), [](const QString& argument) {
            return argument.startsWith(QLatin1String("--control-port"));
        });
    if (!isGiven)
        arguments << QStringLiteral("--control-port") << QStringLiteral("0");
    return arguments;
}

} // namespace

SimulatorProcess::SimulatorProcess(const QStringList& arguments)
{
    mProcess.start(QStringLiteral(TARVIO_ECU_SIMULATOR), withControlPort(arguments));
    waitUntilListening();
}

SimulatorProcess::~SimulatorProcess()
{
    if (mProcess.state() == QProcess::NotRunning)
        return;
    mProcess.kill();
    mProcess.waitForFinished(kPatienceMs);
}

bool SimulatorProcess::isListening() const
{
    return mControlPort != 0 && mProcess.state() == QProcess::Running;
}

int SimulatorProcess::stop()
{
    mProcess.terminate();
    return waitForEnd();
}

int SimulatorProcess::waitForEnd()
{
    if (mProcess.state() != QProcess::NotRunning && !mProcess.waitForFinished(kPatienceMs))
        return -1;
    return mProcess.exitStatus() == QProcess::NormalExit ? mProcess.exitCode() : -1;
}

bool SimulatorProcess::waitForOutput(const QString& text)
{
    while (!output().contains(text)) {
        if (!mProcess.waitForReadyRead(kPatienceMs))
            return output().contains(text);
    }
    return true;
}

QString SimulatorProcess::output()
{
    mOutput += QString::fromLocal8Bit(mProcess.readAllStandardOutput());
    return mOutput;
}

QString SimulatorProcess::errorOutput()
{
    mErrorOutput += QString::fromLocal8Bit(mProcess.readAllStandardError());
    return mErrorOutput;
}

void SimulatorProcess::waitUntilListening()
{
    if (!waitForOutput(QStringLiteral("\n")))
        return;
    static const QRegularExpression kFirstLine(QStringLiteral("^listening on [0-9.]+:(\\d+)\n"));
    mControlPort = kFirstLine.match(output()).captured(1).toUShort();
}
