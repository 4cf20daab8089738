#include "ecu/store/ConnectionSettings.h"
#include "ecu/store/NetworkSettings.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

class TestConnectionSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { mStore.reset(); }

    void firstStartValuesAreReadWithTheDefaultFreespacePort();
    void storedFreespacePortOfZeroIsKept();
    void importedValuesComeFirst();
    void valueMissingInAnImportIsTheLiveOne();
    void acceptedValuesReplaceTheLiveOnesAndTheImport();
    void valuesAcceptedAsReadChangeNothing();

private:
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

void TestConnectionSettings::firstStartValuesAreReadWithTheDefaultFreespacePort()
{
    const ConnectionSettings connection = settings::readConnection(*mStore);
    QCOMPARE(connection.ecuIp, QStringLiteral("192.168.1.3"));
    QCOMPARE(connection.ecuSubnet, QStringLiteral("255.255.255.0"));
    QCOMPARE(connection.ecuGateway, QStringLiteral("192.168.1.1"));
    QCOMPARE(connection.controlPort, 50002);
    QCOMPARE(connection.hostIp, QStringLiteral("192.168.1.5"));
    QCOMPARE(connection.receivePort, 50001);
    QCOMPARE(connection.freespacePort, 50003);
}

void TestConnectionSettings::storedFreespacePortOfZeroIsKept()
{
    mStore->setValue(QStringLiteral("network/fsp_port"), 0);
    QCOMPARE(settings::readConnection(*mStore).freespacePort, 0);
}

void TestConnectionSettings::importedValuesComeFirst()
{
    mStore->setValue(QStringLiteral("network_imported/ecu_ip"), QStringLiteral("10.0.0.7"));
    mStore->setValue(QStringLiteral("network_imported/control_port"), QStringLiteral("60002"));
    const ConnectionSettings connection = settings::readConnection(*mStore);
    QCOMPARE(connection.ecuIp, QStringLiteral("10.0.0.7"));
    QCOMPARE(connection.controlPort, 60002);
}

void TestConnectionSettings::valueMissingInAnImportIsTheLiveOne()
{
    mStore->setValue(QStringLiteral("network/fsp_port"), 50123);
    mStore->setValue(QStringLiteral("network_imported/ecu_ip"), QStringLiteral("10.0.0.7"));
    const ConnectionSettings connection = settings::readConnection(*mStore);
    QCOMPARE(connection.freespacePort, 50123);
    QCOMPARE(connection.hostIp, QStringLiteral("192.168.1.5"));
}

void TestConnectionSettings::acceptedValuesReplaceTheLiveOnesAndTheImport()
{
    mStore->setValue(QStringLiteral("network_imported/ecu_ip"), QStringLiteral("10.0.0.7"));
    settings::acceptConnection(*mStore, {.ecuIp = QStringLiteral("10.1.1.2"),
                                         .ecuSubnet = QStringLiteral("255.0.0.0"),
                                         .ecuGateway = QStringLiteral("10.1.1.1"),
                                         .controlPort = 4002,
                                         .hostIp = QStringLiteral("10.1.1.9"),
                                         .receivePort = 4001,
                                         .freespacePort = 0});
    QVERIFY(!settings::hasGroup(*mStore, settings::kImportedNetworkGroup));
    mStore->beginGroup(QStringLiteral("network"));
    QCOMPARE(mStore->value(QStringLiteral("ecu_ip")).toString(), QStringLiteral("10.1.1.2"));
    QCOMPARE(mStore->value(QStringLiteral("ecu_subnet")).toString(), QStringLiteral("255.0.0.0"));
    QCOMPARE(mStore->value(QStringLiteral("ecu_gateway")).toString(), QStringLiteral("10.1.1.1"));
    QCOMPARE(mStore->value(QStringLiteral("control_port")).toInt(), 4002);
    QCOMPARE(mStore->value(QStringLiteral("host_ip")).toString(), QStringLiteral("10.1.1.9"));
    QCOMPARE(mStore->value(QStringLiteral("receive_port")).toInt(), 4001);
    QCOMPARE(mStore->value(QStringLiteral("fsp_port")), QVariant(0));
    QCOMPARE(mStore->childKeys().size(), 7);
    mStore->endGroup();
}

void TestConnectionSettings::valuesAcceptedAsReadChangeNothing()
{
    settings::acceptConnection(*mStore, settings::readConnection(*mStore));
    firstStartValuesAreReadWithTheDefaultFreespacePort();
    QCOMPARE(settings::readNetwork(*mStore).freespacePort, std::uint16_t{50003});
}

QTEST_GUILESS_MAIN(TestConnectionSettings)
#include "test_connection_settings.moc"
