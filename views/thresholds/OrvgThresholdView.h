#pragma once

#include "orv_decoder/SensorThreshold.h"
#include "orv_decoder/metatypes.h"
#include "views/common/EcuExchange.h"

#include <QByteArray>
#include <QWidget>

#include <cstdint>
#include <memory>
#include <span>
#include <string>

class CalibrationClock;
class CalibrationSession;
class OrvgThreshItemModel;
class QModelIndex;
class QXmlStreamReader;
class QXmlStreamWriter;

namespace orv {
class OrvCtrlClient;
}

namespace Ui {
class OrvgThresholdView;
}

/// Edits the echo thresholds of the twelve sensors, reads them from the ECU and writes them, and
/// shows the curve of the selected sensor over its live echo peaks.
///
/// Exchanges with the ECU block. A `silent` call asks nothing; where it returns a bool it also
/// shows no failure.
class OrvgThresholdView : public QWidget
{
    Q_OBJECT

public:
    /// @param calibrationClock drives the automatic calibration; borrowed, null for a real clock
    explicit OrvgThresholdView(QWidget* parent = nullptr,
                               CalibrationClock* calibrationClock = nullptr);
    ~OrvgThresholdView() override;

    /// The client is borrowed; a null one changes nothing.
    void setCtrlClient(orv::OrvCtrlClient* client);

    /// The division between table and plot.
    QByteArray saveState() const;
    bool restoreState(const QByteArray& state);

    /// Replaces the records of their sensors, those of the others stay.
    void setRecords(std::span<const orv::SensorThreshold> records);

public slots:
    /// Reads the selected sensor. A missing selection and a failure are always shown.
    void onReadThresholds(bool silent = false);
    /// Returns at once. A dialog blocks the window until the calibration has ended.
    void onAutoCalibrationStart();
    void onSelectionChanged(const QModelIndex& current, const QModelIndex& previous);
    void onDataChanged(const QModelIndex& changed);
    void onScaleChanged(int32_t index);
    /// Writes the selected sensor, permanently.
    bool onWriteThresholds(bool silent = false);
    void onNewMeasResult(const orv::OrvMeasurementResult& result);
    /// Writes the content of the open section of a settings file.
    void writeXml(QXmlStreamWriter& writer);
    /// Takes the records of the current section; on failure the model is unchanged.
    bool readFromXml(QXmlStreamReader& reader, std::string& errString);
    bool onReceiveAll(bool silent = false);
    bool onTransmitAll(bool silent = false);

private:
    void setUpTable();
    void connectSignals();

    std::uint8_t currentSensor() const;
    void showSensor(std::uint8_t sensorId);
    void showCurve(std::uint8_t sensorId);
    void showScale(std::uint8_t scale);
    void selectSensor(std::uint8_t sensorId);
    OrvgThreshItemModel& editedModel();

    void takeRead(const orv::SensorThreshold& record);
    void takeCalibrated(std::uint8_t sensorId);

    std::unique_ptr<Ui::OrvgThresholdView> mUi;
    OrvgThreshItemModel* mModel;
    EcuExchange mEcu{this};
    CalibrationSession* mCalibration;
    int mLastSelectedRow = -1;
};
