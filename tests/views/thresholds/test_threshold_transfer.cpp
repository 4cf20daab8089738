#include "tests/views/common/EditorTransferTest.h"
#include "tests/views/thresholds/ThresholdViewFixture.h"

#include <QtTest>

namespace {

const QString kQuestion = "Current changes would be overwritten. Are You sure?";

void queueAllReads(ScriptedControlSocket& socket, std::uint8_t entry = 0x5F)
{
    for (std::uint8_t sensor = 0; sensor < 12; ++sensor)
        socket.queueReply(1, ThresholdViewFixture::wireRecord(sensor, entry));
}

} // namespace

class ThresholdTransferTest : public EditorTransferTest<ThresholdViewFixture>
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void readNeedsASelectedSensor()
    {
        mFixture->click("mReadTb");
        expectOneBox(QMessageBox::Information, "Read Thresholds", "Please select sensor first.");
        QVERIFY(requests().empty());
    }

    void readAsksBeforeItOverwrites()
    {
        mBoxes->setAnswer(QMessageBox::No);
        mFixture->setCurrent(3);
        mFixture->click("mReadTb");
        expectOneBox(QMessageBox::Information, "Read Thresholds", kQuestion);
        QCOMPARE(mBoxes->boxes()[0].buttons, QMessageBox::Yes | QMessageBox::No);
        QVERIFY(requests().empty());
    }

    void readTakesTheRecordOfTheSelectedSensor()
    {
        mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(3, 0x5F, 3));
        mFixture->setCurrent(3, 7);
        mFixture->click("mReadTb");
        QCOMPARE(mBoxes->boxes().size(), 1);
        QCOMPARE(requests().size(), 1U);
        QCOMPARE(requests()[0][1], std::uint8_t{1});
        QCOMPARE(requests()[0][2], std::uint8_t{3});
        QCOMPARE(mFixture->model().record(3).entries[11], std::uint8_t{0x5F});
        QCOMPARE(mFixture->scaleBox().currentText(), QString("100%"));
    }

    void readSelectsTheRowAgain()
    {
        mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(3));
        mFixture->setCurrent(3, 7);
        mFixture->view.onReadThresholds(true);
        QCOMPARE(mFixture->table().currentIndex().row(), 3);
        QVERIFY(mFixture->table().selectionModel()->isRowSelected(3, {}));
    }

    void silentReadAsksNothing()
    {
        mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(3));
        mFixture->setCurrent(3);
        mFixture->view.onReadThresholds(true);
        QVERIFY(mBoxes->boxes().isEmpty());
        QCOMPARE(mFixture->model().record(3).scale, std::uint8_t{1});
    }

    void scaleThatTheListDoesNotOfferIsKeptWithoutAChoice()
    {
        mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(3, 0x5F, 4));
        mFixture->setCurrent(3);
        mFixture->view.onReadThresholds(true);
        QCOMPARE(mFixture->model().record(3).scale, std::uint8_t{4});
        QCOMPARE(mFixture->scaleBox().currentIndex(), -1);
    }

    void failedReadIsShownAndChangesNothing_data()
    {
        QTest::addColumn<QByteArray>("frame");
        QTest::addColumn<QString>("text");
        const auto reply = [](const std::vector<std::uint8_t>& payload, std::uint8_t status = 0) {
            const auto frame = orv::encodeReply(1, payload, status);
            return QByteArray(reinterpret_cast<const char*>(frame.data()),
                              static_cast<int>(frame.size()));
        };
        const auto good = ThresholdViewFixture::wireRecord(3);
        QTest::newRow("silent") << QByteArray() << "socket: receive timeout";
        QTest::newRow("other sensor")
            << reply(ThresholdViewFixture::wireRecord(4)) << "wrong sensor id";
        QTest::newRow("scale 5") << reply(ThresholdViewFixture::wireRecord(3, 0x5F, 5))
                                 << "wrong scale value read from sensor";
        QTest::newRow("status 3") << reply({}, 3) << "ECU error (3)";
        QTest::newRow("record cut short")
            << reply({good.begin(), good.end() - 1}) << "wrong data size";
        QTest::newRow("frame cut short") << reply(good).chopped(1) << "checksum error";
    }

    void failedReadIsShownAndChangesNothing()
    {
        QFETCH(QByteArray, frame);
        QFETCH(QString, text);
        if (!frame.isEmpty())
            mFixture->socket.queueRaw({frame.begin(), frame.end()});
        mFixture->setCurrent(3);
        const auto before = mFixture->model().records();
        mFixture->view.onReadThresholds(true);
        expectOneBox(QMessageBox::Warning, "Communication error", text);
        QCOMPARE(mFixture->model().records(), before);
        QCOMPARE(mFixture->scaleBox().currentIndex(), 2);
    }

    void writeSendsTheSelectedRecordPermanently()
    {
        mFixture->socket.queueReply(1, {});
        mFixture->setCurrent(11);
        mFixture->model().setData(mFixture->model().index(11, 0), QPoint(7, 30));
        mFixture->click("mWriteTb");
        const std::vector<std::uint8_t> expected = {1, 0, 11, 0xFE, 0, 0, 0, 0,
                                                    0, 0, 0,  0,    0, 0, 0, 2};
        QCOMPARE(requests().size(), 1U);
        QCOMPARE(requests()[0].size(), expected.size() + 1);
        QVERIFY(std::equal(expected.begin(), expected.end(), requests()[0].begin()));
        QVERIFY(mBoxes->boxes().isEmpty());
    }

    void writeEmptiesThePeaksAndSelectsTheRowAgain()
    {
        mFixture->socket.queueReply(1, {});
        mFixture->setCurrent(2, 5);
        mFixture->receiveEcho(2, 15000);
        QVERIFY(mFixture->plotHasStickAt(15000));
        QVERIFY(mFixture->view.onWriteThresholds());
        QVERIFY(!mFixture->plotHasStickAt(15000));
        QVERIFY(mFixture->table().selectionModel()->isRowSelected(2, {}));
    }

    void writeWithoutASelectedSensorSendsNothing()
    {
        QVERIFY(!mFixture->view.onWriteThresholds());
        QVERIFY(requests().empty());
        QVERIFY(mBoxes->boxes().isEmpty());
    }

    void failedWriteIsShownUnlessSilentAndKeepsThePeaks()
    {
        mFixture->setCurrent(2);
        mFixture->receiveEcho(2, 15000);
        QVERIFY(!mFixture->view.onWriteThresholds(true));
        QVERIFY(mBoxes->boxes().isEmpty());
        QVERIFY(!mFixture->view.onWriteThresholds());
        expectOneBox(QMessageBox::Warning, "Communication error", "socket: receive timeout");
        QVERIFY(mFixture->plotHasStickAt(15000));
    }

    void readAllTakesTheRecordsOfAllSensorsInOrder()
    {
        queueAllReads(mFixture->socket);
        mFixture->click("mReadAllTb");
        QCOMPARE(mBoxes->boxes().size(), 1);
        QCOMPARE(requests().size(), 12U);
        for (std::uint8_t sensor = 0; sensor < 12; ++sensor) {
            QCOMPARE(requests()[sensor][2], sensor);
            QCOMPARE(mFixture->model().record(sensor).entries[0], std::uint8_t{0x5F});
        }
        QCOMPARE(mFixture->scaleBox().currentText(), QString("62.5%"));
    }

    void readAllShowsTheSelectedSensorAgain()
    {
        for (std::uint8_t sensor = 0; sensor < 12; ++sensor)
            mFixture->socket.queueReply(
                1, ThresholdViewFixture::wireRecord(sensor, sensor == 4 ? 0xFF : 0x00,
                                                    sensor == 4 ? 3 : 0));
        mFixture->setCurrent(4);
        mFixture->receiveEcho(4, 15000);
        QVERIFY(mFixture->view.onReceiveAll(true));
        QVERIFY(!mFixture->plotHasStickAt(15000));
        QCOMPARE(mFixture->scaleBox().currentText(), QString("100%"));
        OrvgPlotWidget expected;
        expected.resize(mFixture->plot().size());
        expected.setThresholdColor("orange");
        expected.setThresholds(mFixture->model().record(4).entries);
        expected.setThresholdsShown(true);
        expected.setMarkedColumn(0);
        QCOMPARE(mFixture->plot().grab().toImage(), expected.grab().toImage());
    }

    void readAllCollectsTheFailures()
    {
        for (std::uint8_t sensor = 0; sensor < 12; ++sensor) {
            if (sensor == 1)
                mFixture->socket.queueTimeout();
            else if (sensor == 11)
                mFixture->socket.queueReply(1, {}, 3);
            else
                mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(sensor));
        }
        QVERIFY(!mFixture->view.onReceiveAll());
        QCOMPARE(mBoxes->boxes().size(), 2);
        expectError("Sensor  2: socket: receive timeout\nSensor 12: ECU error (3)");
        QCOMPARE(mFixture->model().record(1).scale, std::uint8_t{2});
        QCOMPARE(mFixture->model().record(10).scale, std::uint8_t{1});
    }

    void writeAllSendsAllRecordsAndLeavesPlotAndSelectionAlone()
    {
        for (int i = 0; i < 12; ++i)
            mFixture->socket.queueReply(1, {});
        mFixture->setCurrent(4, 6);
        mFixture->receiveEcho(4, 15000);
        mFixture->click("mWriteAllTb");
        QCOMPARE(requests().size(), 12U);
        for (std::uint8_t sensor = 0; sensor < 12; ++sensor) {
            QCOMPARE(requests()[sensor][1], std::uint8_t{0});
            QCOMPARE(requests()[sensor][2], sensor);
        }
        QVERIFY(mFixture->plotHasStickAt(15000));
        QCOMPARE(mFixture->table().currentIndex(), mFixture->model().index(4, 6));
        QVERIFY(mBoxes->boxes().isEmpty());
    }

    void writeAllStopsAtTheFirstFailure()
    {
        mFixture->socket.queueReply(1, {});
        mFixture->socket.queueReply(1, {}, 3);
        QVERIFY(!mFixture->view.onTransmitAll());
        QCOMPARE(requests().size(), 2U);
        expectOneBox(QMessageBox::Warning, "Communication error", "ECU error (3)");
    }

    void exchangesRunUnderTheWaitCursor()
    {
        queueAllReads(mFixture->socket);
        mFixture->view.onReceiveAll(true);
        mFixture->view.onTransmitAll(true); // fails with the first sensor
        mFixture->setCurrent(3);
        mFixture->view.onReadThresholds(true);
        mFixture->view.onWriteThresholds(true);
        mFixture->view.onAutoCalibrationStart();
        QCOMPARE(mFixture->socket.hadWaitCursor, std::vector<bool>(16, true));
        QVERIFY(!QApplication::overrideCursor());
    }
};

QTEST_MAIN(ThresholdTransferTest)
#include "test_threshold_transfer.moc"
