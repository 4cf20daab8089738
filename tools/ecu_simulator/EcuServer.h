#pragma once

#include "tools/ecu_simulator/Echoes.h"
#include "tools/ecu_simulator/SimulatorOptions.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QUdpSocket>

#include <memory>

namespace ecusim {

/// Puts the simulated ECU on the network: one socket answers control requests, a timer sends the
/// live streams.
class EcuServer : public QObject
{
    Q_OBJECT

public:
    /// `state` is borrowed; its network settings say where to listen and send. Throws
    /// std::runtime_error with a whole sentence when a capture to play cannot be read.
    EcuServer(EcuState& state, const SimulatorOptions& options, QObject* parent = nullptr);

    /// Binds the control socket and starts the streams; false when the address is taken.
    bool start();

    /// Where the control socket listens, "127.0.0.1:50002".
    QString endpoint() const;

    /// Why start() failed.
    QString errorString() const { return mControlSocket.errorString(); }

signals:
    /// One readable line for each request.
    void requestAnswered(const QString& summary);

    /// A capture came to its end, or could not be played on; one whole sentence.
    void replayEnded(const QString& summary);
    void replayFailed(const QString& sentence);

    /// What outlives the run has changed.
    void stateChanged();

private slots:
    void onRequests();
    void onMeasurementTime();
    void onReplayed(cli::StreamKind kind, const QByteArray& datagram);

private:
    void preparePlayback();
    void sendReply(Datagram reply, const QHostAddress& to, quint16 port);
    void sendStream(StreamFaults& faults, Datagram datagram, quint16 port);

    EcuState& mState;
    orv::EcuNetworkSettings mNetwork; // as started; what is written later waits for a restart
    SimulatorOptions mOptions;
    Scene mScene;
    Echoes mEchoes;
    EcuCommands mCommands;
    ReplyFaults mReplyFaults;
    StreamFaults mMeasurementFaults;
    StreamFaults mFreespaceFaults;
    QUdpSocket mControlSocket;
    QUdpSocket mStreamSocket;
    QTimer mMeasurementTimer;
    std::unique_ptr<cli::CapturePlayer> mPlayer; // null = the scene is sent
    QElapsedTimer mClock;
    quint32 mMeasurementIndex = 0;
};

} // namespace ecusim
