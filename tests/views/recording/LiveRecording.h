#pragma once

#include "tests/support/TestClock.h"
#include "tests/views/recording/RecordingFixture.h"

#include <QApplication>
#include <QTimer>

#include <chrono>

/// Lets time go by and runs what is due then.
inline void pass(TestClock& clock, int milliseconds)
{
    clock.advance(std::chrono::milliseconds(milliseconds));
    QCoreApplication::processEvents();
}

/// Stands for the window that forwards the results.
class Source : public QObject
{
    Q_OBJECT

signals:
    void measResultReceived(const orv::OrvMeasurementResult& result);
};

/// A recording whose results come from a poll; nobody answers its boxes.
struct LiveRecording
{
    LiveRecording()
    {
        fixture.watcher.rest();
        QObject::connect(&source, &Source::measResultReceived, &fixture.dialog,
                         &OrvgCurveRecordingDialog::onNewMeasResult);
        QObject::connect(&source, &Source::measResultReceived, &source, [this] { ++delivered; });
        QObject::connect(&poll, &QTimer::timeout, &source,
                         [this] { emit source.measResultReceived(aMeasurement()); });
    }

    QMessageBox* openBox() const
    {
        return qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    }

    QStringList boxTitles() const
    {
        QStringList titles;
        for (const QMessageBox* box : fixture.dialog.findChildren<QMessageBox*>()) {
            if (box->isVisible())
                titles << box->windowTitle();
        }
        return titles;
    }

    RecordingFixture fixture;
    Source source;
    QTimer poll;
    int delivered = 0;
};
