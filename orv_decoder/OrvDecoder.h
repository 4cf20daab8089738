#pragma once

#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvMeasurementResult.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace orv {

class OrvSocketBase;

enum class OrvDecoderMode : std::uint32_t {
    Threaded = 0,    ///< a receiver thread of its own fills the queue
    Synchronous = 1, ///< each take receives and decodes one datagram on the caller's thread
};

/// Turns the datagrams of one live stream into records, handed out in arrival order.
///
/// T is OrvMeasurementResult or OrvFreespacePackage. The socket is borrowed and must outlive the
/// decoder; in threaded mode nobody else may use it meanwhile.
template<LiveRecord T>
class OrvDecoder
{
public:
    /// Opens the socket; a failure shows only in the socket's last error. Throws
    /// std::runtime_error "Invalid socket pointer" for a null one.
    OrvDecoder(OrvSocketBase* socket, OrvDecoderMode mode);

    /// Ends the receiver thread, which takes at most one receive timeout of 40 ms.
    ~OrvDecoder();
    OrvDecoder(const OrvDecoder&) = delete;
    OrvDecoder& operator=(const OrvDecoder&) = delete;

    /// Puts the oldest record into `out`, whose memory is used again. False when none came within
    /// `timeoutMs`, and in synchronous mode also when the datagram that came was none of T's, which
    /// may leave anything in `out`. Errors: the socket's own, "wrong datagram format", "timeout"
    /// (threaded mode).
    bool take(T& out, std::uint32_t timeoutMs);

    std::string lastError() const; ///< reason of the last failure of take()

private:
    bool receiveAndDecode(T& record, std::uint32_t timeoutMs);
    void receiverLoop();
    bool waitForRecord(std::uint32_t timeoutMs);
    bool hasRecord() const;
    bool takeFront(T& out);
    bool fail(std::string reason);

    std::atomic<bool> mStop = false;
    std::thread mReceiver;
    std::vector<std::uint8_t> mDatagram; // of whoever receives
    mutable std::mutex mMutex;           // guards the queue and the last error
    std::deque<T> mRecords;              // of the threaded mode
    std::string mLastError;
    OrvSocketBase* mSocket; // borrowed
    OrvDecoderMode mMode;
};

extern template class OrvDecoder<OrvMeasurementResult>;
extern template class OrvDecoder<OrvFreespacePackage>;

} // namespace orv
