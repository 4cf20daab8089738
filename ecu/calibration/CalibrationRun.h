#pragma once

#include <QObject>

#include <cstdint>
#include <optional>

class CalibrationClock;

namespace orv {
class OrvCtrlClient;
}

/// Starts the automatic calibration of a sensor, swings a busy indicator back and forth while the
/// ECU works, asks the ECU after each sweep and tells how it ended.
///
/// Blocks for the exchanges alone. What comes late is skipped and stretches nothing: 21.5 seconds
/// after the start at the latest the ECU is asked for the last time.
class CalibrationRun : public QObject
{
    Q_OBJECT

public:
    enum class Ending {
        Finished,
        AbortedByEcu,
        ExchangeFailed, ///< the client's last error tells why
        TimedOut,
    };
    Q_ENUM(Ending)

    /// @param clock borrowed; a null one is replaced by a clock of the run's own
    explicit CalibrationRun(CalibrationClock* clock = nullptr, QObject* parent = nullptr);

    /// False when the ECU refuses, and when a run is under way, which goes on.
    /// @param client borrowed until the end
    /// @param sensorId 0..11, or kNoSensor when none is selected
    bool start(orv::OrvCtrlClient& client, std::uint8_t sensorId);

    bool isRunning() const;

    /// The sensor of the last start.
    std::uint8_t sensorId() const { return mSensorId; }

signals:
    /// The indicator stands at 0..100, `inverted` on the way back.
    void stepped(int value, bool inverted);

    /// The run is over; another one may be started.
    void ended(CalibrationRun::Ending ending);

private:
    void advance();
    std::optional<Ending> askAfterSweep();

    CalibrationClock* mClock;              // borrowed, or a child
    orv::OrvCtrlClient* mClient = nullptr; // borrowed while running
    std::uint8_t mSensorId = 0;
    std::int64_t mSweepsAskedAfter = 0;
};
