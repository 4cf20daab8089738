#pragma once

#include "ecu/calibration/CalibrationClock.h"

#include <QElapsedTimer>
#include <QTimer>

/// The clock of a real calibration: ticks each time that a step of the indicator is due.
class TimerClock : public CalibrationClock
{
    Q_OBJECT

public:
    explicit TimerClock(QObject* parent = nullptr);

    void start() override;
    void stop() override;
    bool isRunning() const override;
    qint64 elapsedMs() const override;

private:
    QTimer mTimer{this};
    QElapsedTimer mTime;
};
