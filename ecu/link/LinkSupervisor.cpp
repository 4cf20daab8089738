#include "ecu/link/LinkSupervisor.h"

#include "ecu/link/EcuLink.h"
#include "ecu/link/LinkSettings.h"

#include <QDebug>

#include <algorithm>
#include <utility>

namespace {

// A poll without a pause waits this long for a record, or it would take a whole core.
constexpr int kIdleWaitMs = 10;

// A tick that is this late has left records behind that no later tick would make up for.
constexpr qint64 kLatenessMs = 30;

// What is left after this time waits for the next tick: events come first.
constexpr int kMaxCatchUpMs = 50;

LinkSupervisor::State stateOf(bool isAnswering, bool hasLiveData)
{
    using State = LinkSupervisor::State;
    if (hasLiveData)
        return State::Connected;
    return isAnswering ? State::OnlineWithoutLiveData : State::Disconnected;
}

} // namespace

LinkSupervisor::LinkSupervisor(EcuLink& link, QObject* parent, const LinkIntervals& intervals)
    : QObject(parent), mLink(link), mIntervals(intervals)
{
    mClock.start();
    // A loss shows within the interval, not about then.
    mStatusTimer.setTimerType(Qt::PreciseTimer);
    mStatusTimer.setInterval(mIntervals.status);
    mReopenTimer.setInterval(mIntervals.reopenPorts);
    connect(&mPollTimer, &QTimer::timeout, this, &LinkSupervisor::poll);
    connect(&mStatusTimer, &QTimer::timeout, this, &LinkSupervisor::judgeSilence);
    connect(&mReopenTimer, &QTimer::timeout, this, &LinkSupervisor::reopenPorts);
}

void LinkSupervisor::start()
{
    mStatusTimer.start();
    judgeSoon();
    tellPortProblems();
}

void LinkSupervisor::setCapture(bool on)
{
    if (!on) {
        mPollTimer.stop();
        return;
    }
    mLink.measurements().reopen();
    mPollTimer.setInterval(mIntervals.poll);
    startPolling();
    tellPortProblems();
}

void LinkSupervisor::startPolling()
{
    mPollTimer.start();
    mNextTickMs = mClock.elapsed() + mPollTimer.interval();
}

void LinkSupervisor::reconnect(const LinkSettings& network)
{
    mLink.reconnect(network);
    mWasConnected = mState != State::Disconnected;
    mConnected = false;
    mHasLiveData = false;
    // The probe below is the one that counts.
    mNextPollProbe.setRemainingTime(mIntervals.pollProbe);
    setState(State::Disconnected);
    judgeSoon();
    tellPortProblems();
}

void LinkSupervisor::judgeSoon()
{
    QTimer::singleShot(mIntervals.firstProbe, Qt::PreciseTimer, this, &LinkSupervisor::judge);
}

void LinkSupervisor::poll()
{
    const qint64 startMs = mClock.elapsed();
    const bool late = isLate(startMs);
    const bool hasPause = mPollTimer.interval() > 0;
    const bool received = handOnOneOfEach(hasPause ? 0 : kIdleWaitMs);
    while (late && mClock.elapsed() - startMs < kMaxCatchUpMs && handOnOneOfEach(0)) {
    }
    if (received)
        probeFromPoll();
    mNextTickMs = hasPause ? mNextTickMs + mPollTimer.interval() : mClock.elapsed();
}

void LinkSupervisor::judgeSilence()
{
    // While somebody polls, the poll takes what arrives: here it has taken nothing for a while.
    mHasLiveData = false;
    judge();
}

void LinkSupervisor::judge()
{
    if (mPollTimer.isActive()) {
        mConnected = probe();
        setState(stateOf(mConnected, mHasLiveData));
        return;
    }
    const bool received = mLink.drain();
    const bool answered = (received && mConnected) || probe();
    mConnected = received || answered;
    setState(stateOf(mConnected, received));
}

bool LinkSupervisor::probe()
{
    orv::FirmwareVersion version;
    const bool answered = mLink.probe(version);
    const bool wasConnected = std::exchange(mWasConnected, false) || mConnected;
    if (!answered && wasConnected)
        emit lost();
    if (!answered || mConnected)
        return answered;
    emit found(version);
    if (!std::exchange(mInitialSyncDone, true))
        emit firstContact();
    return true;
}

// Several ticks that each come a little late leave as much behind as one that comes very late:
// what counts is the time at which this tick was due from the first one on.
bool LinkSupervisor::isLate(qint64 nowMs)
{
    const bool late = nowMs - mNextTickMs > kLatenessMs;
    if (late)
        mNextTickMs = nowMs;
    return late;
}

// What the first stream leaves of the wait is the second one's.
bool LinkSupervisor::handOnOneOfEach(int waitMs)
{
    const QDeadlineTimer deadline(waitMs);
    const bool measurement =
        handOn(mLink.measurements(), &LinkSupervisor::measurementReceived, waitMs);
    const int leftMs = measurement ? 0 : static_cast<int>(deadline.remainingTime());
    const bool freespace = handOn(mLink.freespaces(), &LinkSupervisor::freespaceReceived, leftMs);
    return measurement || freespace;
}

template<orv::LiveRecord T>
bool LinkSupervisor::handOn(LiveStream<T>& stream, void (LinkSupervisor::*signal)(const T&),
                            int waitMs)
{
    const T* record = stream.take(static_cast<std::uint32_t>(waitMs));
    if (!record)
        return false;
    noteLiveRecord();
    (this->*signal)(*record);
    return true;
}

void LinkSupervisor::noteLiveRecord()
{
    mHasLiveData = true;
    mStatusTimer.start();
    setState(State::Connected);
}

// An ECU that streams but does not answer must not cost the picture a time-out a record.
void LinkSupervisor::probeFromPoll()
{
    if (mConnected || !mNextPollProbe.hasExpired())
        return;
    mConnected = probe();
    if (!mConnected)
        mNextPollProbe.setRemainingTime(mIntervals.pollProbe);
}

void LinkSupervisor::setState(State state)
{
    if (std::exchange(mState, state) != state)
        emit stateChanged(mState);
}

void LinkSupervisor::reopenPorts()
{
    mLink.openClosedStreams();
    lookAtPorts();
}

void LinkSupervisor::lookAtPorts()
{
    const std::vector<PortProblem> problems = mLink.portProblems();
    for (const PortProblem& problem : problems) {
        if (std::ranges::find(mPortProblems, problem) == mPortProblems.end())
            qWarning("Can't receive on port %d: %s", problem.port, problem.reason.c_str());
    }
    if (problems.empty())
        mReopenTimer.stop();
    else if (!mReopenTimer.isActive())
        mReopenTimer.start();
    if (std::exchange(mPortProblems, problems) != problems)
        emit portProblemsChanged();
}

void LinkSupervisor::tellPortProblems()
{
    lookAtPorts();
    if (!mPortProblems.empty())
        emit portsMissed();
}
