#pragma once

#include <QObject>

/// What drives a calibration run: ticks, and the time since the start. A tick may come late; what
/// counts is the time.
class CalibrationClock : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void start() = 0;
    virtual void stop() = 0;
    virtual bool isRunning() const = 0;

    /// Milliseconds since the last start.
    virtual qint64 elapsedMs() const = 0;

signals:
    void ticked();
};
