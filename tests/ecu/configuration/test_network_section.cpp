#include "ecu/configuration/network_section.h"
#include "ecu/store/ConnectionSettings.h"

#include <QBuffer>
#include <QSettings>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <QtTest>

class TestNetworkSection : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { mStore.reset(); }

    void writesSixValuesWithoutTheFreespacePort();
    void absentKeyGivesEmptyText();
    void storesEveryElementAsImported();
    void liveGroupStaysAsItIs();
    void hostileSectionDoesNotFillTheStore();
    void elementInsideAValueIsAnError();
    void partWritesAndReadsTheSectionAndIsNotExchanged();

private:
    bool import(const QByteArray& content);
    QString imported(const QString& key) const
    {
        return mStore->value(QStringLiteral("network_imported/") + key).toString();
    }

    QTemporaryDir mFolder;
    std::unique_ptr<QSettings> mStore;
    std::string mError;
};

void TestNetworkSection::init()
{
    const QString file = mFolder.filePath(QStringLiteral("store.ini"));
    QFile::remove(file);
    mStore = std::make_unique<QSettings>(file, QSettings::IniFormat);
    mError.clear();
}

bool TestNetworkSection::import(const QByteArray& content)
{
    QXmlStreamReader reader("<Network>" + content + "</Network>");
    reader.readNextStartElement();
    return settings::importNetworkSection(reader, *mStore, mError);
}

void TestNetworkSection::writesSixValuesWithoutTheFreespacePort()
{
    settings::writeDefaultNetwork(*mStore);
    mStore->setValue(QStringLiteral("network/fsp_port"), 50003);
    QString text;
    QXmlStreamWriter writer(&text);
    settings::writeNetworkSection(writer, *mStore);
    QCOMPARE(text, QStringLiteral("<ecu_ip>192.168.1.3</ecu_ip>"
                                  "<ecu_subnet>255.255.255.0</ecu_subnet>"
                                  "<ecu_gateway>192.168.1.1</ecu_gateway>"
                                  "<control_port>50002</control_port>"
                                  "<host_ip>192.168.1.5</host_ip>"
                                  "<receive_port>50001</receive_port>"));
}

void TestNetworkSection::absentKeyGivesEmptyText()
{
    QString text;
    QXmlStreamWriter writer(&text);
    settings::writeNetworkSection(writer, *mStore);
    QVERIFY(text.startsWith(QStringLiteral("<ecu_ip></ecu_ip>")));
}

void TestNetworkSection::storesEveryElementAsImported()
{
    QVERIFY(import("<ecu_ip>10.0.0.7</ecu_ip><control_port>60002</control_port><other>x</other>"));
    QCOMPARE(imported(QStringLiteral("ecu_ip")), QStringLiteral("10.0.0.7"));
    QCOMPARE(imported(QStringLiteral("control_port")), QStringLiteral("60002"));
    QCOMPARE(imported(QStringLiteral("other")), QStringLiteral("x"));
}

void TestNetworkSection::liveGroupStaysAsItIs()
{
    settings::writeDefaultNetwork(*mStore);
    QVERIFY(import("<ecu_ip>10.0.0.7</ecu_ip>"));
    QCOMPARE(settings::readConnection(*mStore).link.ecuIp, QStringLiteral("192.168.1.3"));
}

void TestNetworkSection::hostileSectionDoesNotFillTheStore()
{
    QByteArray content = "<" + QByteArray(100, 'n') + ">x</" + QByteArray(100, 'n') + "><ecu_ip>" +
                         QByteArray(1000, '1') + "</ecu_ip>";
    for (int index = 0; index < 100'000; ++index) {
        const QByteArray name = "k" + QByteArray::number(index);
        content += "<" + name + ">x</" + name + ">";
    }
    QVERIFY(import(content));
    mStore->beginGroup(QStringLiteral("network_imported"));
    QCOMPARE(mStore->allKeys().size(), 30);
    QVERIFY(!mStore->contains(QStringLiteral("ecu_ip")));
    mStore->endGroup();
}

void TestNetworkSection::elementInsideAValueIsAnError()
{
    QVERIFY(!import("<ecu_ip>10.0.0.7</ecu_ip><host_ip><x/></host_ip>"));
    QCOMPARE(mError, std::string("Expected character data."));
    QCOMPARE(imported(QStringLiteral("ecu_ip")), QStringLiteral("10.0.0.7"));
    mStore->beginGroup(QStringLiteral("network_imported"));
    QCOMPARE(mStore->childKeys(), QStringList{"ecu_ip"});
    mStore->endGroup();
}

void TestNetworkSection::partWritesAndReadsTheSectionAndIsNotExchanged()
{
    settings::writeDefaultNetwork(*mStore);
    const ConfigurationPart part = settings::networkPart(*mStore);
    QCOMPARE(part.element, QStringLiteral("Network"));
    QCOMPARE(part.errorName, QStringLiteral("Network"));
    QVERIFY(!part.ecu);
    QString text;
    QXmlStreamWriter writer(&text);
    writer.writeStartElement(part.element);
    part.writeXml(writer);
    writer.writeEndElement();
    QXmlStreamReader reader(text);
    reader.readNextStartElement();
    QVERIFY(part.readFromXml(reader, mError));
    QCOMPARE(imported(QStringLiteral("host_ip")), QStringLiteral("192.168.1.5"));
}

QTEST_GUILESS_MAIN(TestNetworkSection)
#include "test_network_section.moc"
