#pragma once

#include "ecu/link/StreamPort.h"
#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/metatypes.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <vector>

class EcuLink;
struct LinkSettings;
template<orv::LiveRecord T>
class LiveStream;

namespace orv {
struct FirmwareVersion;
}

/// How often what is done, in milliseconds.
struct LinkIntervals
{
    int poll = 11;
    int status = 3000;      ///< without a live record, until the link is judged
    int firstProbe = 100;   ///< after the start and after a change of the connection
    int pollProbe = 1000;   ///< between two probes of a poll that stay without an answer
    int reopenPorts = 3000; ///< between two tries to open a port that could not be bound
};

/// Watches over the link to the ECU: hands live records on while it polls, and finds out whether
/// the ECU answers and sends live data. Works on the thread it lives in and blocks it for one
/// probe of 100 ms at the most, besides what its signals set off.
class LinkSupervisor : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Disconnected,
        OnlineWithoutLiveData, ///< the ECU answers, and that is all
        Connected,             ///< it sends live data
    };
    Q_ENUM(State)

    /// The link is borrowed.
    explicit LinkSupervisor(EcuLink& link, QObject* parent = nullptr,
                            const LinkIntervals& intervals = {});

    /// Begins the watch; the first probe follows soon.
    void start();

    /// Turns polling on, without what the system has buffered of the measurement results, or off.
    void setCapture(bool on);

    /// Polls at the present interval; before the first capture without a pause.
    void startPolling();

    /// Moves the link to other addresses and ports and judges it anew.
    void reconnect(const LinkSettings& network);

    State state() const { return mState; }
    const std::vector<PortProblem>& portProblems() const { return mPortProblems; }

public slots:
    /// Hands on one record of each kind. A tick that comes late works off what waits at once.
    void poll();

    /// Judges the link after a while in which no record came: by live records where nobody polls,
    /// else by whether the ECU answers.
    void judgeSilence();

    /// Asks the ECU for its firmware version; false when it does not answer.
    bool probe();

signals:
    void measurementReceived(const orv::OrvMeasurementResult& result);
    void freespaceReceived(const orv::OrvFreespacePackage& package);

    void stateChanged(LinkSupervisor::State state);

    /// The ECU answers, which it did not before.
    void found(const orv::FirmwareVersion& version);
    /// The same, for the first time of all.
    void firstContact();
    /// The ECU does not answer any more.
    void lost();

    /// A port could not be bound at the start, at capture or after a change of the connection.
    void portsMissed();
    /// portProblems() says something else.
    void portProblemsChanged();

private:
    void judgeSoon();
    void judge();
    bool isLate(qint64 nowMs);
    bool handOnOneOfEach(int waitMs);
    template<orv::LiveRecord T>
    bool handOn(LiveStream<T>& stream, void (LinkSupervisor::*signal)(const T&), int waitMs);
    void noteLiveRecord();
    void probeFromPoll();
    void setState(State state);
    void reopenPorts();
    void lookAtPorts();
    void tellPortProblems();

    EcuLink& mLink;
    const LinkIntervals mIntervals;
    bool mConnected = false;    // the ECU answered the last probe
    bool mWasConnected = false; // before the connection was changed, until the next probe
    bool mHasLiveData = false;  // the poll took a record since the connection was changed or judged
    bool mInitialSyncDone = false;
    State mState = State::Disconnected;
    QTimer mPollTimer;
    QTimer mStatusTimer;
    QTimer mReopenTimer;
    QElapsedTimer mClock;
    qint64 mNextTickMs = 0; // when the next tick of the poll is due
    QDeadlineTimer mNextPollProbe;
    std::vector<PortProblem> mPortProblems;
};
