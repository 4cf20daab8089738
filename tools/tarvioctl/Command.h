#pragma once

#include <QCommandLineOption>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <stdexcept>

class QCommandLineParser;

namespace tarvioctl {

class Console;
class EcuAddress;

/// What the process ends with.
enum class ExitStatus {
    Done = 0,
    Refused = 1, ///< the ECU, the data or the system said no; for a comparison: they differ
    WrongUsage = 2,
};

/// Ends a command with ExitStatus::Refused. The text is one whole sentence that says what to do.
class Refusal : public std::runtime_error
{
public:
    explicit Refusal(const QString& sentence) : std::runtime_error(sentence.toStdString()) {}
};

/// What a command is run with, borrowed.
struct Invocation
{
    const QCommandLineParser& options;
    QStringList arguments; ///< behind the command's name, of the number that it takes
    const EcuAddress& ecu;
    Console& console;
};

/// One thing that the program does. `run` throws Refusal, and std::invalid_argument with a whole
/// sentence for a wrong usage.
struct Command
{
    QString name;
    QString arguments; ///< as the help spells them
    QString summary;   ///< one line
    int minArguments = 0;
    int maxArguments = 0;
    QList<QCommandLineOption> options;
    std::function<ExitStatus(const Invocation&)> run;
};

} // namespace tarvioctl
