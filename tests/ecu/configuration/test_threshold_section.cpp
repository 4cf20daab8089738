#include "ecu/configuration/threshold_section.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <QtTest>

Q_DECLARE_METATYPE(std::string)

using Records = std::vector<orv::SensorThreshold>;

namespace {

// Base64 of sensor 0, entries 0, scale 2, and of sensor 1, entries 0xFF, scale 3.
const QString kFirst = "<Sensor id=\"0\"><![CDATA[AAAAAAAAAAAAAAAAAAI=]]></Sensor>";
const QString kSecond = "<Sensor id=\"1\"><![CDATA[Af///////////////wM=]]></Sensor>";

QString sensor(int id, const QByteArray& bytes)
{
    return QString("<Sensor id=\"%1\">%2</Sensor>").arg(id).arg(QString(bytes.toBase64()));
}

QByteArray record(char id, char scale = 2)
{
    return QByteArray(1, id) + QByteArray(12, '\x21') + QByteArray(1, scale);
}

QString allSensors()
{
    QString elements;
    for (char id = 0; id < 12; ++id)
        elements += sensor(id, record(id));
    return elements;
}

// Reads `elements` as the section of a project and remembers what the reader saw behind it.
struct Reading
{
    explicit Reading(const QString& elements)
    {
        QXmlStreamReader reader("<Project><Thresholds>" + elements +
                                "</Thresholds><Next/></Project>");
        reader.readNextStartElement();
        reader.readNextStartElement();
        const auto section = readThresholdSection(reader);
        success = section.value.has_value();
        records = section.value.value_or(Records());
        error = section.error;
        if (reader.readNextStartElement())
            next = reader.name().toString();
    }

    Records records;
    std::string error;
    bool success = false;
    QString next;
};

} // namespace

class ThresholdSectionTest : public QObject
{
    Q_OBJECT

private slots:
    void writesOneElementForEachSensor()
    {
        QString text;
        QXmlStreamWriter writer(&text);
        orv::SensorThreshold second{.sensorId = 1, .scale = 3};
        second.entries.fill(0xFF);
        writeThresholdSection(writer, Records{{}, second});
        QCOMPARE(text, kFirst + kSecond);
    }

    void readsWhatWasWritten()
    {
        const Reading reading(kFirst + kSecond);
        QVERIFY(reading.success);
        QCOMPARE(reading.records.size(), 2U);
        QCOMPARE(reading.records[1].sensorId, std::uint8_t{1});
        QCOMPARE(reading.records[1].entries[11], std::uint8_t{0xFF});
        QCOMPARE(reading.records[1].scale, std::uint8_t{3});
    }

    void sectionBehindIsReadNext_data()
    {
        QTest::addColumn<QString>("elements");
        QTest::addColumn<int>("count");
        QTest::newRow("no sensor") << QString() << 0;
        QTest::newRow("one sensor") << kFirst << 1;
        QTest::newRow("twelve sensors") << allSensors() << 12;
        QTest::newRow("a thirteenth sensor") << allSensors() + kFirst << 12;
    }

    void sectionBehindIsReadNext()
    {
        QFETCH(QString, elements);
        const Reading reading(elements);
        QVERIFY(reading.success);
        QTEST(static_cast<int>(reading.records.size()), "count");
        QCOMPARE(reading.next, QString("Next"));
    }

    void wrongContentIsRefused_data()
    {
        QTest::addColumn<QString>("elements");
        QTest::addColumn<std::string>("error");
        const std::string format = "wrong thresholds data format";
        QTest::newRow("other element") << "<Step id=\"0\"/>" << std::string("wrong xml format");
        QTest::newRow("no id") << "<Sensor/>" << std::string("id missing");
        QTest::newRow("id of another") << kSecond << std::string("wrong id value");
        QTest::newRow("id twice") << kFirst + kFirst << std::string("wrong id value");
        QTest::newRow("id no number") << "<Sensor id=\"x\"/>" << std::string("wrong id value");
        QTest::newRow("empty") << "<Sensor id=\"0\"/>" << format;
        QTest::newRow("no Base64") << "<Sensor id=\"0\">!</Sensor>" << format;
        QTest::newRow("byte short") << sensor(0, record(0).left(13)) << format;
        QTest::newRow("byte more") << sensor(0, record(0) + 'x') << format;
        QTest::newRow("record of sensor 13") << sensor(0, record(12)) << format;
        QTest::newRow("record of another sensor") << sensor(0, record(5)) << format;
        QTest::newRow("scale 5") << sensor(0, record(0, 5)) << format;
        QTest::newRow("second wrong") << kFirst + sensor(1, "?") + kFirst << format;
    }

    void wrongContentIsRefused()
    {
        QFETCH(QString, elements);
        const Reading reading(elements);
        QVERIFY(!reading.success);
        QVERIFY(reading.records.empty());
        QTEST(reading.error, "error");
    }
};

QTEST_MAIN(ThresholdSectionTest)
#include "test_threshold_section.moc"
