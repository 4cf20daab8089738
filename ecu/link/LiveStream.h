#pragma once

#include "ecu/link/StreamPort.h"
#include "orv_decoder/OrvDecoder.h"

#include <cstdint>
#include <optional>

/// One live stream of the ECU: its port and the records that arrive there. T is
/// orv::OrvMeasurementResult or orv::OrvFreespacePackage. Used on one thread.
template<orv::LiveRecord T>
class LiveStream
{
public:
    /// Opens the port; a failure shows in problem().
    explicit LiveStream(std::uint16_t port);

    /// The next record, when one comes within `waitMs`; 0 only looks. Datagrams that are no record
    /// are passed over. Null when none came, as late where the port is closed. The record stays
    /// until the next call.
    const T* take(std::uint32_t waitMs);

    /// Discards what waits; true when there was at least one record. Bounded in time: what a fast
    /// sender leaves behind waits for the next call.
    bool drain();

    /// Closes the port and opens it again, which discards what the system has buffered.
    /// @param port the new one; 0 keeps the current one
    void reopen(std::uint16_t port = 0);

    bool isOpen() const { return mPort.isOpen(); }

    /// Why the port is closed; nothing while it is open.
    std::optional<PortProblem> problem() const;

private:
    bool waitForDatagram(std::uint32_t waitMs) const;

    StreamPort mPort;
    orv::OrvDecoder<T> mDecoder;
    T mRecord;
};

extern template class LiveStream<orv::OrvMeasurementResult>;
extern template class LiveStream<orv::OrvFreespacePackage>;
