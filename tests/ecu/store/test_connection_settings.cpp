#include "ecu/store/ConnectionSettings.h"
#include "ecu/store/network_keys.h"
#include "ecu/store/settings_store.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

class TestConnectionSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { mStore.reset(); }

    void firstStartWritesSixTextsAndNoFreespacePort();
    void firstStartValuesAreReadWithTheDefaultFreespacePort();
    void emptyStoreHasDefaultPortsAndNoAddress();
    void portThatIsNoneIsTheDefault_data();
    void portThatIsNoneIsTheDefault();
    void limitsOfAPortAreTaken_data();
    void limitsOfAPortAreTaken();
    void storedFreespacePortOfZeroIsKept();
    void addressThatIsNoneIsEmpty_data();
    void addressThatIsNoneIsEmpty();
    void leadingZerosDoNotMakeAnOctalAddress();

    void importIsReadBeforeWhatIsInUse();
    void valueMissingInAnImportIsTheOneInUse();
    void hostilePortOfAnImportIsTheDefault();
    void importDoesNotTouchWhatIsInUse();

    void acceptedValuesReplaceThoseInUseAndTheImport();
    void valuesAcceptedAsReadChangeNothing();
    void forgottenImportLeavesTheRest();

private:
    void store(const QString& key, const QVariant& value)
    {
        mStore->setValue(settings::kNetworkGroup + '/' + key, value);
    }
    void import(const QString& key, const QString& value)
    {
        mStore->setValue(settings::kImportedNetworkGroup + '/' + key, value);
    }
    ConnectionSettings inUse() const { return settings::readConnection(*mStore); }
    ConnectionSettings imported() const { return settings::readImportedConnection(*mStore); }

    QTemporaryDir mFolder;
    std::unique_ptr<QSettings> mStore;
};

void TestConnectionSettings::init()
{
    const QString file = mFolder.filePath(QStringLiteral("store.ini"));
    QFile::remove(file);
    mStore = std::make_unique<QSettings>(file, QSettings::IniFormat);
    settings::writeDefaultNetwork(*mStore);
}

void TestConnectionSettings::firstStartWritesSixTextsAndNoFreespacePort()
{
    mStore->sync();
    QFile file(mStore->fileName());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(),
             QByteArray("[network]\ncontrol_port=50002\necu_gateway=192.168.1.1\n"
                        "ecu_ip=192.168.1.3\necu_subnet=255.255.255.0\nhost_ip=192.168.1.5\n"
                        "receive_port=50001\n"));
}

void TestConnectionSettings::firstStartValuesAreReadWithTheDefaultFreespacePort()
{
    const ConnectionSettings connection = inUse();
    QCOMPARE(connection.link.ecuIp, QStringLiteral("192.168.1.3"));
    QCOMPARE(connection.ecuSubnet, QStringLiteral("255.255.255.0"));
    QCOMPARE(connection.ecuGateway, QStringLiteral("192.168.1.1"));
    QCOMPARE(int(connection.link.controlPort), 50002);
    QCOMPARE(connection.hostIp, QStringLiteral("192.168.1.5"));
    QCOMPARE(int(connection.link.receivePort), 50001);
    QCOMPARE(int(connection.link.freespacePort), 50003);
}

void TestConnectionSettings::emptyStoreHasDefaultPortsAndNoAddress()
{
    mStore->clear();
    const ConnectionSettings connection = inUse();
    QCOMPARE(connection.link.ecuIp, QString());
    QCOMPARE(connection.ecuSubnet, QString());
    QCOMPARE(connection.ecuGateway, QString());
    QCOMPARE(connection.hostIp, QString());
    QCOMPARE(int(connection.link.controlPort), 50002);
    QCOMPARE(int(connection.link.receivePort), 50001);
    QCOMPARE(int(connection.link.freespacePort), 50003);
}

