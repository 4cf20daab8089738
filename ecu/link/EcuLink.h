#pragma once

#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "orv_decoder/OrvDecoder.h"
#include "orv_decoder/OrvUdpSocket.h"

#include <cstdint>

struct NetworkSettings;

/// The two live streams and the control channel of one ECU, used on the GUI thread alone.
/// No operation reports an error to the user: an ECU that is not there is an ordinary state.
class EcuLink
{
public:
    explicit EcuLink(const NetworkSettings& network);

    orv::OrvCtrlClient& client() { return mClient; }

    /// Takes the next record of a stream, waiting at most `timeoutMs`.
    bool take(orv::OrvMeasurementResult& result, std::uint32_t timeoutMs);
    bool take(orv::OrvFreespacePackage& package, std::uint32_t timeoutMs);

    /// Discards what waits in both streams; true when there was at least one record. Bounded in
    /// time: what a fast sender leaves behind waits for the next call.
    bool drain();

    /// Discards the measurement results that the system has buffered.
    void discardMeasurementResults();

    /// Asks for the firmware version and waits for a short time only.
    bool probe(orv::FirmwareVersion& version);

    /// Moves all three sockets; a port of 0 keeps the socket's current one.
    void reconnect(const NetworkSettings& network);

private:
    orv::OrvUdpSocket mMeasurementSocket;
    orv::OrvDecoder<orv::OrvMeasurementResult> mMeasurementDecoder;
    orv::OrvUdpSocket mFreespaceSocket;
    orv::OrvDecoder<orv::OrvFreespacePackage> mFreespaceDecoder;
    orv::OrvCtrlSocket mControlSocket;
    orv::OrvCtrlClient mClient;
};
