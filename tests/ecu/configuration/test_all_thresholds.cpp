#include "ecu/configuration/all_thresholds.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "tests/support/ScriptedControlSocket.h"

#include <QtTest>

namespace {

std::vector<std::uint8_t> wireRecord(std::uint8_t sensor)
{
    std::vector<std::uint8_t> bytes(14, 0x5F);
    bytes.front() = sensor;
    bytes.back() = 1;
    return bytes;
}

} // namespace

/// All thresholds against a scripted ECU.
class AllThresholdsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { mEcu = std::make_unique<Ecu>(); }

    void readsTheTwelveSensorsInOrder()
    {
        for (std::uint8_t sensor = 0; sensor < 12; ++sensor)
            mEcu->socket.queueReply(1, wireRecord(sensor));
        const ThresholdReading reading = readAllThresholds(mEcu->client);
        QVERIFY(reading.failures.isEmpty());
        QCOMPARE(reading.records.size(), 12U);
        for (std::uint8_t sensor = 0; sensor < 12; ++sensor) {
            QCOMPARE(mEcu->socket.requests()[sensor][2], sensor);
            QCOMPARE(reading.records[sensor].sensorId, sensor);
            QCOMPARE(reading.records[sensor].entries[11], std::uint8_t{0x5F});
        }
    }

    void sensorsThatFailAreToldAndTheOthersRead()
    {
        for (std::uint8_t sensor = 0; sensor < 12; ++sensor) {
            if (sensor == 1)
                mEcu->socket.queueTimeout();
            else if (sensor == 11)
                mEcu->socket.queueReply(1, {}, 3);
            else
                mEcu->socket.queueReply(1, wireRecord(sensor));
        }
        const ThresholdReading reading = readAllThresholds(mEcu->client);
        QCOMPARE(reading.failures,
                 QStringList({"Sensor  2: socket: receive timeout", "Sensor 12: ECU error (3)"}));
        QCOMPARE(reading.records.size(), 10U);
        QCOMPARE(reading.records[1].sensorId, std::uint8_t{2});
    }

    void writesEveryRecordPermanently()
    {
        mEcu->socket.queueReply(1, {});
        mEcu->socket.queueReply(1, {});
        QVERIFY(writeAllThresholds(mEcu->client, twoRecords()));
        QCOMPARE(mEcu->socket.requests().size(), 2U);
        const std::vector<std::uint8_t> expected = {1, 0, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2};
        QVERIFY(std::equal(expected.begin(), expected.end(), mEcu->socket.requests()[1].begin()));
    }

    void writingStopsAtTheFirstFailure()
    {
        mEcu->socket.queueReply(1, {}, 3);
        QVERIFY(!writeAllThresholds(mEcu->client, twoRecords()));
        QCOMPARE(mEcu->socket.requests().size(), 1U);
        QCOMPARE(mEcu->client.lastError(), std::string("ECU error (3)"));
    }

private:
    struct Ecu
    {
        ScriptedControlSocket socket;
        orv::OrvCtrlClient client{&socket};
    };

    static std::vector<orv::SensorThreshold> twoRecords()
    {
        return {{.sensorId = 4}, {.sensorId = 7}};
    }

    std::unique_ptr<Ecu> mEcu;
};

QTEST_APPLESS_MAIN(AllThresholdsTest)
#include "test_all_thresholds.moc"
