#include "orv_decoder/OrvCtrlSocket.h"
#include "orv_decoder/OrvDecoder.h"
#include "orv_decoder/OrvUdpSocket.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/PatientReceive.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/patience.h"
#include "tests/views/sequence/SequenceViewFixture.h"

#include <optional>

namespace {

/// A sequence view and the ECU at the other end of a real control channel.
class Bench : public SequenceViewFixture
{
public:
    explicit Bench(const QStringList& options = {})
        : ecu(options), channel("127.0.0.1", ecu.controlPort())
    {
        client.setSocket(&channel);
    }

    /// Edits the cell with the keyboard: the word's initial letter, then Enter.
    void type(int row, int column, Qt::Key initial)
    {
        view.show();
        setCurrent(row, column);
        QTest::keyClick(&table(), initial);
        QTest::keyClick(editor(), Qt::Key_Return);
        QTRY_VERIFY(!editor());
    }

    std::vector<orv::MseqStep> heldByEcu()
    {
        std::vector<orv::MseqStep> steps;
        client.readMeasurementSequence(steps);
        return steps;
    }

    /// What the table shows of a step: A, P or D for each sensor.
    QString rolesOfStep(int row)
    {
        QString roles;
        for (int column = 1; column <= 12; ++column)
            roles += text(row, column).at(0);
        return roles;
    }

    SimulatorProcess ecu;
    orv::OrvCtrlSocket channel;
};

/// The live stream, decoded as the main window does.
class LiveStream
{
public:
    /// The roles in the next measurement, as Bench::rolesOfStep() spells them.
    QString next()
    {
        orv::OrvMeasurementResult result;
        if (!mDecoder.take(result, kAnswerPatienceMs))
            return {};
        QString roles;
        for (std::uint8_t sensor = 0; sensor < 12; ++sensor)
            roles += QStringLiteral("DAP").at(static_cast<int>(result.role(sensor)));
        return roles;
    }

    QString port() const { return QString::number(mSocket.port()); }
    void forget() { mSocket.reopen(0); }

private:
    orv::OrvUdpSocket mSocket{freeUdpPort()};
    orv::OrvDecoder<orv::OrvMeasurementResult> mDecoder{&mSocket, orv::OrvDecoderMode::Synchronous};
};

} // namespace

class SequenceWithEcuTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mBoxes = std::make_unique<MessageBoxWatcher>(QMessageBox::Yes);
        mPatience.emplace();
    }
    void cleanup() { mBoxes.reset(); }

    void whatIsEditedAndWrittenIsReadBack()
    {
        Bench bench;
        bench.click("readMseqTb");
        QCOMPARE(bench.model().rowCount(), 12);
        bench.setCurrent(0);
        bench.click("removeStepTb");
        bench.setCurrent(0);
        bench.click("addStepTb");
        bench.type(1, 0, Qt::Key_B);
        bench.type(1, 3, Qt::Key_A);
        bench.type(1, 4, Qt::Key_P);
        bench.click("writeMseqTb");
        const std::vector<orv::MseqStep> written = bench.model().steps();
        QCOMPARE(written.size(), 12U);
        QCOMPARE(written[1].activeMask, std::uint16_t{0x0004});
        QCOMPARE(written[1].passiveMask, std::uint16_t{0x000C});
        QCOMPARE(bench.heldByEcu(), written);
        bench.click("removeStepTb");
        bench.click("readMseqTb");
        QCOMPARE(bench.model().steps(), written);
        QCOMPARE(mBoxes->boxes().size(), 1); // the question before the second read
    }

    void liveRolesFollowTheWrittenSequence()
    {
        LiveStream stream;
        Bench bench({"--receive-port", stream.port()});
        QVERIFY(!stream.next().isEmpty());
        bench.click("addStepTb");
        bench.click("addStepTb");
        bench.type(0, 2, Qt::Key_A);
        bench.type(0, 3, Qt::Key_P);
        bench.type(1, 12, Qt::Key_A);
        bench.type(1, 1, Qt::Key_P);
        bench.click("writeMseqTb");
        stream.forget();
        QCOMPARE(bench.rolesOfStep(0), QString("DAPDDDDDDDDD"));
        QCOMPARE(bench.rolesOfStep(1), QString("PDDDDDDDDDDA"));
        expectTurns(stream, {bench.rolesOfStep(0), bench.rolesOfStep(1)});
        bench.type(1, 12, Qt::Key_D);
        bench.type(1, 11, Qt::Key_A);
        bench.click("writeMseqTb");
        stream.forget();
        expectTurns(stream, {"DAPDDDDDDDDD", "PDDDDDDDDDAD"});
        QVERIFY(mBoxes->boxes().isEmpty());
    }

    void refusalOfTheEcuIsToldAndKeepsTheTable()
    {
        Bench bench({"--status", "0=3"});
        bench.click("addStepTb");
        const std::vector<orv::MseqStep> steps = bench.model().steps();
        bench.click("writeMseqTb");
        expectLastBox("ECU error (3)");
        bench.click("readMseqTb");
        expectLastBox("ECU error (3)");
        QCOMPARE(mBoxes->boxes().size(), 3);
        QCOMPARE(bench.model().steps(), steps);
    }

    void silentEcuIsToldAndKeepsTheTable()
    {
        Bench bench;
        bench.click("readMseqTb");
        const std::vector<orv::MseqStep> steps = bench.model().steps();
        bench.ecu.stop();
        mPatience.reset();
        bench.click("readMseqTb");
        expectLastBox("socket: receive timeout");
        QCOMPARE(bench.model().steps(), steps);
    }

private:
    // Which step is first depends on the moment of the write.
    static void expectTurns(LiveStream& stream, const QStringList& steps)
    {
        const QString first = stream.next();
        QVERIFY2(steps.contains(first), qPrintable(first));
        auto turn = steps.indexOf(first);
        for (int i = 0; i < 6; ++i)
            QCOMPARE(stream.next(), steps[++turn % steps.size()]);
    }

    void expectLastBox(const QString& text)
    {
        QVERIFY(!mBoxes->boxes().isEmpty());
        QCOMPARE(mBoxes->boxes().last().icon, QMessageBox::Warning);
        QCOMPARE(mBoxes->boxes().last().title, QString("Communication error"));
        QCOMPARE(mBoxes->boxes().last().text, text);
    }

    std::unique_ptr<MessageBoxWatcher> mBoxes;
    std::optional<PatientReceive> mPatience;
};

QTEST_MAIN(SequenceWithEcuTest)
#include "test_sequence_with_ecu.moc"
