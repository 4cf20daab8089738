#include "tools/tarvioctl/CommandLine.h"

#include "tools/tarvioctl/Console.h"
#include "tools/tarvioctl/EcuAddress.h"

#include <QCommandLineParser>

#include <algorithm>
#include <stdexcept>

namespace tarvioctl {

namespace {

const QString kProgram = QStringLiteral("tarvioctl");

QString synopsisOf(const Command& command)
{
    return (command.name + QLatin1Char(' ') + command.arguments).trimmed();
}

QString overview(const QVector<Command>& commands)
{
    QString text = QStringLiteral("Usage: %1 COMMAND [options]\n"
                                  "Reads, writes, watches and records a park-assist ECU.\n\n"
                                  "Commands:\n")
                       .arg(kProgram);
    for (const Command& command : commands)
        text += QStringLiteral("  %1 %2\n").arg(synopsisOf(command), -34).arg(command.summary);
    return text +
           QStringLiteral("\n%1 COMMAND --help tells the options of a command.").arg(kProgram);
}

void describe(QCommandLineParser& parser, const Command& command)
{
    parser.setApplicationDescription(command.summary);
    parser.addHelpOption();
    parser.addOptions(command.options);
    parser.addOptions(EcuAddress::options());
}

// Qt's own first line knows of no command before the options.
QString helpOf(const QCommandLineParser& parser, const Command& command)
{
    const QString help = parser.helpText().trimmed();
    return QStringLiteral("Usage: %1 %2 [options]").arg(kProgram, synopsisOf(command)) +
           help.mid(help.indexOf(QLatin1Char('\n')));
}

// Qt's sentence ends where it does not say what to do.
QString withAdvice(QString sentence, const Command& command)
{
    if (sentence.endsWith(QLatin1Char('.')))
        sentence.chop(1);
    return QStringLiteral("%1: %2 %3 --help tells what there is.")
        .arg(sentence, kProgram, command.name);
}

void checkCount(const Command& command, const QStringList& arguments)
{
    if (arguments.size() < command.minArguments || arguments.size() > command.maxArguments)
        throw std::invalid_argument(
            QStringLiteral("Usage: %1 %2").arg(kProgram, synopsisOf(command)).toStdString());
}

ExitStatus runCommand(const Command& command, const QStringList& arguments, Console& console)
{
    QCommandLineParser parser;
    describe(parser, command);
    if (!parser.parse(arguments))
        throw std::invalid_argument(withAdvice(parser.errorText(), command).toStdString());
    if (parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all"))) {
        console.print(helpOf(parser, command));
        return ExitStatus::Done;
    }
    const QStringList given = parser.positionalArguments().mid(1);
    checkCount(command, given);
    const EcuAddress ecu(parser, console);
    return command.run({.options = parser, .arguments = given, .ecu = ecu, .console = console});
}

// The command's name comes first, so that its own options are known when they are read.
ExitStatus dispatch(const QVector<Command>& commands, const QStringList& arguments,
                    Console& console)
{
    const QString first = arguments.value(1);
    if (first == QStringLiteral("--help") || first == QStringLiteral("-h")) {
        console.print(overview(commands));
        return ExitStatus::Done;
    }
    if (first == QStringLiteral("--version") || first == QStringLiteral("-v")) {
        console.print(kProgram + QStringLiteral(" " TARVIO_VERSION));
        return ExitStatus::Done;
    }
    if (first.isEmpty())
        throw std::invalid_argument(
            QStringLiteral("Usage: %1 COMMAND [options]: %1 --help lists them.")
                .arg(kProgram)
                .toStdString());
    const auto command = std::ranges::find(commands, first, &Command::name);
    if (command == commands.end())
        throw std::invalid_argument(
            QStringLiteral("There is no command \"%1\": %2 --help lists them.")
                .arg(first, kProgram)
                .toStdString());
    return runCommand(*command, arguments, console);
}

} // namespace

ExitStatus runCommandLine(const QVector<Command>& commands, const QStringList& arguments)
{
    Console console;
    try {
        const ExitStatus status = dispatch(commands, arguments, console);
        console.flush();
        return status;
    } catch (const std::invalid_argument& error) {
        console.tell(QString::fromUtf8(error.what()));
        return ExitStatus::WrongUsage;
    } catch (const std::exception& error) {
        console.tell(QString::fromUtf8(error.what()));
        return ExitStatus::Refused;
    }
}

} // namespace tarvioctl
