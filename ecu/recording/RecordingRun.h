#pragma once

#include "ecu/recording/RecordingSweep.h"
#include "orv_decoder/SensorThreshold.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <vector>

namespace orv {
class OrvCtrlClient;
}

/// Records the envelope curve of one sensor from the results that it is given: slides the window on
/// the ECU, hands on the echoes that pass it and watches that results come.
///
/// Blocks for the writing of thresholds alone. Each recording that was started has one end,
/// whatever ends it, and from then on writes nothing: who read the sensor's thresholds before the
/// start may write them back as soon as `ended` is heard.
class RecordingRun : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Idle = 0,
        StartRequested = 1, ///< the next result starts the recording and is not a part of it
        StopRequested = 2,  ///< the next result ends the recording and is not a part of it
        Recording = 3,
    };
    Q_ENUM(State)

    enum class Ending {
        Completed,
        Stopped,
        TimedOut,
        Discarded,
    };
    Q_ENUM(Ending)

    /// @param client borrowed; with a null one nothing is written
    /// @param tailResultsLeft as RecordingSweep takes it
    explicit RecordingRun(
        orv::OrvCtrlClient* client, QObject* parent = nullptr,
        std::uint32_t& tailResultsLeft = RecordingSweep::processTailResultsLeft());

    State state() const { return mState; }

    /// There is something to lose: from the first result, or the request to stop, up to the end.
    bool isRecording() const;

    /// How long the last recording took, from the result that started it to its end; 0 when none
    /// did.
    qint64 elapsedMs() const { return mElapsedMs; }

    /// Takes effect with the next result. Takes a stop back that has not taken effect, and the
    /// recording starts anew.
    void start();

    /// Takes effect with the next result; nothing while idle.
    void requestStop();

    /// Ends it at once; nothing while idle.
    void discard();

    /// Ends it as two seconds without a result do.
    void timeOut();

    /// Each result in its turn, with what is chosen at its time.
    void take(const orv::OrvMeasurementResult& result, const RecordingSettings& settings);

signals:
    void stateChanged();

    /// The first result has come: samples that were kept so far are those of a former recording.
    void started();

    /// What the chosen sensor heard through the window.
    void heard(const std::vector<orv::OrvSensorEcho>& echoes);

    /// The ECU has been told; that it could not be costs one step of the curve, not the recording.
    /// @param position in units of 204.8 microseconds; the last one may lie beyond kEndPosition
    void windowMoved(const orv::SensorThreshold& threshold, std::uint32_t position);

    /// The recording is over; another one may be started.
    void ended(RecordingRun::Ending ending);

private:
    void begin(std::uint8_t samplesPerStep);
    void record(const orv::OrvMeasurementResult& result, const RecordingSettings& settings);
    void setState(State state);
    void end(Ending ending);

    orv::OrvCtrlClient* mClient; // borrowed
    State mState = State::Idle;
    RecordingSweep mSweep;
    QTimer mWatchdog{this};
    QElapsedTimer mTime; // valid from the first result on
    qint64 mElapsedMs = 0;
};
