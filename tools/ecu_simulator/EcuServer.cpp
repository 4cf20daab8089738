#include "tools/ecu_simulator/EcuServer.h"

#include "tools/ecu_simulator/Freespace.h"

#include <QNetworkDatagram>

#include <cmath>
#include <utility>

namespace ecusim {

namespace {

constexpr std::uint64_t kMeasurementStream = 0;
constexpr std::uint64_t kFreespaceStream = 1;

QByteArray toByteArray(const Datagram& datagram)
{
    return {reinterpret_cast<const char*>(datagram.data()), static_cast<int>(datagram.size())};
}

} // namespace

EcuServer::EcuServer(EcuState& state, const SimulatorOptions& options, QObject* parent)
    : QObject(parent)
    , mState(state)
    , mNetwork(state.network)
    , mOptions(options)
    , mScene(options.scene, options.wallDistanceMm)
    , mEchoes(mScene, options.behaviour.missingMask, options.seed)
    , mCommands(state, options.behaviour)
    , mReplyFaults(options.replyFaults, options.seed)
    , mMeasurementFaults(options.streamFaults, options.seed, kMeasurementStream)
    , mFreespaceFaults(options.streamFaults, options.seed, kFreespaceStream)
{
    connect(&mControlSocket, &QUdpSocket::readyRead, this, &EcuServer::onRequests);
    connect(&mMeasurementTimer, &QTimer::timeout, this, &EcuServer::onMeasurementTime);
    mMeasurementTimer.setTimerType(Qt::PreciseTimer);
    mMeasurementTimer.setInterval(static_cast<int>(std::lround(1000 / options.rate)));
    if (options.playback)
        preparePlayback();
}

void EcuServer::preparePlayback()
{
    const cli::StreamPorts ports = {.measurements = mNetwork.receivePort,
                                    .freespaces = mNetwork.freespacePort};
    mPlayer = std::make_unique<cli::CapturePlayer>(*mOptions.playback, ports);
    connect(mPlayer.get(), &cli::CapturePlayer::due, this, &EcuServer::onReplayed);
    connect(mPlayer.get(), &cli::CapturePlayer::failed, this, &EcuServer::replayFailed);
    connect(mPlayer.get(), &cli::CapturePlayer::ended, this,
            [this] { emit replayEnded(mPlayer->summary()); });
}

bool EcuServer::start()
{
    if (!mControlSocket.bind(hostAddress(mNetwork.ecuIp), mNetwork.controlPort,
                             QAbstractSocket::DontShareAddress))
        return false;
    // The port that the system chose is the one that the ECU tells.
    if (mNetwork.controlPort == 0)
        mState.network.controlPort = mControlSocket.localPort();
    mClock.start();
    mMeasurementTimer.start();
    if (mPlayer && mOptions.hasStreams)
        mPlayer->start();
    return true;
}

QString EcuServer::endpoint() const
{
    return QStringLiteral("%1:%2")
        .arg(mControlSocket.localAddress().toString())
        .arg(mControlSocket.localPort());
}

void EcuServer::onRequests()
{
    while (mControlSocket.hasPendingDatagrams()) {
        const QNetworkDatagram request = mControlSocket.receiveDatagram();
        const QByteArray bytes = request.data();
        EcuAnswer answer =
            mCommands.answer({reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                              static_cast<std::size_t>(bytes.size())},
                             mClock.elapsed());
        if (answer.mustKeep)
            emit stateChanged();
        sendReply(std::move(answer.reply), request.senderAddress(),
                  static_cast<quint16>(request.senderPort()));
        emit requestAnswered(QString::fromStdString(answer.summary));
    }
}

void EcuServer::onMeasurementTime()
{
    if (mCommands.advance(mClock.elapsed()))
        emit stateChanged();
    if (mPlayer || !mOptions.hasStreams || mState.sequence.empty())
        return;
    // Time goes with the measurements, not with the clock: the same seed gives the same bytes.
    const double seconds = mMeasurementIndex / mOptions.rate;
    sendStream(mMeasurementFaults,
               orv::encodeMeasurementResult(mEchoes.measure(mState, mMeasurementIndex, seconds)),
               mNetwork.receivePort);
    sendStream(mFreespaceFaults,
               orv::encodeFreespacePackage(
                   freespacePackage(mState, mScene, mOptions.behaviour.missingMask, seconds)),
               mNetwork.freespacePort);
    ++mMeasurementIndex;
}

void EcuServer::onReplayed(cli::StreamKind kind, const QByteArray& datagram)
{
    const bool isMeasurement = kind == cli::StreamKind::Measurements;
    sendStream(isMeasurement ? mMeasurementFaults : mFreespaceFaults,
               Datagram(datagram.begin(), datagram.end()),
               isMeasurement ? mNetwork.receivePort : mNetwork.freespacePort);
}

void EcuServer::sendReply(Datagram reply, const QHostAddress& to, quint16 port)
{
    const FaultyReply faulty = mReplyFaults.apply(std::move(reply));
    for (const Datagram& copy : faulty.copies) {
        const QByteArray bytes = toByteArray(copy);
        if (faulty.delayMs == 0) {
            mControlSocket.writeDatagram(bytes, to, port);
            continue;
        }
        QTimer::singleShot(faulty.delayMs, this, [this, bytes, to, port] {
            mControlSocket.writeDatagram(bytes, to, port);
        });
    }
}

void EcuServer::sendStream(StreamFaults& faults, Datagram datagram, quint16 port)
{
    if (port == 0)
        return;
    const QHostAddress host = hostAddress(mNetwork.hostIp);
    const auto faulty = faults.apply(std::move(datagram));
    for (const Datagram& sent : faulty)
        mStreamSocket.writeDatagram(toByteArray(sent), host, port);
}

} // namespace ecusim
