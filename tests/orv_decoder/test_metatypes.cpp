#include "ecu/qt_compatibility.h"
#include "orv_decoder/metatypes.h"

#include <QtTest>

class Sender : public QObject
{
    Q_OBJECT

signals:
    void measured(const orv::OrvMeasurementResult& result);
    void freespace(const orv::OrvFreespacePackage& package);
    void moved(orv::OrvSensorPosition position);
    void roleChanged(orv::OrvSensorRole role);
    void heard(const std::vector<orv::OrvSensorEcho>& echoes);
};

class TestMetatypes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyLiveRecordIsKnownByItsName_data();
    void everyLiveRecordIsKnownByItsName();
    void registeringTwiceChangesNothing();
    void measurementTravelsThroughAQueuedSignal();
    void freespaceTravelsThroughAQueuedSignal();
    void positionTravelsThroughAQueuedSignal();
    void roleTravelsThroughAQueuedSignal();
    void echoesTravelThroughAQueuedSignal();

private:
    // Emits, sees that nothing has arrived yet, and returns what arrives from the event loop.
    template<typename T, typename Signal>
    T sentQueued(Signal signal, const T& sent);
};

template<typename T, typename Signal>
T TestMetatypes::sentQueued(Signal signal, const T& sent)
{
    Sender sender;
    QObject receiver;
    T arrived{};
    int count = 0;
    connect(
        &sender, signal, &receiver,
        [&arrived, &count](const T& record) {
            arrived = record;
            ++count;
        },
        Qt::QueuedConnection);
    emit(sender.*signal)(sent);
    if (count != 0)
        return {};
    QCoreApplication::sendPostedEvents(&receiver);
    return count == 1 ? arrived : T{};
}

void TestMetatypes::initTestCase()
{
    orv::registerMetaTypes();
}

void TestMetatypes::everyLiveRecordIsKnownByItsName_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("id");
    QTest::newRow("result") << QByteArray("orv::OrvMeasurementResult")
                            << qMetaTypeId<orv::OrvMeasurementResult>();
    QTest::newRow("package") << QByteArray("orv::OrvFreespacePackage")
                             << qMetaTypeId<orv::OrvFreespacePackage>();
    QTest::newRow("position") << QByteArray("orv::OrvSensorPosition")
                              << qMetaTypeId<orv::OrvSensorPosition>();
    QTest::newRow("role") << QByteArray("orv::OrvSensorRole") << qMetaTypeId<orv::OrvSensorRole>();
    QTest::newRow("echoes") << QByteArray("std::vector<orv::OrvSensorEcho>")
                            << qMetaTypeId<std::vector<orv::OrvSensorEcho>>();
}

void TestMetatypes::everyLiveRecordIsKnownByItsName()
{
    QFETCH(QByteArray, name);
    QFETCH(int, id);
    QVERIFY(id != QMetaType::UnknownType);
    QCOMPARE(qt_compatibility::metaTypeId(name.constData()), id);
    QVERIFY(QMetaType::isRegistered(id));
}

void TestMetatypes::registeringTwiceChangesNothing()
{
    const int before = qt_compatibility::metaTypeId("orv::OrvMeasurementResult");
    orv::registerMetaTypes();
    QCOMPARE(qt_compatibility::metaTypeId("orv::OrvMeasurementResult"), before);
}

void TestMetatypes::measurementTravelsThroughAQueuedSignal()
{
    orv::OrvMeasurementResult result;
    result.valid = true;
    result.measurementWord = 0x12345678;
    result.echoes[3] = {{.magnitude = 7, .secondValue = 1, .timeOfFlight = 5120}};
    QVERIFY(sentQueued(&Sender::measured, result) == result);
}

void TestMetatypes::freespaceTravelsThroughAQueuedSignal()
{
    orv::OrvFreespaceEntry entry;
    entry.sensorId = 7;
    entry.distances[1] = {
        .mode = 1, .distanceMm = 900, .firstPoint = {1, 2}, .secondPoint = {3, 4}};
    const orv::OrvFreespacePackage package = {.valid = true, .entries = {entry}};
    QVERIFY(sentQueued(&Sender::freespace, package) == package);
}

void TestMetatypes::positionTravelsThroughAQueuedSignal()
{
    const orv::OrvSensorPosition position = {
        .leadingWord = 0, .x = -500, .y = 500, .direction = 0xC000};
    QVERIFY(sentQueued(&Sender::moved, position) == position);
}

void TestMetatypes::roleTravelsThroughAQueuedSignal()
{
    const auto role = orv::OrvSensorRole::ReceivingOnly;
    QVERIFY(sentQueued(&Sender::roleChanged, role) == role);
}

void TestMetatypes::echoesTravelThroughAQueuedSignal()
{
    const std::vector<orv::OrvSensorEcho> echoes = {
        {.magnitude = 7, .secondValue = 1, .timeOfFlight = 5120}, {.magnitude = 9}};
    QVERIFY(sentQueued(&Sender::heard, echoes) == echoes);
}

QTEST_GUILESS_MAIN(TestMetatypes)

#include "test_metatypes.moc"
