#pragma once

#include "orv_decoder/metatypes.h"

#include <QGroupBox>

#include <cstdint>
#include <memory>

namespace Ui {
class OrvgSensorParameterWidget;
}

/// Edits the place and direction of the selected sensor.
class OrvgSensorParameterWidget : public QGroupBox
{
    Q_OBJECT

public:
    explicit OrvgSensorParameterWidget(QWidget* parent = nullptr);
    ~OrvgSensorParameterWidget() override;

    /// Fills the editors without a signal; enabled for the ids 0..11 only.
    void showSensor(std::uint8_t id, const orv::OrvSensorPosition& position);

    /// What the editors show. The direction is that of the shown angle.
    orv::OrvSensorPosition position() const;

signals:
    /// The user changed a value.
    void sensorParameterChanged(orv::OrvSensorPosition sensorPosition);

public slots:
    void onSpinBoxValueChanged(double value);
    void onSliderValueChanged(int32_t value);
    void onCoordinateValueChanged();

private:
    void connectSignals();

    std::unique_ptr<Ui::OrvgSensorParameterWidget> mUi;
};
