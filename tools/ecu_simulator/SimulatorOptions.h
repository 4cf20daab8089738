#pragma once

#include "tools/common/CapturePlayer.h"
#include "tools/ecu_simulator/EcuCommands.h"
#include "tools/ecu_simulator/FaultInjector.h"
#include "tools/ecu_simulator/Scene.h"

#include <QHostAddress>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace ecusim {

/// Addresses and ports; what the command line does not name may come from the kept state.
struct NetworkOptions
{
    std::optional<QHostAddress> address;
    std::optional<std::uint16_t> controlPort;
    std::optional<QHostAddress> host;
    std::optional<std::uint16_t> receivePort;
    std::optional<std::uint16_t> freespacePort;
};

/// Everything that the command line says.
struct SimulatorOptions
{
    NetworkOptions network;
    QString stateFile; ///< empty = nothing is kept
    double rate = 20;  ///< results per second
    std::uint64_t seed = 1;
    SceneKind scene = SceneKind::Car;
    double wallDistanceMm = 2000;
    bool hasStreams = true;
    bool isVerbose = false;
    std::optional<cli::Playback> playback; ///< in place of the scene
    EcuBehaviour behaviour;
    ReplyFaultShares replyFaults;
    StreamFaultShares streamFaults;
};

/// What main() has to do.
struct CommandLine
{
    enum class Action { Run, PrintAndEnd, Refuse };

    Action action = Action::Run;
    SimulatorOptions options = {}; ///< of Run
    QString text = {};             ///< of the others: help, version or what is wrong
};

/// Reads the arguments, the first being the program.
CommandLine parseCommandLine(const QStringList& arguments);

/// The network settings that hold: the command line's, then the kept ones, then the defaults.
orv::EcuNetworkSettings effectiveNetwork(const NetworkOptions& options,
                                         const std::optional<orv::EcuNetworkSettings>& kept);

/// Converts between the protocol's packed address (first octet lowest) and Qt's.
QHostAddress hostAddress(std::uint32_t packed);
std::uint32_t packedAddress(const QHostAddress& address);

} // namespace ecusim
