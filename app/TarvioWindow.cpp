#include "app/TarvioWindow.h"

#include "app/EcuSynchronisation.h"
#include "app/FixedSubWindow.h"
#include "app/LinkDisplay.h"
#include "app/OrvgAboutDialog.h"
#include "app/OrvgConnectionSettingsDialog.h"
#include "app/SettingsFileCommands.h"
#include "app/store_or_tell.h"
#include "app/tab_order.h"
#include "app/view_holders.h"
#include "app/window_layout.h"
#include "ecu/configuration/network_section.h"
#include "ecu/link/EcuLink.h"
#include "ecu/link/LinkSupervisor.h"
#include "ecu/store/ConnectionSettings.h"
#include "ecu/store/network_keys.h"
#include "ecu/store/settings_store.h"
#include "ui_TarvioWindow.h"
#include "views/freespace/OrvgFreespacesView.h"
#include "views/live/OrvgLiveView.h"
#include "views/recording/OrvgCurveRecordingDialog.h"

#include <QEvent>
#include <QMdiSubWindow>
#include <QSettings>

TarvioWindow::TarvioWindow(QWidget* parent)
    : QMainWindow(parent), mUi(std::make_unique<Ui::MainWindow>())
{
    mUi->setupUi(this);
    mSettings = settings::openStore(this);
    if (!settings::hasGroup(*mSettings, settings::kNetworkGroup))
        writeDefaultNetworkSettings();
    mLink = std::make_unique<EcuLink>(settings::readConnection(*mSettings).link);
    mSupervisor = std::make_unique<LinkSupervisor>(*mLink);
    createConfigurationCommands();
    initViews();
    mSupervisor->start();
}

TarvioWindow::~TarvioWindow() = default;

void TarvioWindow::writeDefaultNetworkSettings()
{
    settings::writeDefaultNetwork(*mSettings);
}

void TarvioWindow::createConfigurationCommands()
{
    const QVector<ConfigurationPart> parts =
        configurationParts(*mSettings, holdersOf({.thresholds = mUi->mThresholdView,
                                                  .sequence = mUi->mMseqView,
                                                  .positions = mUi->mSensorPositionView}));
    mSynchronisation = std::make_unique<EcuSynchronisation>(parts, this);
    mSettingsFileCommands = std::make_unique<SettingsFileCommands>(SettingsFile(parts), this);
}

void TarvioWindow::initViews()
{
    createMdiViews();
    addStates();
    layOut();
    mWindowState.restore(*mSettings);
    handOutControlClient();
    new LinkDisplay(*mSupervisor, statusBar());
    connectLiveData();
    connectActions();
}

void TarvioWindow::createMdiViews()
{
    mLiveView = new OrvgLiveView(this);
    QMdiSubWindow* liveWindow = addSubWindow(mLiveView);
    mFreespacesView = new OrvgFreespacesView(mUi->mSensorPositionView, this);
    connect(mFreespacesView, &OrvgFreespacesView::editModeActivated, this,
            &TarvioWindow::onActivateSensorView);
    addSubWindow(mFreespacesView);
    window_layout::makeRoomForTabs(*mUi->mMdiArea);
    // The live echoes come first, but being shown brings the last sub-window to the front.
    QMetaObject::invokeMethod(
        mUi->mMdiArea, [this, liveWindow] { mUi->mMdiArea->setActiveSubWindow(liveWindow); },
        Qt::QueuedConnection);
}

QMdiSubWindow* TarvioWindow::addSubWindow(QWidget* view)
{
    auto* window = new FixedSubWindow(view);
    connect(window, &FixedSubWindow::tabbed, this, &TarvioWindow::focusNextPrevChild);
    mUi->mMdiArea->addSubWindow(window);
    window->showFixed();
    return window;
}

void TarvioWindow::addStates()
{
    mWindowState.addWindow(this);
    mWindowState.addView(QStringLiteral("live_view"), mLiveView);
    mWindowState.addView(QStringLiteral("freespaces_view"), mFreespacesView);
    mWindowState.addView(QStringLiteral("thresholds_view"), mUi->mThresholdView);
}

void TarvioWindow::layOut()
{
    const window_layout::EditorDocks docks{mUi->mseqDock, mUi->thresholdDock,
                                           mUi->sensorPositionDock};
    window_layout::styleTitles(*this, docks);
    window_layout::arrange(*this, docks);
    window_layout::addToggles(*mUi->menuView, docks);
    window_layout::keepToolBar(*mUi->mainToolBar);
}

void TarvioWindow::handOutControlClient()
{
    orv::OrvCtrlClient* client = &mLink->client();
    mUi->mMseqView->setCtrlClient(client);
    mUi->mThresholdView->setCtrlClient(client);
    mUi->mSensorPositionView->setCtrlClient(client);
}

