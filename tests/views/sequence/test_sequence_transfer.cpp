#include "tests/views/common/EditorTransferTest.h"
#include "tests/views/sequence/SequenceViewFixture.h"

class SequenceTransferTest : public EditorTransferTest<SequenceViewFixture>
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

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
        QCOMPARE(mBoxes->boxes().size(), 2);
        expectError(text);
        QCOMPARE(mFixture->model().steps(), SequenceViewFixture::steps(2));
    }

    void silentEcuIsShown()
    {
        mFixture->model().setSteps(SequenceViewFixture::steps(2));
        QVERIFY(!mFixture->view.readSteps(false));
        QCOMPARE(mBoxes->boxes().size(), 2);
        expectError("socket: receive timeout");
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

private:
    void queueSteps(std::size_t count)
    {
        mFixture->socket.queueReply(0,
                                    SequenceViewFixture::reply(SequenceViewFixture::steps(count)));
    }
};

QTEST_MAIN(SequenceTransferTest)
#include "test_sequence_transfer.moc"
