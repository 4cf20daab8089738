#pragma once

#include "tools/common/CaptureReader.h"
#include "tools/common/ReplayPace.h"
#include "tools/common/StreamPorts.h"

#include <QByteArray>
#include <QCommandLineOption>
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include <cstdint>
#include <memory>
#include <optional>
#include <set>

namespace cli {

class OptionReader;

/// A capture and how it is played.
struct Playback
{
    QString fileName;
    double speed = 1;
    bool isLooped = false;
    std::optional<std::uint16_t> recordedReceivePort = {}; ///< nothing = the one in use
    std::optional<std::uint16_t> recordedFreespacePort = {};
};

/// The options of a playback beside its file, and what they say.
QList<QCommandLineOption> playbackOptions();
Playback readPlayback(const OptionReader& reader, const QString& fileName);

/// Hands out the live datagrams of a capture when their time has come. Which stream a datagram
/// belongs to is told by the port that it was captured for; what went elsewhere is passed over.
class CapturePlayer : public QObject
{
    Q_OBJECT

public:
    /// Throws std::runtime_error with a whole sentence when the capture cannot be read. The ports
    /// are those in use.
    CapturePlayer(const Playback& playback, const StreamPorts& ports, QObject* parent = nullptr);

    /// Begins with the first packet, at once.
    void start();

    /// "120 measurement and 118 freespace datagrams sent, 3 packets passed over".
    QString summary() const;

signals:
    void due(cli::StreamKind kind, const QByteArray& datagram);

    /// The end of a capture that is not looped.
    void ended();

    /// The capture is broken here, or holds nothing for the streams; one whole sentence.
    void failed(const QString& sentence);

private:
    struct Waiting
    {
        StreamKind kind;
        double dueSeconds;
        QByteArray datagram;
    };

    void playOn();
    bool takeTurns();
    bool readPacket();
    void passOver(const CapturedPacket& packet);
    bool beginAgain();
    std::optional<StreamKind> streamOf(std::uint16_t destinationPort) const;
    void handOut(const Waiting& waiting);
    QString nothingFound() const;

    Playback mPlayback;
    StreamPorts mRecordedPorts;
    std::unique_ptr<CaptureReader> mReader;
    ReplayPace mPace;
    std::optional<Waiting> mWaiting;
    std::set<std::uint16_t> mOtherPorts; // the first few that datagrams were passed over for
    std::uint64_t mMeasurements = 0;
    std::uint64_t mFreespaces = 0;
    std::uint64_t mPassedOver = 0;
    QElapsedTimer mClock;
    QTimer mTimer;
};

} // namespace cli
