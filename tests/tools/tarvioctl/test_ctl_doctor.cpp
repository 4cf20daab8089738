#include "orv_decoder/ControlFrame.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/held_port.h"
#include "tests/tools/tarvioctl/CtlProcess.h"

#include <QRegularExpression>
#include <QtTest>

#include <chrono>
#include <functional>
#include <thread>

namespace {

constexpr int kNobodyAnswersMs = 50;
constexpr int kOtherDoctors = 5;

} // namespace

/// What the program finds where nothing arrives, each cause provoked once.
class TestCtlDoctor : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mReceivePort = freeUdpPort();
        mFreespacePort = freeUdpPort();
    }

    void allIsWell()
    {
        const SimulatorProcess ecu(sending());
        const CtlResult result = doctorWhoHears(arguments(ecu.controlPort()));
        QVERIFY2(result.exitStatus == 0, qPrintable(result.output));
        QVERIFY(!result.output.contains(QStringLiteral("PROBLEM")));
        QVERIFY(result.output.contains(QStringLiteral("firmware 2.14.0")));
        QVERIFY(result.output.contains(QStringLiteral("127.0.0.1, which is this machine")));
        QCOMPARE(result.output.count(QStringLiteral("from 127.0.0.1")), 2);
    }

    void ecuThatIsNotThere()
    {
        const CtlResult result = CtlProcess::run(arguments(freeUdpPort(), kNobodyAnswersMs));
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(hasProblem(result, QStringLiteral("no ECU answers at 127.0.0.1:")));
        QVERIFY(hasProblem(result, QStringLiteral("nothing arrives on port ")));
    }

    void ecuThatSendsToAnotherMachine()
    {
        // A documentation address, which nobody has; with its streams off nothing goes there.
        const SimulatorProcess ecu(ecuArguments() +
                                   QStringList{"--host", "192.0.2.7", "--streams", "off"});
        const CtlResult result = doctor(ecu.controlPort());
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(hasProblem(
            result, QStringLiteral("the ECU sends to 192.0.2.7, which this machine is not")));
        QVERIFY(result.output.contains(
            QStringLiteral("→ give this machine the address 192.0.2.7, or ")));
    }

    void ecuThatSendsToAnotherPort()
    {
        const SimulatorProcess ecu(ecuArguments());
        const int sendsTo = mReceivePort;
        mReceivePort = freeUdpPort();
        const CtlResult result = doctor(ecu.controlPort());
        QVERIFY(
            hasProblem(result, QStringLiteral("the ECU sends measurements to port %1, not to %2")
                                   .arg(sendsTo)
                                   .arg(mReceivePort)));
        QVERIFY(hasProblem(result, QStringLiteral("nothing arrives on port %1").arg(mReceivePort)));
    }

    void ecuThatSendsFromAnotherAddress()
    {
        const SimulatorProcess ecu(sending());
        // Also this machine's, where nobody answers.
        const CtlResult result =
            doctorWhoHears(QStringList{"doctor", "--timeout", "50", "--ecu", "127.0.0.2",
                                       "--control-port", QString::number(freeUdpPort())} +
                           ecuArguments());
        QCOMPARE(result.exitStatus, 1);
        QVERIFY2(hasProblem(result, QStringLiteral("live data come from 127.0.0.1, not from "
                                                   "127.0.0.2\n")),
                 qPrintable(result.output));
        QVERIFY(result.output.contains(QStringLiteral("→ if 127.0.0.1 is the ECU, enter it ")));
    }

    void ecuThatSendsButDoesNotAnswer()
    {
        const SimulatorProcess ecu(sending());
        const quint16 otherPort = freeUdpPort();
        const CtlResult result = doctorWhoHears(arguments(otherPort, kNobodyAnswersMs));
        QVERIFY2(hasProblem(result, QStringLiteral("127.0.0.1 sends live data but does not answer "
                                                   "at port %1\n")
                                        .arg(otherPort)),
                 qPrintable(result.output));
    }

    void senderIsNoQuestionWhereTheEcuAnswers()
    {
        const SimulatorProcess ecu(sending());
        const QString output = doctorWhoHears(arguments(ecu.controlPort())).output;
        QCOMPARE(output.count(QStringLiteral("from 127.0.0.1")), 2);
        QVERIFY2(!output.contains(QStringLiteral("live data")), qPrintable(output));
    }

    void addressWithoutAWayThere()
    {
        // Nobody may send to it.
        const CtlResult result =
            CtlProcess::run(QStringList{"doctor", "--timeout", "50", "--ecu", "255.255.255.255",
                                        "--control-port", QString::number(freeUdpPort())} +
                            ecuArguments());
        QVERIFY2(hasProblem(result, QStringLiteral("no ECU answers at 255.255.255.255:")),
                 qPrintable(result.output));
        QVERIFY2(result.output.contains(QStringLiteral("(socket: send error)\n         → this "
                                                       "machine has no way there: ")),
                 qPrintable(result.output));
    }

    void ecuWithoutASequence()
    {
        const SimulatorProcess ecu(ecuArguments());
        LoopbackPeer peer;
        peer.sendTo(ecu.controlPort(),
                    orv::encodeRequest(orv::ControlCommand::MeasurementSequence, {{0, 0}}));
        QVERIFY(peer.receive(kAnswerPatienceMs));
        const CtlResult result = doctor(ecu.controlPort());
        QCOMPARE(result.exitStatus, 1);
        QVERIFY2(
            hasProblem(result, QStringLiteral("the ECU's measurement sequence has no steps\n")),
            qPrintable(result.output));
    }

    void portThatSomebodyHolds()
    {
        const LoopbackPeer holder;
        mReceivePort = holder.port();
        const SimulatorProcess ecu(ecuArguments());
        const CtlResult result = doctor(ecu.controlPort());
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(hasProblem(result, QStringLiteral("local port %1 is taken").arg(mReceivePort)));
        QVERIFY(!result.output.contains(
            QStringLiteral("nothing arrives on port %1").arg(mReceivePort)));
    }

    void ecuThatSendsNoFreespaces()
    {
        const SimulatorProcess ecu(
            {"--receive-port", QString::number(mReceivePort), "--fsp-port", "0"});
        const CtlResult result = doctor(ecu.controlPort());
        QCOMPARE(result.exitStatus, 1);
        QVERIFY2(hasProblem(result, QStringLiteral("the ECU sends no freespaces\n")),
                 qPrintable(result.output));
    }

    void interruptionSaysNothingOfWhatArrives()
    {
        const SimulatorProcess ecu(ecuArguments());
        CtlResult result = interruptedDoctor(ecu.controlPort());
        // One that was no longer listening has found all that there is.
        for (int more = kOtherDoctors; more > 0 && hasListened(result); --more)
            result = interruptedDoctor(ecu.controlPort());
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(!hasListened(result));
        QVERIFY2(result.errorOutput.startsWith(QStringLiteral("Interrupted: ")),
                 qPrintable(result.errorOutput));
    }

    void whatIsNoRecordIsTold()
    {
        const SimulatorProcess ecu(ecuArguments() + QStringList{"--streams", "off"});
        const std::jthread stranger = sendsNonsense();
        const CtlResult result =
            doctorUntil(arguments(ecu.controlPort()), [this](const QString& output) {
                return !output.contains(nothingArrivesOn(mReceivePort));
            });
        QVERIFY2(hasProblem(result, QStringLiteral("what arrives on port %1 from 127.0.0.1 is no "
                                                   "record")
                                        .arg(mReceivePort)),
                 qPrintable(result.output));
    }

    void nonsenseAmongRecordsIsToldBesideThem()
    {
        const SimulatorProcess ecu(sending());
        const std::jthread stranger = sendsNonsense();
        const QRegularExpression problem(
            QStringLiteral("PROBLEM  [1-9][0-9]* datagrams on port %1 are no records")
                .arg(mReceivePort));
        const CtlResult result =
            doctorUntil(arguments(ecu.controlPort()), [&problem](const QString& output) {
                return problem.match(output).hasMatch();
            });
        QCOMPARE(result.exitStatus, 1);
        QVERIFY2(problem.match(result.output).hasMatch(), qPrintable(result.output));
        QVERIFY(!result.output.contains(QStringLiteral(", 0 datagrams that cannot be decoded on "
                                                       "port %1 ")
                                            .arg(mReceivePort)));
    }

