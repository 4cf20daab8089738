#pragma once

#include "orv_decoder/metatypes.h"

#include <QByteArray>
#include <QWidget>

class OrvgSensorPositionView;

/// Shows the freespaces of the sensors and lets the user place the sensors in edit mode.
class OrvgFreespacesView : public QWidget
{
    Q_OBJECT

public:
    /// The position view is borrowed.
    explicit OrvgFreespacesView(OrvgSensorPositionView* positions, QWidget* parent = nullptr);

    QByteArray saveState() const;
    bool restoreState(const QByteArray& state);

signals:
    void editModeActivated();
    void loadPositions();

public slots:
    void onNewFreespacePackage(orv::OrvFreespacePackage fspPackage);
};
