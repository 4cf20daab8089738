#include "tools/common/TerminationSignals.h"

#ifdef Q_OS_UNIX
#include <QSocketNotifier>

#include <array>
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

/// The handlers of the signals, and the pair that they write into.
class TerminationSignals::Handlers
{
public:
    explicit Handlers(const std::array<int, 2>& ends)
        : mEnds(ends), mNotifier(ends[1], QSocketNotifier::Read)
    {
        handlerEnd = mEnds[0];
        for (std::size_t index = 0; index < kSignals.size(); ++index)
            mFormer[index] = std::signal(kSignals[index], writeToHandlerEnd);
        if (mFormer.back() == SIG_IGN)
            std::signal(SIGHUP, SIG_IGN);
    }

    ~Handlers()
    {
        for (std::size_t index = 0; index < kSignals.size(); ++index)
            std::signal(kSignals[index], mFormer[index]);
        mNotifier.setEnabled(false);
        for (const int end : mEnds)
            ::close(end);
    }

    Handlers(const Handlers&) = delete;
    Handlers& operator=(const Handlers&) = delete;

    const QSocketNotifier& notifier() const { return mNotifier; }

private:
    static constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

    std::array<int, 2> mEnds;
    QSocketNotifier mNotifier;
    std::array<void (*)(int), kSignals.size()> mFormer{};
};

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent)
{
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0)
        return;
    mHandlers = std::make_unique<Handlers>(ends);
    connect(&mHandlers->notifier(), &QSocketNotifier::activated, this,
            &TerminationSignals::terminated);
}

#else

class TerminationSignals::Handlers
{};

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {}

#endif

TerminationSignals::~TerminationSignals() = default;

} // namespace cli
