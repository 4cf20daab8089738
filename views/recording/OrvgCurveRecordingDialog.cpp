#include "views/recording/OrvgCurveRecordingDialog.h"

OrvgCurveRecordingDialog::OrvgCurveRecordingDialog(orv::OrvCtrlClient*, QWidget* parent)
    : QDialog(parent)
{}

void OrvgCurveRecordingDialog::onNewMeasResult(orv::OrvMeasurementResult) {}
