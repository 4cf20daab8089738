#pragma once

#include "app/WindowState.h"
#include "orv_decoder/metatypes.h"

#include <QMainWindow>

#include <memory>
#include <string>

class EcuLink;
class EcuSynchronisation;
class LinkSupervisor;
class OrvgFreespacesView;
class OrvgLiveView;
class QMdiSubWindow;
class QSettings;
class QXmlStreamReader;
class SettingsFileCommands;

namespace Ui {
class MainWindow;
}

/// The one window of the program. It owns what lives for the whole run (settings store, link to
/// the ECU and its supervision, views), connects it and shows how the link is.
class TarvioWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit TarvioWindow(QWidget* parent = nullptr);
    ~TarvioWindow() override;

    /// Keeps the network values of a settings file until the connection dialog accepts them.
    bool importNetworkSection(QXmlStreamReader& reader, std::string& errString);

signals:
    void measResultReceived(const orv::OrvMeasurementResult& mres);
    void freespaceReceived(const orv::OrvFreespacePackage& fspPackage);

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

    bool checkConnection();

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void writeDefaultNetworkSettings();
    void createConfigurationCommands();
    void initViews();
    void createMdiViews();
    QMdiSubWindow* addSubWindow(QWidget* view);
    void addStates();
    void layOut();
    void handOutControlClient();
    void connectLiveData();
    void connectActions();
    void syncFromEcu();
    void transmitToEcu();

    std::unique_ptr<Ui::MainWindow> mUi;
    QSettings* mSettings; // child
    std::unique_ptr<EcuLink> mLink;
    std::unique_ptr<LinkSupervisor> mSupervisor;
    std::unique_ptr<EcuSynchronisation> mSynchronisation;
    std::unique_ptr<SettingsFileCommands> mSettingsFileCommands;
    OrvgLiveView* mLiveView = nullptr;             // child, in an MDI sub-window
    OrvgFreespacesView* mFreespacesView = nullptr; // child, in an MDI sub-window
    WindowState mWindowState;
};
