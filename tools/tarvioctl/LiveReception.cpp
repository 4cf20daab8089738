#include "tools/tarvioctl/LiveReception.h"

#include "tools/common/OptionReader.h"
#include "tools/tarvioctl/Command.h"

#include <QTimer>

#include <array>
#include <bit>
#include <stdexcept>
#include <utility>

namespace tarvioctl {

namespace {

// A datagram that waits is received at once.
constexpr std::uint32_t kAtOnceMs = 1;

// A fast sender on one port must not keep the other one, the timer and the user waiting.
constexpr int kDatagramsATurn = 64;

// As long as a timer can wait, more than eleven days.
constexpr double kMaxSeconds = 1'000'000;

Refusal portInUse(cli::StreamKind kind, const StreamPort& port)
{
    return Refusal(QStringLiteral("Port %1 cannot be had (%2): end the program that holds it, "
                                  "Tarvio for one, or give another %3.")
                       .arg(port.port())
                       .arg(QString::fromStdString(port.systemReason()),
                            kind == cli::StreamKind::Measurements ? QStringLiteral("--receive-port")
                                                                  : QStringLiteral("--fsp-port")));
}

} // namespace

LiveReception::LiveReception(const cli::StreamPorts& ports)
{
    if (ports.measurements != 0 && ports.measurements == ports.freespaces)
        throw std::invalid_argument("Both streams cannot arrive on one port: give another "
                                    "--receive-port or --fsp-port.");
    connect(&mTermination, &cli::TerminationSignals::terminated, this,
            [this] { finish(End::Interrupted); });
    for (const cli::StreamKind kind : {cli::StreamKind::Measurements, cli::StreamKind::Freespaces})
        if (ports.of(kind) != 0)
            open(kind, ports.of(kind));
}

void LiveReception::open(cli::StreamKind kind, std::uint16_t port)
{
    Stream& stream = mStreams.emplace_back();
    stream.kind = kind;
    stream.port = std::make_unique<StreamPort>(port);
    if (!stream.port->open())
        throw portInUse(kind, *stream.port);
    stream.notifier =
        std::make_unique<QSocketNotifier>(stream.port->handle(), QSocketNotifier::Read);
    connect(stream.notifier.get(), &QSocketNotifier::activated, this,
            [this, &stream] { receiveWaiting(stream); });
}

LiveReception::End LiveReception::run(std::optional<double> seconds, Taker take)
{
    mTake = std::move(take);
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    timer.setSingleShot(true);
    connect(&timer, &QTimer::timeout, this, [this] { finish(End::TimeIsUp); });
    if (seconds)
        timer.start(std::chrono::milliseconds(static_cast<std::int64_t>(*seconds * 1000)));
    while (!mEnd)
        mLoop.exec();
    if (mFailure)
        std::rethrow_exception(mFailure);
    return *mEnd;
}

// Nothing may be thrown through the event loop.
void LiveReception::receiveWaiting(const Stream& stream)
{
    try {
        for (int count = 0; count < kDatagramsATurn && !mEnd && stream.port->waitForDatagram(0);
             ++count)
            receiveOne(stream);
    } catch (...) {
        mFailure = std::current_exception();
        finish(End::Asked);
    }
}

void LiveReception::receiveOne(const Stream& stream)
{
    // An empty datagram counts as a failure there; it is none here.
    if (!stream.port->receive(mDatagram, kAtOnceMs))
        mDatagram.clear();
    mTake({.kind = stream.kind,
           .arrival = std::chrono::system_clock::now(),
           .sender = stream.port->lastSender(),
           .port = stream.port->port(),
           .bytes = mDatagram});
}

void LiveReception::finish(End end)
{
    if (!mEnd)
        mEnd = end;
    mLoop.quit();
}

QCommandLineOption runningTimeOption()
{
    return {QStringLiteral("seconds"), QStringLiteral("End after this time (until Ctrl-C)."),
            QStringLiteral("number")};
}

std::optional<double> runningTime(const cli::OptionReader& reader)
{
    if (!reader.isSet("seconds"))
        return std::nullopt;
    return reader.number("seconds", 0.001, kMaxSeconds, kMaxSeconds);
}

// The octets lie in memory as they are sent.
QString endpointText(const orv::Ipv4Endpoint& endpoint)
{
    const auto octets = std::bit_cast<std::array<std::uint8_t, 4>>(endpoint.address);
    return QStringLiteral("%1.%2.%3.%4:%5")
        .arg(octets[0])
        .arg(octets[1])
        .arg(octets[2])
        .arg(octets[3])
        .arg(endpoint.port);
}

QString nothingArrived()
{
    return QStringLiteral("Nothing arrived that could be used: see \"tarvioctl doctor\".");
}

} // namespace tarvioctl
