#pragma once

#include "orv_decoder/metatypes.h"

#include <QDialog>

namespace orv {
class OrvCtrlClient;
}

/// Records the envelope curve of one sensor.
class OrvgCurveRecordingDialog : public QDialog
{
    Q_OBJECT

public:
    /// The client is borrowed.
    OrvgCurveRecordingDialog(orv::OrvCtrlClient* client, QWidget* parent);

public slots:
    void onNewMeasResult(orv::OrvMeasurementResult result);
};
