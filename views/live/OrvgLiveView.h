#pragma once

#include "orv_decoder/constants.h"
#include "orv_decoder/metatypes.h"

#include <QByteArray>
#include <QWidget>

#include <array>
#include <memory>
#include <vector>

class OrvgSignalLineWidget;
class OrvgSignalWidget;
class QRadioButton;

namespace Ui {
class OrvgLiveView;
}

/// Shows the live echoes: a timeline for each of the twelve sensors, and for the selected sensor
/// or the picture that was clicked last a large picture and a table of its first echoes.
///
/// The view is fed with results on the GUI thread and never talks to the ECU.
class OrvgLiveView : public QWidget
{
    Q_OBJECT

public:
    explicit OrvgLiveView(QWidget* parent = nullptr);
    ~OrvgLiveView() override;

    /// The division between timelines and large picture.
    QByteArray saveState() const;
    /// False, and the division stays, when `state` did not come from saveState().
    bool restoreState(const QByteArray& state);

public slots:
    void onRadioButtonToggled(bool state);
    void onSignalWidgetClicked(OrvgSignalWidget* widget);
    void onNewMeasResult(const orv::OrvMeasurementResult& result);

private:
    void createEchoTable();
    void setUpEchoHeader();
    void createTimelines();
    void createTimeline(int sensor);
    void connectTimeline(int sensor, QRadioButton* button);
    void selectSensor(int sensor);
    void focusTimeline(int sensor);
    void showSignalInfo(const std::vector<orv::OrvSensorEcho>& echoes);
    void showEchoRow(int row, const orv::OrvSensorEcho& echo);

    std::unique_ptr<Ui::OrvgLiveView> mUi;
    std::array<OrvgSignalLineWidget*, orv::kSensorCount> mLines{}; // by sensor; children
    int mSelectedSensor = 0;
};
