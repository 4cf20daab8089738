#include "tests/support/MessageBoxWatcher.h"
#include "tests/views/sequence/SequenceViewFixture.h"

class SequenceTransferTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mFixture = std::make_unique<SequenceViewFixture>();
        mBoxes = std::make_unique<MessageBoxWatcher>(QMessageBox::Yes);
    }

    void cleanup()
    {
        mBoxes.reset();
        mFixture.reset();
        QVERIFY(!QApplication::overrideCursor());
    }

    void emptyTableIsReadWithoutAQuestion()
    {
        queueSteps(4);
        mFixture->click("readMseqTb");
        QVERIFY(mBoxes->boxes().isEmpty());
        QCOMPARE(requests().size(), 1U);
        QCOMPARE(requests()[0].size(), 3U);
        QCOMPARE(requests()[0][0], std::uint8_t{0});
        QCOMPARE(requests()[0][1], std::uint8_t{1});
        QCOMPARE(mFixture->model().steps(), SequenceViewFixture::steps(4));
    }

    void readAsksAndNoLeavesTheTable()
    {
        mBoxes->setAnswer(QMessageBox::No);
        mFixture->model().setSteps(SequenceViewFixture::steps(2));
        mFixture->click("readMseqTb");
        QCOMPARE(mBoxes->boxes().size(), 1);
        QCOMPARE(mBoxes->boxes()[0].icon, QMessageBox::Information);
        QCOMPARE(mBoxes->boxes()[0].title, QString("Read sequence"));
        QCOMPARE(mBoxes->boxes()[0].text,
                 QString("Current changes would be overwritten. Are You sure?"));
        QCOMPARE(mBoxes->boxes()[0].buttons, QMessageBox::Yes | QMessageBox::No);
        QVERIFY(requests().empty());
        QCOMPARE(mFixture->model().steps(), SequenceViewFixture::steps(2));
        QVERIFY(!mFixture->view.readSteps(false));
    }

    void yesReplacesTheSteps()
    {
        queueSteps(12);
        mFixture->model().setSteps(SequenceViewFixture::steps(2));
        mFixture->click("readMseqTb");
        QCOMPARE(mBoxes->boxes().size(), 1);
        QCOMPARE(mFixture->model().steps(), SequenceViewFixture::steps(12));
        QVERIFY(!mFixture->button("addStepTb").isEnabled());
        QVERIFY(!mFixture->button("cloneStepTb").isEnabled());
        QVERIFY(mFixture->button("removeStepTb").isEnabled());
    }

    void silentReadAsksNothing()
    {
        queueSteps(3);
        mFixture->model().setSteps(SequenceViewFixture::steps(2));
        QVERIFY(mFixture->view.readSteps(true));
        QVERIFY(mBoxes->boxes().isEmpty());
        QCOMPARE(mFixture->model().rowCount(), 3);
    }

    void ecuWithoutStepsEmptiesTheTable()
    {
        mFixture->socket.queueReply(0, {0});
        mFixture->model().setSteps(SequenceViewFixture::steps(2));
        QVERIFY(mFixture->view.readSteps(true));
        QCOMPARE(mFixture->model().rowCount(), 0);
        QVERIFY(!mFixture->button("writeMseqTb").isEnabled());
    }

    void bytesBehindTheStepsAreIgnored()
    {
        std::vector<std::uint8_t> reply = SequenceViewFixture::reply(SequenceViewFixture::steps(2));
        reply.push_back(0xAA);
        mFixture->socket.queueReply(0, reply);
        QVERIFY(mFixture->view.readSteps(true));
        QCOMPARE(mFixture->model().steps(), SequenceViewFixture::steps(2));
    }

    void failedReadIsShownAndKeepsTheTable_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("text");
        const QByteArray step(10, 0);
        QTest::newRow("status 5") << QByteArray(1, 0) << 5 << "ECU error (5)";
        QTest::newRow("empty reply") << QByteArray() << 0 << "wrong data size";
        QTest::newRow("13 steps") << char(13) + step.repeated(13) << 0 << "wrong format";
        QTest::newRow("255 steps") << char(-1) + step << 0 << "wrong format";
        QTest::newRow("count without its steps") << QByteArray(1, 3) << 0 << "wrong format";
        QTest::newRow("last step a byte short")
            << char(2) + step.repeated(2).chopped(1) << 0 << "wrong format";
    }

    void failedReadIsShownAndKeepsTheTable()
    {
        QFETCH(QByteArray, reply);
        QFETCH(int, status);
        for (int i = 0; i < 2; ++i)
            mFixture->socket.queueReply(0, {reply.begin(), reply.end()},
                                        static_cast<std::uint8_t>(status));
        mFixture->model().setSteps(SequenceViewFixture::steps(2));
        QVERIFY(!mFixture->view.readSteps(true));
        QVERIFY(mBoxes->boxes().isEmpty());
        QVERIFY(!mFixture->view.readSteps(false));
        QFETCH(QString, text);
        expectErrorAfterTheQuestion(text);
        QCOMPARE(mFixture->model().steps(), SequenceViewFixture::steps(2));
    }

    void silentEcuIsShown()
    {
        mFixture->model().setSteps(SequenceViewFixture::steps(2));
        QVERIFY(!mFixture->view.readSteps(false));
        expectErrorAfterTheQuestion("socket: receive timeout");
        QCOMPARE(mFixture->model().steps(), SequenceViewFixture::steps(2));
    }

    void writeSendsTheStepsWithoutAsking()
    {
        mFixture->socket.queueReply(0, {});
        mFixture->model().setSteps(std::vector<orv::MseqStep>{
            {.activeMask = 0x0102, .passiveMask = 0x0304, .modulation = 1, .code = 2},
            {.fifthValue = 0x0506}});
        mFixture->click("writeMseqTb");
        QVERIFY(mBoxes->boxes().isEmpty());
        const std::vector<std::uint8_t> expected = {0, 0, 2, 2, 1, 4, 3, 1, 0, 2, 0, 0,
                                                    0, 0, 0, 0, 0, 0, 0, 0, 0, 6, 5};
        QCOMPARE(requests().size(), 1U);
        QCOMPARE(requests()[0].size(), expected.size() + 1); // and a checksum
        QVERIFY(std::equal(expected.begin(), expected.end(), requests()[0].begin()));
    }

    void twelveStepsAreWritten()
    {
        mFixture->socket.queueReply(0, {});
        mFixture->model().setSteps(SequenceViewFixture::steps(12));
        QVERIFY(mFixture->view.writeSteps(false));
        QCOMPARE(requests()[0][2], std::uint8_t{12});
    }

    void emptySequenceIsNotSent()
    {
        QVERIFY(!mFixture->view.writeSteps(true));
        QVERIFY(mBoxes->boxes().isEmpty());
        QVERIFY(!mFixture->view.writeSteps(false));
        expectError("Only 1...12 steps can be set.");
        QVERIFY(requests().empty());
    }

    void failedWriteIsShownUnlessSilent()
    {
        mFixture->socket.queueReply(0, {}, 9);
        mFixture->socket.queueReply(0, {}, 9);
        mFixture->model().setSteps(SequenceViewFixture::steps(2));
        QVERIFY(!mFixture->view.writeSteps(true));
        QVERIFY(mBoxes->boxes().isEmpty());
        QVERIFY(!mFixture->view.writeSteps(false));
        expectError("ECU error (9)");
    }

    void exchangesRunUnderTheWaitCursor()
    {
        queueSteps(1);
        QVERIFY(mFixture->view.readSteps(true));
        QVERIFY(!mFixture->view.writeSteps(false));
        QCOMPARE(mFixture->socket.hadWaitCursor, std::vector<bool>(2, true));
        QVERIFY(!QApplication::overrideCursor());
    }

    void withoutAClientNothingHappens()
    {
        OrvgMseqView view;
        view.setCtrlClient(nullptr);
        view.addStep();
        QVERIFY(!view.readSteps(false));
        QVERIFY(!view.writeSteps(false));
        QVERIFY(mBoxes->boxes().isEmpty());
    }

    void nullClientDoesNotReplaceAnother()
    {
        mFixture->view.setCtrlClient(nullptr);
        queueSteps(1);
        QVERIFY(mFixture->view.readSteps(true));
    }

private:
    const std::vector<std::vector<std::uint8_t>>& requests() const
    {
        return mFixture->socket.requests();
    }

    void queueSteps(std::size_t count)
    {
        mFixture->socket.queueReply(0,
                                    SequenceViewFixture::reply(SequenceViewFixture::steps(count)));
    }

    void expectError(const QString& text)
    {
        QCOMPARE(mBoxes->boxes().size(), 1);
        expectErrorBox(mBoxes->boxes().last(), text);
    }

    void expectErrorAfterTheQuestion(const QString& text)
    {
        QCOMPARE(mBoxes->boxes().size(), 2);
        expectErrorBox(mBoxes->boxes().last(), text);
    }

    static void expectErrorBox(const MessageBoxWatcher::Box& box, const QString& text)
    {
        QCOMPARE(box.icon, QMessageBox::Warning);
        QCOMPARE(box.title, QString("Communication error"));
        QCOMPARE(box.text, text);
        QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    }

    std::unique_ptr<SequenceViewFixture> mFixture;
    std::unique_ptr<MessageBoxWatcher> mBoxes;
};

QTEST_MAIN(SequenceTransferTest)
#include "test_sequence_transfer.moc"
