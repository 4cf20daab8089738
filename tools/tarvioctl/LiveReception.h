#pragma once

#include "ecu/link/StreamPort.h"
#include "tools/common/StreamPorts.h"
#include "tools/common/TerminationSignals.h"

#include <QCommandLineOption>
#include <QEventLoop>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <chrono>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace cli {
class OptionReader;
}

namespace tarvioctl {

/// What arrived on the port of a live stream; the bytes are borrowed for the time of a call.
struct LiveDatagram
{
    cli::StreamKind kind = cli::StreamKind::Measurements;
    std::chrono::system_clock::time_point arrival;
    orv::Ipv4Endpoint sender;
    std::uint16_t port = 0; ///< where it arrived
    std::span<const std::uint8_t> bytes;
};

/// Receives on the ports of live streams, each of which nobody else may hold.
class LiveReception : public QObject
{
    Q_OBJECT

public:
    using Taker = std::function<void(const LiveDatagram&)>;

    /// How a run came to its end.
    enum class End { Asked, TimeIsUp, Interrupted };

    /// Opens the ports that are not 0. Throws Refusal when one cannot be had and
    /// std::invalid_argument when both are the same.
    explicit LiveReception(const cli::StreamPorts& ports);

    /// Hands every datagram to `take` in the order of arrival, until somebody calls end(), the time
    /// is up or the user interrupts. What `take` throws ends the run and is thrown on.
    End run(std::optional<double> seconds, Taker take);

    void end() { finish(End::Asked); }

private:
    struct Stream
    {
        cli::StreamKind kind = cli::StreamKind::Measurements;
        std::unique_ptr<StreamPort> port;
        std::unique_ptr<QSocketNotifier> notifier; // ends before its port
    };

    void open(cli::StreamKind kind, std::uint16_t port);
    void receiveWaiting(const Stream& stream);
    void receiveOne(const Stream& stream);
    void finish(End end);

    cli::TerminationSignals mTermination;
    std::deque<Stream> mStreams; // whose elements stay where they are
    std::vector<std::uint8_t> mDatagram;
    Taker mTake;
    QEventLoop mLoop;
    std::optional<End> mEnd;
    std::exception_ptr mFailure;
};

/// The option --seconds, and what it says: how long a reception runs.
QCommandLineOption runningTimeOption();
std::optional<double> runningTime(const cli::OptionReader& reader);

/// "192.168.1.3:50002".
QString endpointText(const orv::Ipv4Endpoint& endpoint);

/// A sentence for a reception that received nothing.
QString nothingArrived();

} // namespace tarvioctl
