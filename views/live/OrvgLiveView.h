#pragma once

#include "orv_decoder/metatypes.h"

#include <QByteArray>
#include <QWidget>

/// Shows the live echoes of the twelve sensors.
class OrvgLiveView : public QWidget
{
    Q_OBJECT

public:
    explicit OrvgLiveView(QWidget* parent = nullptr);

    QByteArray saveState() const;
    bool restoreState(const QByteArray& state);

public slots:
    void onNewMeasResult(orv::OrvMeasurementResult result);
};
