#include "tools/tarvioctl/CommandLine.h"
#include "tools/tarvioctl/commands.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <csignal>

int main(int argc, char** argv)
{
#ifdef SIGPIPE
    // A reader that has gone is an ordinary end, after which thresholds may have to be given back.
    std::signal(SIGPIPE, SIG_IGN);
#endif
    const QCoreApplication application(argc, argv);
    // Standard error is for sentences to people.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    return static_cast<int>(
        tarvioctl::runCommandLine(tarvioctl::allCommands(), QCoreApplication::arguments()));
}
