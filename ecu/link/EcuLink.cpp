#include "ecu/link/EcuLink.h"

#include "ecu/link/LinkSettings.h"
#include "orv_decoder/ShortTimeout.h"

namespace {

constexpr std::uint32_t kProbeTimeoutMs = 100;

} // namespace

EcuLink::EcuLink(const LinkSettings& network)
    : mMeasurements(network.receivePort)
    , mFreespaces(network.freespacePort)
    , mControlSocket(network.ecuIp.toStdString(), network.controlPort)
    , mClient(&mControlSocket)
{}

bool EcuLink::drain()
{
    const bool measurements = mMeasurements.drain();
    const bool freespaces = mFreespaces.drain();
    return measurements || freespaces;
}

bool EcuLink::probe(orv::FirmwareVersion& version)
{
    const orv::ShortTimeout probing(mControlSocket, kProbeTimeoutMs);
    return mClient.readFirmwareVersion(version);
}

void EcuLink::reconnect(const LinkSettings& network)
{
    mControlSocket.reconnect(network.ecuIp.toStdString(), network.controlPort);
    mMeasurements.reopen(network.receivePort);
    mFreespaces.reopen(network.freespacePort);
    // A port that the other stream held until now is free only afterwards.
    openClosedStreams();
}

void EcuLink::openClosedStreams()
{
    if (!mMeasurements.isOpen())
        mMeasurements.reopen();
    if (!mFreespaces.isOpen())
        mFreespaces.reopen();
}

std::vector<PortProblem> EcuLink::portProblems() const
{
    std::vector<PortProblem> problems;
    for (const auto& problem : {mMeasurements.problem(), mFreespaces.problem()}) {
        if (problem)
            problems.push_back(*problem);
    }
    return problems;
}
