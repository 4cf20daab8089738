#include "ecu/configuration/position_section.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <QtTest>

namespace {

orv::SensorMountPositions twoSensors()
{
    orv::SensorMountPositions positions;
    positions[0].x = -1000;
    positions[11].yaw = 16384;
    return positions;
}

// x of the first sensor is -1000, yaw of the last one a quarter of the turn.
const QString kTwoSensors = "GPwA" + QString("AAAA").repeated(44) + "AAAAAEAAAAAA";

} // namespace

class PositionSectionTest : public QObject
{
    Q_OBJECT

private slots:
    void tableIsWrittenAsOneBlock()
    {
        QString text;
        QXmlStreamWriter writer(&text);
        writePositionSection(writer, twoSensors());
        QCOMPARE(text, "<![CDATA[" + kTwoSensors + "]]>");
    }

    void writtenTableIsReadAgain()
    {
        QXmlStreamReader reader("<MountPositions>" + kTwoSensors + "</MountPositions>");
        reader.readNextStartElement();
        const auto section = readPositionSection(reader);
        QVERIFY(section.value);
        QCOMPARE(*section.value, twoSensors());
        QVERIFY(section.error.empty());
        QVERIFY(reader.isEndElement());
    }

    void wrongSectionsAreRefused_data()
    {
        QTest::addColumn<QString>("content");
        QTest::newRow("empty") << "";
        QTest::newRow("no Base64") << "#### no positions ####";
        QTest::newRow("a byte short") << QString("AAAA").repeated(47) + "AAA=";
        QTest::newRow("a byte long") << QString("AAAA").repeated(48) + "AA==";
        QTest::newRow("child element") << "<Sensor/>" + QString("AAAA").repeated(48);
    }

    void wrongSectionsAreRefused()
    {
        QFETCH(QString, content);
        QXmlStreamReader reader("<MountPositions>" + content + "</MountPositions>");
        reader.readNextStartElement();
        const auto section = readPositionSection(reader);
        QVERIFY(!section.value);
        QCOMPARE(section.error, std::string("Invalid data format of sensor positions"));
    }
};

QTEST_APPLESS_MAIN(PositionSectionTest)
#include "test_position_section.moc"
