#include "tools/common/TerminationSignals.h"

#ifdef Q_OS_UNIX
#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace cli {

#ifdef Q_OS_UNIX

namespace {

// A signal handler may write to a descriptor but must not touch Qt; the event loop reads the
// other end of the pair.
int handlerEnd = -1;

void writeToHandlerEnd(int)
{
    const char byte = 0;
    if (::write(handlerEnd, &byte, 1) != 1)
        ::_exit(1);
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent)
{
    int ends[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0)
        return;
    handlerEnd = ends[0];
    auto* notifier = new QSocketNotifier(ends[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &TerminationSignals::terminated);
    std::signal(SIGINT, writeToHandlerEnd);
    std::signal(SIGTERM, writeToHandlerEnd);
    std::signal(SIGHUP, writeToHandlerEnd); // the terminal was closed
}

#else

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {}

#endif

} // namespace cli
