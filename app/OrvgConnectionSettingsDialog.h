#pragma once

#include <QDialog>

#include <array>
#include <cstdint>
#include <memory>

class QLabel;
class QSettings;
struct ConnectionSettings;

namespace orv {
class OrvCtrlClient;
struct EcuNetworkSettings;
} // namespace orv

namespace Ui {
class OrvgConnectionSettingsDialog;
}

/// Edits the addresses and ports of both ends of the link and, through the control channel, the
/// ECU's own network settings. Imported values that wait in the store are offered first.
class OrvgConnectionSettingsDialog : public QDialog
{
    Q_OBJECT

public:
    /// Client and store are borrowed.
    OrvgConnectionSettingsDialog(orv::OrvCtrlClient* client, QSettings* store,
                                 QWidget* parent = nullptr);
    ~OrvgConnectionSettingsDialog() override;

    /// Stores the values and forgets an import. Values that no link can be made of are refused.
    void accept() override;

public slots:
    /// Asks the ECU at the address and control port in the fields, saved or not.
    void onReadSettings();

    /// Tells the ECU at the saved address, whatever the fields say.
    void onTransmitSettings();

private:
    std::array<const QLabel*, 4> addressLabels() const;
    QStringList incompleteAddresses() const;
    void updateButtons();
    void refuseSharedPort(int port);
    void fill(const ConnectionSettings& connection);
    void fill(const orv::EcuNetworkSettings& ecuSettings);
    void showFreespacePort(int port);
    std::uint16_t freespacePort() const;
    ConnectionSettings connection() const;
    orv::EcuNetworkSettings ecuSettings() const;
    bool readFromTypedAddress(orv::EcuNetworkSettings& ecuSettings);
    bool transmit();

    std::unique_ptr<Ui::OrvgConnectionSettingsDialog> mUi;
    orv::OrvCtrlClient* mClient; // borrowed
    QSettings* mStore;           // borrowed
};
