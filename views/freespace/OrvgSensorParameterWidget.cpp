#include "views/freespace/OrvgSensorParameterWidget.h"

#include "orv_decoder/constants.h"
#include "ui_OrvgSensorParameterWidget.h"
#include "views/freespace/marker_geometry.h"

#include <QSignalBlocker>

OrvgSensorParameterWidget::OrvgSensorParameterWidget(QWidget* parent)
    : QGroupBox(parent), mUi(std::make_unique<Ui::OrvgSensorParameterWidget>())
{
    mUi->setupUi(this);
    // Not in the form: what is created inside of a disabled widget is known to screen readers
    // without its kind.
    setEnabled(false);
    connectSignals();
}

OrvgSensorParameterWidget::~OrvgSensorParameterWidget() = default;

void OrvgSensorParameterWidget::showSensor(std::uint8_t id, const orv::OrvSensorPosition& position)
{
    const bool isSensor = id < orv::kSensorCount;
    setTitle(isSensor ? tr("Sensor %1 ").arg(id + 1) : tr("Sensor configuration  "));
    setEnabled(isSensor);
    // Filled one by one, the editors would report a mixture of two sensors in between.
    const QSignalBlocker xBlocker(mUi->mXSB);
    const QSignalBlocker yBlocker(mUi->mYSB);
    const QSignalBlocker angleBlocker(mUi->mAngleSpinBox);
    const QSignalBlocker sliderBlocker(mUi->mAngleSlider);
    mUi->mAngleSpinBox->setValue(freespace::directionInDegrees(position.direction));
    // The spin box rounds: a slider moved to 90 comes back as 89.996 degrees, which it shows as 90.
    mUi->mAngleSlider->setValue(static_cast<int>(mUi->mAngleSpinBox->value()));
    mUi->mXSB->setValue(position.x);
    mUi->mYSB->setValue(position.y);
}

orv::OrvSensorPosition OrvgSensorParameterWidget::position() const
{
    return {.leadingWord = 0,
            .x = static_cast<std::int16_t>(mUi->mXSB->value()),
            .y = static_cast<std::int16_t>(mUi->mYSB->value()),
            .direction = freespace::directionOf(mUi->mAngleSpinBox->value())};
}

void OrvgSensorParameterWidget::onSpinBoxValueChanged(double value)
{
    {
        // The slider knows whole degrees and must not take the fraction from the spin box.
        const QSignalBlocker blocker(mUi->mAngleSlider);
        mUi->mAngleSlider->setValue(static_cast<int>(value));
    }
    emit sensorParameterChanged(position());
}

void OrvgSensorParameterWidget::onSliderValueChanged(int32_t value)
{
    {
        const QSignalBlocker blocker(mUi->mAngleSpinBox);
        mUi->mAngleSpinBox->setValue(value);
    }
    emit sensorParameterChanged(position());
}

void OrvgSensorParameterWidget::onCoordinateValueChanged()
{
    emit sensorParameterChanged(position());
}

void OrvgSensorParameterWidget::connectSignals()
{
    const auto valueChanged = qOverload<int>(&QSpinBox::valueChanged);
    connect(mUi->mXSB, valueChanged, this, &OrvgSensorParameterWidget::onCoordinateValueChanged);
    connect(mUi->mYSB, valueChanged, this, &OrvgSensorParameterWidget::onCoordinateValueChanged);
    connect(mUi->mAngleSpinBox, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
            &OrvgSensorParameterWidget::onSpinBoxValueChanged);
    connect(mUi->mAngleSlider, &QSlider::valueChanged, this,
            &OrvgSensorParameterWidget::onSliderValueChanged);
}
