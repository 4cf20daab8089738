#pragma once

#include "ecu/link/LiveStream.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"

#include <vector>

struct LinkSettings;

/// The two live streams and the control channel of one ECU, used on one thread alone.
/// No operation reports an error to the user: an ECU that is not there is an ordinary state.
class EcuLink
{
public:
    explicit EcuLink(const LinkSettings& network);

    LiveStream<orv::OrvMeasurementResult>& measurements() { return mMeasurements; }
    LiveStream<orv::OrvFreespacePackage>& freespaces() { return mFreespaces; }
    orv::OrvCtrlClient& client() { return mClient; }

    /// Discards what waits in both streams; true when there was at least one record.
    bool drain();

    /// Asks for the firmware version and waits for a short time only.
    bool probe(orv::FirmwareVersion& version);

    /// Moves all three sockets; a port of 0 keeps the socket's current one.
    void reconnect(const LinkSettings& network);

    /// Tries again to open the ports of streams that have none.
    void openClosedStreams();

    /// The streams that have no port, measurement results first.
    std::vector<PortProblem> portProblems() const;

private:
    LiveStream<orv::OrvMeasurementResult> mMeasurements;
    LiveStream<orv::OrvFreespacePackage> mFreespaces;
    orv::OrvCtrlSocket mControlSocket;
    orv::OrvCtrlClient mClient;
};
