#include "ecu/store/NetworkSettings.h"
#include "tests/support/TemporaryProfile.h"

#include <QSettings>
#include <QtTest>

class TestNetworkSettings : public QObject
{
    Q_OBJECT

private slots:
    void firstStartWritesSixKeysAndNoFreespacePort();
    void missingPortsHaveTheirDefaults();
    void portsThatDoNotParseReadAsZero_data();
    void portsThatDoNotParseReadAsZero();
    void groupIsFoundByItsNameAlone();
};

namespace {

QSettings openStore()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, "maltrex", "tarvio");
}

} // namespace

void TestNetworkSettings::firstStartWritesSixKeysAndNoFreespacePort()
{
    TemporaryProfile profile;
    QSettings store = openStore();
    settings::writeDefaultNetwork(store);
    store.sync();
    QCOMPARE(profile.keys("network"), QStringList({"control_port", "ecu_gateway", "ecu_ip",
                                                   "ecu_subnet", "host_ip", "receive_port"}));
    QCOMPARE(profile.value("network/ecu_ip").toString(), QString("192.168.1.3"));
    QCOMPARE(profile.value("network/ecu_subnet").toString(), QString("255.255.255.0"));
    QCOMPARE(profile.value("network/ecu_gateway").toString(), QString("192.168.1.1"));
    QCOMPARE(profile.value("network/control_port").toString(), QString("50002"));
    QCOMPARE(profile.value("network/host_ip").toString(), QString("192.168.1.5"));
    QCOMPARE(profile.value("network/receive_port").toString(), QString("50001"));
}

void TestNetworkSettings::missingPortsHaveTheirDefaults()
{
    TemporaryProfile profile;
    QSettings store = openStore();
    const NetworkSettings network = settings::readNetwork(store);
    QCOMPARE(network.ecuIp, QString());
    QCOMPARE(network.controlPort, std::uint16_t{50002});
    QCOMPARE(network.receivePort, std::uint16_t{0});
    QCOMPARE(network.freespacePort, std::uint16_t{50003});
}

void TestNetworkSettings::portsThatDoNotParseReadAsZero_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("word") << "abc";
    QTest::newRow("trailing letter") << "50001x";
    QTest::newRow("empty") << "";
    QTest::newRow("negative") << "-1";
    QTest::newRow("above every port") << "65537";
    QTest::newRow("far above") << "99999999999999999999";
}

void TestNetworkSettings::portsThatDoNotParseReadAsZero()
{
    QFETCH(QString, text);
    TemporaryProfile profile;
    for (const char* key : {"network/receive_port", "network/control_port", "network/fsp_port"})
        profile.setValue(key, text);
    QSettings store = openStore();
    const NetworkSettings network = settings::readNetwork(store);
    QCOMPARE(network.receivePort, std::uint16_t{0});
    QCOMPARE(network.controlPort, std::uint16_t{0});
    QCOMPARE(network.freespacePort, std::uint16_t{0});
}

void TestNetworkSettings::groupIsFoundByItsNameAlone()
{
    TemporaryProfile profile;
    profile.setValue("network_imported/ecu_ip", "10.0.0.1");
    QSettings store = openStore();
    QVERIFY(!settings::hasGroup(store, settings::kNetworkGroup));
    QVERIFY(settings::hasGroup(store, settings::kImportedNetworkGroup));
}

QTEST_MAIN(TestNetworkSettings)
#include "test_network_settings.moc"
