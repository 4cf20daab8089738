#include "app/OrvgConnectionSettingsDialog.h"

#include "app/store_or_tell.h"
#include "ecu/link/other_ecu.h"
#include "ecu/store/ConnectionSettings.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "ui_OrvgConnectionSettingsDialog.h"
#include "views/common/WaitCursor.h"
#include "views/common/messages.h"

#include <QMessageBox>

namespace {

const OrvgIpControlWidget* controlOf(const QLabel* label)
{
    return static_cast<const OrvgIpControlWidget*>(label->buddy());
}

std::uint16_t portOf(const QSpinBox* spinBox)
{
    return static_cast<std::uint16_t>(spinBox->value());
}

} // namespace

OrvgConnectionSettingsDialog::OrvgConnectionSettingsDialog(orv::OrvCtrlClient* client,
                                                           QSettings* store, QWidget* parent)
    : QDialog(parent)
    , mUi(std::make_unique<Ui::OrvgConnectionSettingsDialog>())
    , mClient(client)
    , mStore(store)
{
    mUi->setupUi(this);
    for (const QLabel* label : addressLabels())
        connect(controlOf(label), &OrvgIpControlWidget::addressChanged, this,
                &OrvgConnectionSettingsDialog::updateButtons);
    if (settings::hasImportedConnection(*mStore)) {
        setWindowTitle(tr("*IMPORTED*%1").arg(windowTitle()));
        fill(settings::readImportedConnection(*mStore));
    } else {
        fill(settings::readConnection(*mStore));
    }
    connect(mUi->readButton, &QPushButton::clicked, this,
            &OrvgConnectionSettingsDialog::onReadSettings);
    connect(mUi->transmitButton, &QPushButton::clicked, this,
            &OrvgConnectionSettingsDialog::onTransmitSettings);
    updateButtons();
    mUi->ecuIpControl->startTyping();
}

OrvgConnectionSettingsDialog::~OrvgConnectionSettingsDialog() = default;

void OrvgConnectionSettingsDialog::accept()
{
    const ConnectionSettings typed = connection();
    if (!incompleteAddresses().isEmpty())
        return;
    if (typed.link.receivePort == typed.link.freespacePort) {
        refuseSharedPort(typed.link.receivePort);
        return;
    }
    settings::acceptConnection(*mStore, typed);
    storeOrTell(*mStore, this);
    QDialog::accept();
}

void OrvgConnectionSettingsDialog::onReadSettings()
{
    orv::EcuNetworkSettings ecuSettings;
    if (readFromTypedAddress(ecuSettings))
        fill(ecuSettings);
    else
        showCommunicationError(this, mClient->lastError());
}

void OrvgConnectionSettingsDialog::onTransmitSettings()
{
    if (!transmit()) {
        showCommunicationError(this, mClient->lastError());
        return;
    }
    QMessageBox::information(this, tr("Settings written"),
                             tr("Network settings are successfully transmitted.\n"
                                "Please reset the ECU to apply new settings"));
}

bool OrvgConnectionSettingsDialog::readFromTypedAddress(orv::EcuNetworkSettings& ecuSettings)
{
    const WaitCursor waitCursor;
    return readNetworkSettingsAt(mUi->ecuIpControl->text().toStdString(), portOf(mUi->controlPort),
                                 *mClient, ecuSettings);
}

bool OrvgConnectionSettingsDialog::transmit()
{
    const WaitCursor waitCursor;
    return mClient->writeNetworkSettings(ecuSettings());
}

std::array<const QLabel*, 4> OrvgConnectionSettingsDialog::addressLabels() const
{
    return {mUi->ecuIpLabel, mUi->subnetLabel, mUi->gatewayLabel, mUi->hostIpLabel};
}

QStringList OrvgConnectionSettingsDialog::incompleteAddresses() const
{
    QStringList names;
    for (const QLabel* label : addressLabels()) {
        if (!controlOf(label)->isComplete())
            names.append(label->text().remove(QLatin1Char(':')));
    }
    return names;
}

void OrvgConnectionSettingsDialog::updateButtons()
{
    const QStringList incomplete = incompleteAddresses();
    const QString reason =
        incomplete.isEmpty() ? QString() : tr("Still wanted: %1").arg(incomplete.join(", "));
    for (QPushButton* button :
         {mUi->buttonBox->button(QDialogButtonBox::Ok), mUi->transmitButton}) {
        button->setEnabled(incomplete.isEmpty());
        button->setToolTip(reason);
    }
}

void OrvgConnectionSettingsDialog::refuseSharedPort(int port)
{
    QMessageBox::warning(this, windowTitle(),
                         tr("Signals and freespaces cannot both be received on port %1.\n"
                            "Please choose another port for one of them.")
                             .arg(port));
    mUi->mFreespacesPort->setFocus();
    mUi->mFreespacesPort->selectAll();
}

void OrvgConnectionSettingsDialog::fill(const ConnectionSettings& connection)
{
    mUi->ecuIpControl->setText(connection.link.ecuIp);
    mUi->subnetControl->setText(connection.ecuSubnet);
    mUi->gatewayControl->setText(connection.ecuGateway);
    mUi->controlPort->setValue(connection.link.controlPort);
    mUi->hostIpControl->setText(connection.hostIp);
    mUi->mReceivingPort->setValue(connection.link.receivePort);
    showFreespacePort(connection.link.freespacePort);
}

void OrvgConnectionSettingsDialog::fill(const orv::EcuNetworkSettings& ecuSettings)
{
    mUi->ecuIpControl->setValue(ecuSettings.ecuIp);
    mUi->subnetControl->setValue(ecuSettings.subnetMask);
    mUi->gatewayControl->setValue(ecuSettings.gateway);
    mUi->controlPort->setValue(ecuSettings.controlPort);
    mUi->hostIpControl->setValue(ecuSettings.hostIp);
    mUi->mReceivingPort->setValue(ecuSettings.receivePort);
    showFreespacePort(ecuSettings.freespacePort);
}

// The spin box cannot show 0, the group box does.
void OrvgConnectionSettingsDialog::showFreespacePort(int port)
{
    mUi->mFreespacesPort->setValue(port);
    mUi->mFreespacesGB->setChecked(port != 0);
}

std::uint16_t OrvgConnectionSettingsDialog::freespacePort() const
{
    return mUi->mFreespacesGB->isChecked() ? portOf(mUi->mFreespacesPort) : std::uint16_t{0};
}

ConnectionSettings OrvgConnectionSettingsDialog::connection() const
{
    return {.link = {.ecuIp = mUi->ecuIpControl->text(),
                     .controlPort = portOf(mUi->controlPort),
                     .receivePort = portOf(mUi->mReceivingPort),
                     .freespacePort = freespacePort()},
            .ecuSubnet = mUi->subnetControl->text(),
            .ecuGateway = mUi->gatewayControl->text(),
            .hostIp = mUi->hostIpControl->text()};
}

orv::EcuNetworkSettings OrvgConnectionSettingsDialog::ecuSettings() const
{
    return {.valid = true,
            .ecuIp = mUi->ecuIpControl->value(),
            .subnetMask = mUi->subnetControl->value(),
            .gateway = mUi->gatewayControl->value(),
            .controlPort = portOf(mUi->controlPort),
            .hostIp = mUi->hostIpControl->value(),
            .receivePort = portOf(mUi->mReceivingPort),
            .freespacePort = freespacePort()};
}
