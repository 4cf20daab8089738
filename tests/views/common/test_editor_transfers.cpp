#include "orv_decoder/OrvCtrlClient.h"
#include "tests/support/CursorWatchingSocket.h"
#include "tests/support/MessageBoxWatcher.h"
#include "views/positions/OrvgSensorPositionView.h"
#include "views/sequence/OrvgMseqView.h"
#include "views/thresholds/OrvgThresholdView.h"

#include <QTableView>
#include <QtTest>

#include <functional>

namespace {

/// The three editors, each with something to write.
struct Editors
{
    explicit Editors(orv::OrvCtrlClient* client)
    {
        thresholds.setCtrlClient(client);
        sequence.setCtrlClient(client);
        positions.setCtrlClient(client);
        thresholds.findChild<QTableView*>()->selectRow(0);
        sequence.addStep();
    }

    OrvgThresholdView thresholds;
    OrvgMseqView sequence;
    OrvgSensorPositionView positions;
};

/// One operation of an editor that reads from the ECU or writes to it.
struct Transfer
{
    std::function<bool(Editors&, bool silent)> run;
    QString question; ///< the title of the question; empty when nothing is asked
    std::uint8_t command;
    std::vector<std::vector<std::uint8_t>> replies; ///< of the ECU when all goes well
};

std::vector<std::vector<std::uint8_t>> thresholdReplies()
{
    std::vector<std::vector<std::uint8_t>> replies;
    for (std::uint8_t sensor = 0; sensor < 12; ++sensor) {
        replies.emplace_back(14, std::uint8_t{2});
        replies.back().front() = sensor;
    }
    return replies;
}

const std::vector<std::vector<std::uint8_t>> kAcknowledged(1);

} // namespace

Q_DECLARE_METATYPE(Transfer)

/// What all transfers of the three editors have in common. What each of them moves is tested beside
/// its view.
class EditorTransfersTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { mEcu = std::make_unique<Ecu>(); }

    void cleanup()
    {
        mEcu.reset();
        QVERIFY(!QApplication::overrideCursor());
    }

    void readingAsksFirst_data() { addTransfers(); }
    void readingAsksFirst()
    {
        QFETCH(Transfer, transfer);
        mEcu->answer(transfer);
        const MessageBoxWatcher boxes(QMessageBox::Yes);
        QVERIFY(transfer.run(mEcu->editors, false));
        QCOMPARE(mEcu->socket.requests().size(), transfer.replies.size());
        QCOMPARE(boxes.boxes().size(), transfer.question.isEmpty() ? 0 : 1);
        if (transfer.question.isEmpty())
            return;
        const MessageBoxWatcher::Box& question = boxes.boxes().first();
        QCOMPARE(question.icon, QMessageBox::Information);
        QCOMPARE(question.title, transfer.question);
        QCOMPARE(question.text, QString("Current changes would be overwritten. Are You sure?"));
        QCOMPARE(question.buttons, QMessageBox::Yes | QMessageBox::No);
    }

    void noSendsNothing_data() { addTransfers(); }
    void noSendsNothing()
    {
        QFETCH(Transfer, transfer);
        mEcu->answer(transfer);
        const MessageBoxWatcher boxes(QMessageBox::No);
        QCOMPARE(transfer.run(mEcu->editors, false), transfer.question.isEmpty());
        QCOMPARE(mEcu->socket.requests().empty(), !transfer.question.isEmpty());
    }

    void silentTransferAsksNothing_data() { addTransfers(); }
    void silentTransferAsksNothing()
    {
        QFETCH(Transfer, transfer);
        mEcu->answer(transfer);
        const MessageBoxWatcher boxes;
        QVERIFY(transfer.run(mEcu->editors, true));
        QCOMPARE(mEcu->socket.requests().size(), transfer.replies.size());
        QVERIFY(boxes.boxes().isEmpty());
    }

    void failureIsToldUnlessSilent_data() { addTransfers(); }
    void failureIsToldUnlessSilent()
    {
        QFETCH(Transfer, transfer);
        const MessageBoxWatcher boxes(QMessageBox::Yes);
        QVERIFY(!transfer.run(mEcu->editors, true));
        QVERIFY(boxes.boxes().isEmpty());
        QVERIFY(!transfer.run(mEcu->editors, false));
        QCOMPARE(boxes.boxes().size(), transfer.question.isEmpty() ? 1 : 2);
        QCOMPARE(boxes.boxes().last().icon, QMessageBox::Warning);
        QCOMPARE(boxes.boxes().last().title, QString("Communication error"));
        QVERIFY(boxes.boxes().last().text.endsWith("socket: receive timeout"));
    }

    void waitCursorIsShownMeanwhile_data() { addTransfers(); }
    void waitCursorIsShownMeanwhile()
    {
        QFETCH(Transfer, transfer);
        mEcu->answer(transfer);
        QVERIFY(transfer.run(mEcu->editors, true));
        QCOMPARE(mEcu->socket.hadWaitCursor, std::vector<bool>(transfer.replies.size(), true));
        QVERIFY(!QApplication::overrideCursor());
    }

    void withoutAClientNothingHappens_data() { addTransfers(); }
    void withoutAClientNothingHappens()
    {
        QFETCH(Transfer, transfer);
        Editors editors(nullptr);
        const MessageBoxWatcher boxes(QMessageBox::Yes);
        QVERIFY(!transfer.run(editors, false));
        QVERIFY(boxes.boxes().isEmpty());
    }

    void nullClientDoesNotReplaceAnother_data() { addTransfers(); }
    void nullClientDoesNotReplaceAnother()
    {
        QFETCH(Transfer, transfer);
        mEcu->editors.thresholds.setCtrlClient(nullptr);
        mEcu->editors.sequence.setCtrlClient(nullptr);
        mEcu->editors.positions.setCtrlClient(nullptr);
        mEcu->answer(transfer);
        QVERIFY(transfer.run(mEcu->editors, true));
    }

    void sequenceTalksThroughTheClientOfItsConstructor()
    {
        OrvgMseqView view(nullptr, &mEcu->client);
        mEcu->socket.queueReply(0, {0});
        QVERIFY(view.readSteps(true));
    }

