#pragma once

#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "tests/support/LoopbackEcu.h"
#include "tests/support/MeasurementBuilder.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/patience.h"
#include "views/plot/OrvgPlotWidget.h"
#include "views/recording/OrvgCurveRecordingDialog.h"

#include <QComboBox>
#include <QFile>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QtTest>

/// Results up to the last one of a recording with the defaults: one starts it, 145 positions take
/// three each, the last one takes sixteen and one completes it.
inline constexpr int kResultsOfRecording = 1 + 145 * 3 + 16 + 1;

/// A recording dialog that writes to an ECU on 127.0.0.1, and what a user finds in it.
struct RecordingFixture
{
    RecordingFixture()
    {
        socket.setReceiveTimeout(kAnswerPatienceMs);
        ecu.answerAll({});
    }

    void inject(int count, const orv::OrvMeasurementResult& result = aMeasurement())
    {
        for (int i = 0; i < count; ++i)
            dialog.onNewMeasResult(result);
    }

    template<typename Widget>
    Widget* find(const char* name) const
    {
        return dialog.findChild<Widget*>(name);
    }

    QPushButton* record() const { return find<QPushButton>("mRecordPb"); }
    QPushButton* stop() const { return find<QPushButton>("mStopPb"); }
    QPushButton* save() const { return find<QPushButton>("mSavePb"); }
    QComboBox* sensor() const { return find<QComboBox>("mSensorCb"); }
    QSpinBox* spinBox(const char* name) const { return find<QSpinBox>(name); }
    QProgressBar* progress() const { return find<QProgressBar>("mProgressBar"); }
    OrvgPlotWidget* plot() const { return find<OrvgPlotWidget>("mPlot"); }

    /// False when the window does not become active.
    bool show()
    {
        dialog.show();
        dialog.activateWindow();
        return QTest::qWaitForWindowActive(&dialog);
    }

    bool isIdle() const
    {
        return record()->isEnabled() && !stop()->isEnabled() && save()->isEnabled() &&
               sensor()->isEnabled();
    }

    bool isRecording() const
    {
        return !record()->isEnabled() && stop()->isEnabled() && !save()->isEnabled() &&
               !sensor()->isEnabled();
    }

    /// The samples as the plot saves them.
    QByteArray csv() const
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath("curve.csv"));
        plot()->save(file.fileName());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }

    LoopbackEcu ecu;
    orv::OrvCtrlSocket socket{"127.0.0.1", ecu.port()};
    orv::OrvCtrlClient client{&socket};
    MessageBoxWatcher watcher;
    OrvgCurveRecordingDialog dialog{&client, nullptr};
};
