#include "ecu/link/EcuLink.h"

#include "ecu/store/NetworkSettings.h"

#include <chrono>

namespace {

constexpr auto kSynchronous = orv::OrvDecoderMode::Synchronous;
constexpr std::uint32_t kProbeTimeoutMs = 100;
constexpr std::uint32_t kDrainTimeoutMs = 1;

// A sender that is faster than the drain must not hold the window.
constexpr std::chrono::milliseconds kMaxDrainTime{50};

template<typename T>
bool drainStream(orv::OrvDecoder<T>& decoder)
{
    const auto end = std::chrono::steady_clock::now() + kMaxDrainTime;
    bool received = false;
    T record;
    while (decoder.take(record, kDrainTimeoutMs)) {
        received = true;
        if (std::chrono::steady_clock::now() >= end)
            break;
    }
    return received;
}

} // namespace

EcuLink::EcuLink(const NetworkSettings& network)
    : mMeasurementSocket(network.receivePort)
    , mMeasurementDecoder(&mMeasurementSocket, kSynchronous)
    , mFreespaceSocket(network.freespacePort)
    , mFreespaceDecoder(&mFreespaceSocket, kSynchronous)
    , mControlSocket(network.ecuIp.toStdString(), network.controlPort)
    , mClient(&mControlSocket)
{}

bool EcuLink::take(orv::OrvMeasurementResult& result, std::uint32_t timeoutMs)
{
    return mMeasurementDecoder.take(result, timeoutMs);
}

bool EcuLink::take(orv::OrvFreespacePackage& package, std::uint32_t timeoutMs)
{
    return mFreespaceDecoder.take(package, timeoutMs);
}

bool EcuLink::drain()
{
    const bool measurements = drainStream(mMeasurementDecoder);
    const bool freespaces = drainStream(mFreespaceDecoder);
    return measurements || freespaces;
}

void EcuLink::discardMeasurementResults()
{
    mMeasurementSocket.reopen(0);
}

bool EcuLink::probe(orv::FirmwareVersion& version)
{
    mControlSocket.setReceiveTimeout(kProbeTimeoutMs);
    const bool answered = mClient.readFirmwareVersion(version);
    mControlSocket.applyReceiveTimeout();
    return answered;
}

void EcuLink::reconnect(const NetworkSettings& network)
{
    mControlSocket.reconnect(network.ecuIp.toStdString(), network.controlPort);
    mMeasurementSocket.reopen(network.receivePort);
    mFreespaceSocket.reopen(network.freespacePort);
}