private:
    struct Ecu
    {
        void answer(const Transfer& transfer)
        {
            for (const std::vector<std::uint8_t>& reply : transfer.replies)
                socket.queueReply(transfer.command, reply);
        }

        CursorWatchingSocket socket;
        orv::OrvCtrlClient client{&socket};
        Editors editors{&client};
    };

    static void addTransfers()
    {
        QTest::addColumn<Transfer>("transfer");
        addReads();
        addWrites();
    }

    static void addReads()
    {
        QTest::newRow("read all thresholds") << Transfer{
            [](Editors& editors, bool silent) { return editors.thresholds.onReceiveAll(silent); },
            "Read Thresholds", 1, thresholdReplies()};
        QTest::newRow("read the sequence") << Transfer{
            [](Editors& editors, bool silent) { return editors.sequence.readSteps(silent); },
            "Read sequence",
            0,
            {{0}}};
        QTest::newRow("read the positions")
            << Transfer{[](Editors& editors, bool silent) {
                            return editors.positions.onReadSensorPositionTbClicked(silent);
                        },
                        "Read Positions",
                        4,
                        {std::vector<std::uint8_t>(144)}};
    }

    static void addWrites()
    {
        QTest::newRow("write the thresholds of a sensor")
            << Transfer{[](Editors& editors, bool silent) {
                            return editors.thresholds.onWriteThresholds(silent);
                        },
                        {},
                        1,
                        kAcknowledged};
        QTest::newRow("write all thresholds") << Transfer{
            [](Editors& editors, bool silent) { return editors.thresholds.onTransmitAll(silent); },
            {},
            1,
            std::vector<std::vector<std::uint8_t>>(12)};
        QTest::newRow("write the sequence") << Transfer{
            [](Editors& editors, bool silent) { return editors.sequence.writeSteps(silent); },
            {},
            0,
            kAcknowledged};
        QTest::newRow("write the positions")
            << Transfer{[](Editors& editors, bool silent) {
                            return editors.positions.onWriteSensorPositionTbClicked(silent);
                        },
                        {},
                        4,
                        kAcknowledged};
    }

    std::unique_ptr<Ecu> mEcu;
};

QTEST_MAIN(EditorTransfersTest)
#include "test_editor_transfers.moc"
