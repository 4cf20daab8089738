#pragma once

#include "tools/ecu_simulator/Echoes.h"
#include "tools/ecu_simulator/SimulatorOptions.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QUdpSocket>

namespace ecusim {

/// Puts the simulated ECU on the network: one socket answers control requests, a timer sends the
/// live streams.
class EcuServer : public QObject
{
    Q_OBJECT

public:
    /// `state` is borrowed; its network settings say where to listen and send.
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

    /// What outlives the run has changed.
    void stateChanged();

private slots:
    void onRequests();
    void onMeasurementTime();

private:
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
    QElapsedTimer mClock;
    quint32 mMeasurementIndex = 0;
};

} // namespace ecusim
