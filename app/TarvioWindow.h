#pragma once

#include "app/WindowState.h"
#include "orv_decoder/metatypes.h"

#include <QMainWindow>
#include <QTimer>

#include <memory>
#include <string>

class EcuLink;
class EcuSynchronisation;
class OrvgFreespacesView;
class OrvgLiveView;
class OrvgStatusWidget;
class QMdiSubWindow;
class QSettings;
class QXmlStreamReader;
class SettingsExchange;
struct SettingsSection;

namespace orv {
struct FirmwareVersion;
}

namespace Ui {
class MainWindow;
}

/// The one window of the program. It owns what lives for the whole run (settings store, link to
/// the ECU, timers, views), supervises the link and hands live records on to the views.
class TarvioWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit TarvioWindow(QWidget* parent = nullptr);
    ~TarvioWindow() override;

signals:
    void measResultReceived(orv::OrvMeasurementResult mres);
    void freespaceReceived(orv::OrvFreespacePackage fspPackage);

public slots:
    void onCaptureTriggered(bool state);
    void onConnectionSettings();
    void pollingSlot();
    void onEnvelopCurveRecording();
    void onAboutDialog();
    void onActivateSensorView();
    void onStatusTimeout();
    void onSaveToXml();
    void onReadFromXml();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void writeDefaultNetworkSettings();
    void createConfigurationCommands();
    SettingsSection networkSection();
    void initViews();
    void createMdiViews();
    QMdiSubWindow* addSubWindow(QWidget* view);
    void styleDockTitles();
    void restoreWindowState();
    void arrangeDocks();
    void handOutControlClient();
    void fillViewMenu();
    void keepToolBar();
    void createStatusWidget();
    void connectLiveData();
    void connectActions();
    void startSupervision();

    bool takeMeasurementResult();
    bool takeFreespacePackage();
    void noteLiveRecord();
    bool checkConnection();
    void announceConnection(const orv::FirmwareVersion& version);

    void syncFromEcu();
    void transmitToEcu();
    bool importNetworkSection(QXmlStreamReader& reader, std::string& errString);

    int mStatusInterval = 3000; // milliseconds
    bool mConnected = false;
    bool mInitialSyncDone = false;
    std::unique_ptr<Ui::MainWindow> mUi;
    QSettings* mSettings; // child
    std::unique_ptr<EcuLink> mLink;
    std::unique_ptr<EcuSynchronisation> mSynchronisation;
    std::unique_ptr<SettingsExchange> mSettingsExchange;
    OrvgLiveView* mLiveView = nullptr;             // child, in an MDI sub-window
    OrvgFreespacesView* mFreespacesView = nullptr; // child, in an MDI sub-window
    OrvgStatusWidget* mStatusWidget = nullptr;     // child of the status bar
    QTimer mPollTimer;
    QTimer mStatusTimer;
    WindowState mWindowState;
};
