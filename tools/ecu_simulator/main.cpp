#include "tools/common/TerminationSignals.h"
#include "tools/ecu_simulator/EcuServer.h"
#include "tools/ecu_simulator/StateFile.h"

#include <QCoreApplication>

#include <cstdio>
#include <exception>

namespace {

using namespace ecusim;

void printLine(std::FILE* stream, const QString& text)
{
    std::fputs(qPrintable(text), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

void tellOfReplay(const EcuServer& server)
{
    QObject::connect(&server, &EcuServer::replayEnded, &server, [](const QString& summary) {
        printLine(stdout, QStringLiteral("replay ended: ") + summary);
    });
    QObject::connect(&server, &EcuServer::replayFailed, &server,
                     [](const QString& sentence) { printLine(stderr, sentence); });
}

int run(const SimulatorOptions& options)
{
    EcuState state = defaultEcuState();
    StateFile stateFile(options.stateFile);
    const bool keepsState = !options.stateFile.isEmpty();
    if (keepsState && !stateFile.load(state))
        printLine(stderr, stateFile.errorString() + QStringLiteral("; starting with the defaults"));
    state.network = effectiveNetwork(options.network, state.keptNetwork);

    EcuServer server(state, options);
    if (!server.start()) {
        printLine(stderr, QStringLiteral("Cannot listen on %1:%2: %3")
                              .arg(hostAddress(state.network.ecuIp).toString())
                              .arg(state.network.controlPort)
                              .arg(server.errorString()));
        return 1;
    }
    cli::TerminationSignals termination;
    QObject::connect(&termination, &cli::TerminationSignals::terminated, qApp,
                     &QCoreApplication::quit);
    if (keepsState)
        QObject::connect(&server, &EcuServer::stateChanged, &server, [&] {
            if (!stateFile.save(state))
                printLine(stderr, stateFile.errorString());
        });
    if (options.isVerbose)
        QObject::connect(&server, &EcuServer::requestAnswered, &server,
                         [](const QString& summary) { printLine(stdout, summary); });
    tellOfReplay(server);
    printLine(stdout, QStringLiteral("listening on %1").arg(server.endpoint()));
    return QCoreApplication::exec();
}

int runOrTell(const SimulatorOptions& options)
{
    try {
        return run(options);
    } catch (const std::exception& error) {
        printLine(stderr, QString::fromUtf8(error.what()));
        return 1;
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const CommandLine commandLine = parseCommandLine(QCoreApplication::arguments());
    switch (commandLine.action) {
    case CommandLine::Action::PrintAndEnd:
        std::fputs(qPrintable(commandLine.text), stdout);
        return 0;
    case CommandLine::Action::Refuse:
        printLine(stderr, commandLine.text);
        return 1;
    case CommandLine::Action::Run:
        return runOrTell(commandLine.options);
    }
    return 1;
}
