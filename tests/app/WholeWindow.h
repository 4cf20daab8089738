#pragma once

#include "app/TarvioWindow.h"
#include "tests/support/EcuAccess.h"
#include "tests/support/PatientReceive.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/TemporaryProfile.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <optional>
#include <utility>

/// The whole window against a simulated ECU, driven through its actions. It waits for as long as
/// the ECU needs on a busy machine.
class WholeWindow
{
public:
    /// The first probe, with the automatic read of everything, is over when it returns. The ECU
    /// holds the configuration of seed 0, but for what it refuses, and sends no live data.
    /// @param ecuArguments more arguments of the simulated ECU
    explicit WholeWindow(const QStringList& ecuArguments = {});

    TarvioWindow& window() { return *mWindow; }
    EcuAccess& ecu() { return *mEcu; }
    SimulatorProcess& simulator() { return mSimulator; }
    /// Ends the ECU's process; what is asked of it then times out as it does for a user.
    void stopSimulator();
    TemporaryProfile& profile() { return mProfile; }
    std::uint16_t receivePort() const { return mReceivePort; }
    std::uint16_t freespacePort() const { return mFreespacePort; }

    void trigger(const char* action);
    QString message() const;

    /// What the three views hold, in the text of a settings file.
    QString configuration() const;

    void exportTo(const QString& fileName);
    /// Imports what the dialog ticks by itself and, if wanted, the network.
    void importFrom(const QString& fileName, bool withNetwork = false,
                    const QStringList& unticked = {});
    QString path(const QString& name) const { return mFolder.filePath(name); }

private:
    std::optional<PatientReceive> mPatience{std::in_place};
    QTemporaryDir mFolder;
    TemporaryProfile mProfile;
    SimulatorProcess mSimulator;
    std::uint16_t mReceivePort;
    std::uint16_t mFreespacePort;
    std::unique_ptr<EcuAccess> mEcu;
    std::unique_ptr<TarvioWindow> mWindow;
};
