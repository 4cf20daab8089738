#include "tools/common/CapturePlayer.h"

#include "tools/common/OptionReader.h"

#include <QStringList>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>

namespace cli {

namespace {

// A capture with much to read at one time must not keep the event loop.
constexpr int kPacketsATurn = 64;

// Between the rounds of a loop: about a measurement's distance, and no flood from a single packet.
constexpr double kPauseSeconds = 0.05;

// A timer cannot be set for longer than some weeks.
constexpr double kMaxWaitSeconds = 3600;

// Sooner than a timer can tell.
constexpr double kToleranceSeconds = 0.0005;

constexpr std::size_t kMaxOtherPorts = 5;

constexpr double kMinSpeed = 0.01;
constexpr double kMaxSpeed = 1000;

} // namespace

QList<QCommandLineOption> playbackOptions()
{
    const auto option = [](const char* name, const char* description, const char* value = "") {
        return QCommandLineOption(QLatin1String(name), QLatin1String(description),
                                  QLatin1String(value));
    };
    return {
        option("speed", "Play the capture this many times as fast, 0.01 to 1000 (1).", "number"),
        option("loop", "Play the capture again and again."),
        option("recorded-receive-port",
               "What the capture holds for this port are measurement results (the one in use).",
               "port"),
        option("recorded-fsp-port",
               "What the capture holds for this port are freespace packages (the one in use).",
               "port")};
}

Playback readPlayback(const OptionReader& reader, const QString& fileName)
{
    return {.fileName = fileName,
            .speed = reader.number("speed", kMinSpeed, kMaxSpeed, 1),
            .isLooped = reader.isSet("loop"),
            .recordedReceivePort = reader.port("recorded-receive-port", 1),
            .recordedFreespacePort = reader.port("recorded-fsp-port", 1)};
}

CapturePlayer::CapturePlayer(const Playback& playback, const StreamPorts& ports, QObject* parent)
    : QObject(parent)
    , mPlayback(playback)
    , mRecordedPorts{.measurements = playback.recordedReceivePort.value_or(ports.measurements),
                     .freespaces = playback.recordedFreespacePort.value_or(ports.freespaces)}
    , mReader(std::make_unique<CaptureReader>(playback.fileName))
    , mPace(playback.speed)
{
    mTimer.setSingleShot(true);
    mTimer.setTimerType(Qt::PreciseTimer);
    connect(&mTimer, &QTimer::timeout, this, &CapturePlayer::playOn);
}

void CapturePlayer::start()
{
    mClock.start();
    mTimer.start(0);
}

QString CapturePlayer::summary() const
{
    return QStringLiteral("%1 measurement and %2 freespace datagrams sent, %3 packets passed over")
        .arg(mMeasurements)
        .arg(mFreespaces)
        .arg(mPassedOver);
}

// Nothing may be thrown through the event loop.
void CapturePlayer::playOn()
{
    try {
        if (!takeTurns())
            return;
    } catch (const std::exception& error) {
        emit failed(QString::fromUtf8(error.what()));
        return;
    }
    const double now = static_cast<double>(mClock.nsecsElapsed()) / 1e9;
    const double wait = mWaiting ? std::clamp(mWaiting->dueSeconds - now, 0.0, kMaxWaitSeconds) : 0;
    mTimer.start(std::chrono::milliseconds(std::llround(wait * 1000)));
}

// False once there is nothing more to play.
bool CapturePlayer::takeTurns()
{
    for (int packet = 0; packet < kPacketsATurn; ++packet) {
        if (!mWaiting && !readPacket())
            return false;
        if (!mWaiting)
            continue;
        if (mWaiting->dueSeconds >
            static_cast<double>(mClock.nsecsElapsed()) / 1e9 + kToleranceSeconds)
            return true;
        handOut(*mWaiting);
        mWaiting.reset();
    }
    return true;
}

bool CapturePlayer::readPacket()
{
    const std::optional<CapturedPacket> packet = mReader->next();
    if (!packet)
        return beginAgain();
    const auto kind =
        packet->datagram ? streamOf(packet->datagram->destination.port) : std::nullopt;
    if (!kind) {
        passOver(*packet);
        return true;
    }
    const auto payload = packet->datagram->payload;
    mWaiting = Waiting{.kind = *kind,
                       .dueSeconds = mPace.dueAt(packet->seconds),
                       .datagram = QByteArray(reinterpret_cast<const char*>(payload.data()),
                                              static_cast<int>(payload.size()))};
    return true;
}

void CapturePlayer::passOver(const CapturedPacket& packet)
{
    ++mPassedOver;
    if (packet.datagram && mOtherPorts.size() < kMaxOtherPorts)
        mOtherPorts.insert(packet.datagram->destination.port);
}

bool CapturePlayer::beginAgain()
{
    if (mMeasurements + mFreespaces == 0) {
        emit failed(nothingFound());
        return false;
    }
    if (!mPlayback.isLooped) {
        emit ended();
        return false;
    }
    mReader = std::make_unique<CaptureReader>(mPlayback.fileName);
    mPace.beginAgain(kPauseSeconds);
    return true;
}

std::optional<StreamKind> CapturePlayer::streamOf(std::uint16_t destinationPort) const
{
    if (destinationPort == 0)
        return std::nullopt;
    if (destinationPort == mRecordedPorts.measurements)
        return StreamKind::Measurements;
    if (destinationPort == mRecordedPorts.freespaces)
        return StreamKind::Freespaces;
    return std::nullopt;
}

void CapturePlayer::handOut(const Waiting& waiting)
{
    ++(waiting.kind == StreamKind::Measurements ? mMeasurements : mFreespaces);
    emit due(waiting.kind, waiting.datagram);
}

QString CapturePlayer::nothingFound() const
{
    if (mOtherPorts.empty())
        return QStringLiteral("%1 holds no UDP datagram over IPv4: give a capture of the live "
                              "streams.")
            .arg(mPlayback.fileName);
    QStringList ports;
    for (const std::uint16_t port : mOtherPorts)
        ports += QString::number(port);
    return QStringLiteral("%1 holds nothing for port %2 or %3, but for %4: say which is which by "
                          "--recorded-receive-port and --recorded-fsp-port.")
        .arg(mPlayback.fileName)
        .arg(mRecordedPorts.measurements)
        .arg(mRecordedPorts.freespaces)
        .arg(ports.join(QStringLiteral(", ")));
}

} // namespace cli
