#include "tests/support/EcuAccess.h"
#include "tests/support/ScriptedControlSocket.h"
#include "tests/support/SimulatorProcess.h"

#include <QtTest>

namespace {

const QStringList kNothing;

QStringList everyPart()
{
    return {QStringLiteral("thresholds"), QStringLiteral("measurement sequence"),
            QStringLiteral("sensor positions")};
}

} // namespace

/// A whole configuration between plain records and an ECU.
class EcuConfigurationTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsWrittenIsRead()
    {
        const SimulatorProcess simulator({QStringLiteral("--streams"), QStringLiteral("off")});
        EcuAccess ecu(simulator.controlPort());
        const EcuConfiguration written = configurationOfSeed(1);
        QCOMPARE(written.writeTo(ecu.client()), kNothing);
        EcuConfiguration read;
        QCOMPARE(read.readFrom(ecu.client()), kNothing);
        QVERIFY(read == written);
    }

    void failedPartIsNamedAndStaysAsItWas_data()
    {
        QTest::addColumn<int>("command");
        QTest::addColumn<QString>("name");

        QTest::newRow("sequence") << 0 << everyPart()[1];
        QTest::newRow("thresholds") << 1 << everyPart()[0];
        QTest::newRow("positions") << 4 << everyPart()[2];
    }

    void failedPartIsNamedAndStaysAsItWas()
    {
        QFETCH(int, command);
        QFETCH(QString, name);
        const SimulatorProcess simulator(
            {"--streams", "off", "--status", QStringLiteral("%1=5").arg(command)});
        EcuAccess ecu(simulator.controlPort());
        EcuConfiguration configuration = configurationOfSeed(1);
        QCOMPARE(configuration.writeTo(ecu.client()), QStringList{name});
        QCOMPARE(configuration.readFrom(ecu.client()), QStringList{name});
        QVERIFY(configuration == configurationOfSeed(1));
    }

    void sequenceThatIsCutShortIsNotHalfTaken()
    {
        ScriptedControlSocket socket;
        orv::OrvCtrlClient client(&socket);
        for (int sensor = 0; sensor < orv::kSensorCount; ++sensor)
            socket.queueTimeout();
        const std::vector<std::uint8_t> twoStepsPromisedOneGiven{2, 1, 0, 2, 0, 0, 0, 0, 0, 0, 0};
        socket.queueReply(0, twoStepsPromisedOneGiven);
        EcuConfiguration configuration = configurationOfSeed(1);
        QCOMPARE(configuration.readFrom(client), everyPart());
        QVERIFY(configuration == configurationOfSeed(1));
    }

    void thresholdsOfOtherSensorsAreTakenAllTheSame()
    {
        ScriptedControlSocket socket;
        orv::OrvCtrlClient client(&socket);
        for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
            if (sensor == 3)
                socket.queueTimeout();
            else
                socket.queueReply(1,
                                  orv::encodeThreshold(configurationOfSeed(2).thresholds[sensor]));
        }
        EcuConfiguration configuration = configurationOfSeed(1);
        QVERIFY(configuration.readFrom(client).contains(everyPart()[0]));
        QVERIFY(configuration.thresholds[2] == configurationOfSeed(2).thresholds[2]);
        QVERIFY(configuration.thresholds[3] == configurationOfSeed(1).thresholds[3]);
        QVERIFY(configuration.thresholds[4] == configurationOfSeed(2).thresholds[4]);
    }

    void emptyConfigurationKnowsItsSensors()
    {
        const EcuConfiguration configuration;
        for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
            QCOMPARE(configuration.thresholds[sensor].sensorId, sensor);
    }

    void withoutAClientEveryExchangeFails()
    {
        EcuConfiguration configuration = configurationOfSeed(1);
        const QVector<ConfigurationPart> parts = ecuParts(holdersOf(configuration));
        QCOMPARE(readAllFromEcu(parts), everyPart());
        QCOMPARE(writeAllToEcu(parts), everyPart());
        QVERIFY(configuration == configurationOfSeed(1));
    }
};

QTEST_GUILESS_MAIN(EcuConfigurationTest)
#include "test_ecu_configuration.moc"