void TarvioWindow::connectLiveData()
{
    connect(mSupervisor.get(), &LinkSupervisor::measurementReceived, this,
            &TarvioWindow::measResultReceived);
    connect(mSupervisor.get(), &LinkSupervisor::freespaceReceived, this,
            &TarvioWindow::freespaceReceived);
    connect(this, &TarvioWindow::measResultReceived, mLiveView, &OrvgLiveView::onNewMeasResult);
    connect(this, &TarvioWindow::measResultReceived, mUi->mThresholdView,
            &OrvgThresholdView::onNewMeasResult);
    connect(this, &TarvioWindow::freespaceReceived, mFreespacesView,
            &OrvgFreespacesView::onNewFreespacePackage);
    connect(mSupervisor.get(), &LinkSupervisor::firstContact, this, &TarvioWindow::syncFromEcu);
}

void TarvioWindow::connectActions()
{
    connect(mUi->actionCapture, &QAction::toggled, this, &TarvioWindow::onCaptureTriggered);
    connect(mUi->actionConnection, &QAction::triggered, this, &TarvioWindow::onConnectionSettings);
    connect(mUi->actionEnvelopCurveRecording, &QAction::triggered, this,
            &TarvioWindow::onEnvelopCurveRecording);
    connect(mUi->actionAbout, &QAction::triggered, this, &TarvioWindow::onAboutDialog);
    connect(mUi->actionSaveSettings, &QAction::triggered, this, &TarvioWindow::onSaveToXml);
    connect(mUi->actionOpenSettings, &QAction::triggered, this, &TarvioWindow::onReadFromXml);
    connect(mUi->actionExit, &QAction::triggered, this, &TarvioWindow::close);
    connect(mUi->actionSyncFromECU, &QAction::triggered, this, &TarvioWindow::syncFromEcu);
    connect(mUi->actionTransmitToECU, &QAction::triggered, this, &TarvioWindow::transmitToEcu);
}

// The empty status tip of a menu entry would wipe out what the bar says.
bool TarvioWindow::event(QEvent* event)
{
    return event->type() == QEvent::StatusTip || QMainWindow::event(event);
}

bool TarvioWindow::focusNextPrevChild(bool next)
{
    QWidget* stop = nextTabStop(*this, next);
    if (!stop)
        return false;
    stop->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    bringIntoSight(*stop);
    return true;
}

void TarvioWindow::closeEvent(QCloseEvent* event)
{
    mWindowState.save(*mSettings);
    // Imported network values that were not accepted in the connection dialog end with the run.
    settings::forgetImportedConnection(*mSettings);
    storeOrTell(*mSettings, this);
    QMainWindow::closeEvent(event);
}

void TarvioWindow::onCaptureTriggered(bool state)
{
    mSupervisor->setCapture(state);
}

void TarvioWindow::pollingSlot()
{
    mSupervisor->poll();
}

void TarvioWindow::onStatusTimeout()
{
    mSupervisor->judgeSilence();
}

bool TarvioWindow::checkConnection()
{
    return mSupervisor->probe();
}

// The poll is left running when the dialog is closed: the recording shares it with the views, and
// capture, toggled on and off, ends it.
void TarvioWindow::onEnvelopCurveRecording()
{
    auto* dialog = new OrvgCurveRecordingDialog(&mLink->client(), this);
    connect(this, &TarvioWindow::measResultReceived, dialog,
            &OrvgCurveRecordingDialog::onNewMeasResult);
    mSupervisor->startPolling();
    dialog->exec();
    dialog->deleteLater();
}

void TarvioWindow::onAboutDialog()
{
    OrvgAboutDialog(this).exec();
}

void TarvioWindow::onActivateSensorView()
{
    mUi->sensorPositionDock->raise();
}

void TarvioWindow::onConnectionSettings()
{
    OrvgConnectionSettingsDialog dialog(&mLink->client(), mSettings, centralWidget());
    if (dialog.exec() == QDialog::Accepted)
        mSupervisor->reconnect(settings::readConnection(*mSettings).link);
}

void TarvioWindow::onSaveToXml()
{
    mSettingsFileCommands->exportSettings();
}

void TarvioWindow::onReadFromXml()
{
    mSettingsFileCommands->importSettings();
}

void TarvioWindow::syncFromEcu()
{
    // The first answer of the ECU reads everything too, but unasked.
    if (sender() == mUi->actionSyncFromECU)
        mSynchronisation->readInteractively();
    else
        mSynchronisation->readSilently();
}

void TarvioWindow::transmitToEcu()
{
    mSynchronisation->transmit();
}

bool TarvioWindow::importNetworkSection(QXmlStreamReader& reader, std::string& errString)
{
    return settings::importNetworkSection(reader, *mSettings, errString);
}
