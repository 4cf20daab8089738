#pragma once

#include "ecu/calibration/CalibrationRun.h"

#include <QPointer>

#include <string>

class CalibrationClock;
class CalibrationDialog;
class EcuExchange;
class QWidget;

/// What the user sees of an automatic calibration: the dialog while it runs, and the box that
/// tells how it failed.
class CalibrationSession : public QObject
{
    Q_OBJECT

public:
    /// @param clock borrowed; null for a real clock
    /// @param view the parent of the boxes and of this object; the dialog opens over its parent
    CalibrationSession(CalibrationClock* clock, QWidget* view);
    ~CalibrationSession() override;

    /// False when the ECU refuses, which is told, and while another calibration runs.
    /// @param ecu borrowed until the end
    /// @param sensorId 0..11, or kNoSensor
    bool start(const EcuExchange& ecu, std::uint8_t sensorId);

signals:
    /// The calibration is over, however it ended; what follows comes after it.
    void ended(std::uint8_t sensorId);

    /// The ECU has found new thresholds.
    void succeeded(std::uint8_t sensorId);

private:
    void showDialog();
    void end(CalibrationRun::Ending ending);
    void conclude(CalibrationRun::Ending ending, std::uint8_t sensorId, const std::string& reason);
    void tell(CalibrationRun::Ending ending, const std::string& reason);
    void showCalibrationError(const QString& text);

    QWidget* mView;
    CalibrationRun* mRun;
    const EcuExchange* mEcu = nullptr;
    QPointer<CalibrationDialog> mDialog; // a child of the view's parent
};