private:
    // To the port of the measurements, as long as the thread lives.
    std::jthread sendsNonsense() const
    {
        return std::jthread([port = mReceivePort](const std::stop_token& stop) {
            LoopbackPeer peer;
            while (!stop.stop_requested()) {
                peer.sendTo(port, {1, 2, 3});
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
        });
    }

    QStringList ecuArguments() const
    {
        return {"--receive-port", QString::number(mReceivePort), "--fsp-port",
                QString::number(mFreespacePort)};
    }

    // An ECU of which much arrives while a doctor listens.
    QStringList sending() const { return ecuArguments() + QStringList{"--rate", "200"}; }

    QStringList arguments(quint16 controlPort, int timeoutMs = kAnswerPatienceMs) const
    {
        return QStringList{"doctor"} + ecuArguments() + ecuOptions(controlPort, timeoutMs);
    }

    CtlResult doctor(quint16 controlPort) const { return CtlProcess::run(arguments(controlPort)); }

    // A doctor listens for two seconds, in which a busy machine may not let the sender do anything:
    // then another one has to look.
    static CtlResult doctorUntil(const QStringList& arguments,
                                 const std::function<bool(const QString&)>& hasSeenIt)
    {
        CtlResult result = CtlProcess::run(arguments);
        for (int more = kOtherDoctors; more > 0 && !hasSeenIt(result.output); --more)
            result = CtlProcess::run(arguments);
        return result;
    }

    CtlResult doctorWhoHears(const QStringList& arguments) const
    {
        return doctorUntil(arguments, [this](const QString& output) {
            return !output.contains(nothingArrivesOn(mReceivePort)) &&
                   !output.contains(nothingArrivesOn(mFreespacePort));
        });
    }

    CtlResult interruptedDoctor(quint16 controlPort) const
    {
        CtlProcess process(arguments(controlPort));
        process.waitForOutput(QStringLiteral("local port %1 is free\n").arg(mFreespacePort));
        while (process.isRunning() && !isPortHeld(mFreespacePort))
            QTest::qWait(1);
        process.interrupt();
        return process.waitForEnd();
    }

    static bool hasListened(const CtlResult& result)
    {
        return result.output.contains(QStringLiteral(" on port "));
    }

    static QString nothingArrivesOn(quint16 port)
    {
        return QStringLiteral("nothing arrives on port %1\n").arg(port);
    }

    static bool hasProblem(const CtlResult& result, const QString& finding)
    {
        return result.output.contains(QStringLiteral("PROBLEM  ") + finding);
    }

    quint16 mReceivePort = 0;
    quint16 mFreespacePort = 0;
};

QTEST_GUILESS_MAIN(TestCtlDoctor)
#include "test_ctl_doctor.moc"
