#include "tools/tarvioctl/replay_command.h"

#include "orv_decoder/DatagramSocket.h"
#include "tools/common/CapturePlayer.h"
#include "tools/common/OptionReader.h"
#include "tools/common/StreamPorts.h"
#include "tools/common/TerminationSignals.h"
#include "tools/tarvioctl/Console.h"
#include "tools/tarvioctl/EcuAddress.h"

#include <QEventLoop>

namespace tarvioctl {

namespace {

/// Sends to the ports of the live streams on this computer, and nowhere else.
class LocalSender
{
public:
    explicit LocalSender(const cli::StreamPorts& ports) : mPorts(ports)
    {
        if (!mSocket.startUp() || !mSocket.create())
            throw Refusal(QStringLiteral("There is no socket to send from (%1): end other programs "
                                         "and try again.")
                              .arg(QString::fromStdString(orv::DatagramSocket::systemError())));
    }

    void send(cli::StreamKind kind, const QByteArray& datagram)
    {
        if (mPorts.of(kind) == 0)
            return;
        const bool isSent = mSocket.send({reinterpret_cast<const std::uint8_t*>(datagram.data()),
                                          static_cast<std::size_t>(datagram.size())},
                                         orv::ipv4Endpoint(cli::kThisHost, mPorts.of(kind)));
        if (!isSent)
            ++mNotSent;
    }

    std::uint64_t notSent() const { return mNotSent; }

private:
    cli::StreamPorts mPorts;
    orv::DatagramSocket mSocket;
    std::uint64_t mNotSent = 0;
};

// What went wrong; empty when nothing did.
QString play(cli::CapturePlayer& player, LocalSender& sender)
{
    QString failure;
    QEventLoop loop;
    const cli::TerminationSignals termination;
    QObject::connect(&termination, &cli::TerminationSignals::terminated, &loop, &QEventLoop::quit);
    QObject::connect(&player, &cli::CapturePlayer::ended, &loop, &QEventLoop::quit);
    QObject::connect(&player, &cli::CapturePlayer::failed, &loop, [&](const QString& sentence) {
        failure = sentence;
        loop.quit();
    });
    QObject::connect(
        &player, &cli::CapturePlayer::due, &loop,
        [&](cli::StreamKind kind, const QByteArray& datagram) { sender.send(kind, datagram); });
    player.start();
    loop.exec();
    return failure;
}

ExitStatus runReplay(const Invocation& invocation)
{
    const cli::OptionReader reader(invocation.options);
    const cli::Playback playback = cli::readPlayback(reader, invocation.arguments.constFirst());
    const cli::StreamPorts ports = invocation.ecu.streamPorts();
    LocalSender sender(ports);
    cli::CapturePlayer player(playback, ports);
    if (const QString failure = play(player, sender); !failure.isEmpty())
        throw Refusal(failure);
    invocation.console.tell(QStringLiteral("%1.").arg(player.summary()));
    if (sender.notSent() != 0)
        throw Refusal(QStringLiteral("The system did not take %1 of them: play more slowly.")
                          .arg(sender.notSent()));
    return ExitStatus::Done;
}

} // namespace

Command replayCommand()
{
    return {.name = QStringLiteral("replay"),
            .arguments = QStringLiteral("FILE.pcap[ng]"),
            .summary = QStringLiteral("Plays a capture to the stream ports of this computer."),
            .minArguments = 1,
            .maxArguments = 1,
            .options = cli::playbackOptions(),
            .run = runReplay};
}

} // namespace tarvioctl