void TestConnectionSettings::portThatIsNoneIsTheDefault_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("word") << QVariant("abc");
    QTest::newRow("trailing letter") << QVariant("50001x");
    QTest::newRow("empty") << QVariant("");
    QTest::newRow("negative") << QVariant("-1");
    QTest::newRow("one too many") << QVariant("65536");
    QTest::newRow("above every port") << QVariant("65537");
    QTest::newRow("far above") << QVariant("99999999999999999999");
    QTest::newRow("list") << QVariant(QStringList{"50001", "50002"});
    QTest::newRow("bytes") << QVariant(QByteArray(100'000, '7'));
}

void TestConnectionSettings::portThatIsNoneIsTheDefault()
{
    QFETCH(QVariant, value);
    for (const char* key : {"receive_port", "control_port", "fsp_port"})
        store(key, value);
    QCOMPARE(int(inUse().link.controlPort), 50002);
    QCOMPARE(int(inUse().link.receivePort), 50001);
    QCOMPARE(int(inUse().link.freespacePort), 50003);
}

void TestConnectionSettings::limitsOfAPortAreTaken_data()
{
    QTest::addColumn<int>("port");

    QTest::newRow("first") << 1;
    QTest::newRow("last") << 65535;
}

void TestConnectionSettings::limitsOfAPortAreTaken()
{
    QFETCH(int, port);
    for (const char* key : {"receive_port", "control_port", "fsp_port"})
        store(key, port);
    QCOMPARE(int(inUse().link.controlPort), port);
    QCOMPARE(int(inUse().link.receivePort), port);
    QCOMPARE(int(inUse().link.freespacePort), port);
}

void TestConnectionSettings::storedFreespacePortOfZeroIsKept()
{
    for (const char* key : {"receive_port", "control_port", "fsp_port"})
        store(key, 0);
    QCOMPARE(int(inUse().link.freespacePort), 0);
    QCOMPARE(int(inUse().link.controlPort), 50002);
    QCOMPARE(int(inUse().link.receivePort), 50001);
}

void TestConnectionSettings::addressThatIsNoneIsEmpty_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("empty octet") << QVariant("192..1.5");
    QTest::newRow("three octets") << QVariant("192.168.1");
    QTest::newRow("number") << QVariant(0);
    QTest::newRow("list") << QVariant(QStringList{"192.168.1.3", "192.168.1.4"});
    QTest::newRow("bytes") << QVariant(QByteArray(100'000, '\xff'));
}

void TestConnectionSettings::addressThatIsNoneIsEmpty()
{
    QFETCH(QVariant, value);
    for (const char* key : {"ecu_ip", "ecu_subnet", "ecu_gateway", "host_ip"})
        store(key, value);
    QCOMPARE(inUse().link.ecuIp, QString());
    QCOMPARE(inUse().ecuSubnet, QString());
    QCOMPARE(inUse().ecuGateway, QString());
    QCOMPARE(inUse().hostIp, QString());
}

void TestConnectionSettings::leadingZerosDoNotMakeAnOctalAddress()
{
    store("ecu_ip", "192.168.001.010");
    QCOMPARE(inUse().link.ecuIp, QStringLiteral("192.168.1.10"));
}

void TestConnectionSettings::importIsReadBeforeWhatIsInUse()
{
    QVERIFY(!settings::hasImportedConnection(*mStore));
    import("ecu_ip", "10.0.0.7");
    import("control_port", "60002");
    QVERIFY(settings::hasImportedConnection(*mStore));
    QCOMPARE(imported().link.ecuIp, QStringLiteral("10.0.0.7"));
    QCOMPARE(int(imported().link.controlPort), 60002);
}

void TestConnectionSettings::valueMissingInAnImportIsTheOneInUse()
{
    store("fsp_port", 50123);
    import("ecu_ip", "10.0.0.7");
    QCOMPARE(int(imported().link.freespacePort), 50123);
    QCOMPARE(imported().hostIp, QStringLiteral("192.168.1.5"));
}

void TestConnectionSettings::hostilePortOfAnImportIsTheDefault()
{
    store("control_port", 4002);
    import("control_port", "70000");
    QCOMPARE(int(imported().link.controlPort), 50002);
}

void TestConnectionSettings::importDoesNotTouchWhatIsInUse()
{
    import("ecu_ip", "10.0.0.7");
    import("receive_port", "60001");
    QCOMPARE(inUse().link.ecuIp, QStringLiteral("192.168.1.3"));
    QCOMPARE(int(inUse().link.receivePort), 50001);
}

void TestConnectionSettings::acceptedValuesReplaceThoseInUseAndTheImport()
{
    import("ecu_ip", "10.0.0.7");
    settings::acceptConnection(*mStore, {.link = {.ecuIp = QStringLiteral("10.1.1.2"),
                                                  .controlPort = 4002,
                                                  .receivePort = 4001,
                                                  .freespacePort = 0},
                                         .ecuSubnet = QStringLiteral("255.0.0.0"),
                                         .ecuGateway = QStringLiteral("10.1.1.1"),
                                         .hostIp = QStringLiteral("10.1.1.9")});
    QVERIFY(!settings::hasImportedConnection(*mStore));
    mStore->beginGroup(QStringLiteral("network"));
    QCOMPARE(mStore->value(QStringLiteral("ecu_ip")), QVariant("10.1.1.2"));
    QCOMPARE(mStore->value(QStringLiteral("ecu_subnet")), QVariant("255.0.0.0"));
    QCOMPARE(mStore->value(QStringLiteral("ecu_gateway")), QVariant("10.1.1.1"));
    QCOMPARE(mStore->value(QStringLiteral("control_port")), QVariant(4002));
    QCOMPARE(mStore->value(QStringLiteral("host_ip")), QVariant("10.1.1.9"));
    QCOMPARE(mStore->value(QStringLiteral("receive_port")), QVariant(4001));
    QCOMPARE(mStore->value(QStringLiteral("fsp_port")), QVariant(0));
    QCOMPARE(mStore->childKeys().size(), 7);
    mStore->endGroup();
}

void TestConnectionSettings::valuesAcceptedAsReadChangeNothing()
{
    settings::acceptConnection(*mStore, inUse());
    firstStartValuesAreReadWithTheDefaultFreespacePort();
}

void TestConnectionSettings::forgottenImportLeavesTheRest()
{
    import("ecu_ip", "10.0.0.7");
    settings::forgetImportedConnection(*mStore);
    QVERIFY(!settings::hasImportedConnection(*mStore));
    QCOMPARE(inUse().link.ecuIp, QStringLiteral("192.168.1.3"));
    settings::forgetImportedConnection(*mStore);
    QCOMPARE(mStore->childGroups(), QStringList{"network"});
}

QTEST_GUILESS_MAIN(TestConnectionSettings)
#include "test_connection_settings.moc"
