#include "ecu/configuration/xml_sections.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <QtTest>

#include <string>

using Bytes = std::vector<std::uint8_t>;

namespace {

template<typename Write>
QString written(Write write)
{
    QString text;
    QXmlStreamWriter writer(&text);
    write(writer);
    return text;
}

// A reader that stands on the root element of `text`.
struct OpenSection
{
    explicit OpenSection(const QString& text) : reader(text) { reader.readNextStartElement(); }
    QXmlStreamReader reader;
};

// Takes any bytes but none at all.
std::optional<Bytes> anyBytes(const Bytes& bytes, int)
{
    return bytes.empty() ? std::nullopt : std::optional(bytes);
}

SectionResult<std::vector<Bytes>> readSteps(QXmlStreamReader& reader, std::size_t maxCount = 3)
{
    return readIndexedElements<Bytes>(reader, "Step", maxCount, "no bytes", anyBytes);
}

} // namespace

class XmlSectionsTest : public QObject
{
    Q_OBJECT

private slots:
    void bytesAreWrittenAsBase64InACdataSection()
    {
        const Bytes bytes{0x00, 0x01, 0xfe, 0xff};
        const QString text = written([&](QXmlStreamWriter& writer) {
            writer.writeStartElement("MountPositions");
            writeBase64(writer, bytes);
            writer.writeEndElement();
        });
        QCOMPARE(text, QString("<MountPositions><![CDATA[AAH+/w==]]></MountPositions>"));
    }

    void noBytesAreAnEmptyCdataSection()
    {
        const QString text = written([](QXmlStreamWriter& writer) { writeBase64(writer, {}); });
        QCOMPARE(text, QString("<![CDATA[]]>"));
    }

    void indexedElementCarriesItsId()
    {
        const Bytes bytes{1, 2, 3};
        const QString text = written(
            [&](QXmlStreamWriter& writer) { writeIndexedElement(writer, "Sensor", 11, bytes); });
        QCOMPARE(text, QString("<Sensor id=\"11\"><![CDATA[AQID]]></Sensor>"));
    }

    void base64TextIsReadBack_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("CDATA") << "<![CDATA[AAH+/w==]]>" << QByteArray("\x00\x01\xfe\xff", 4);
        QTest::newRow("plain text") << "AQID" << QByteArray("\x01\x02\x03");
        QTest::newRow("wrapped lines") << "\n  AQ\n  ID\n" << QByteArray("\x01\x02\x03");
        QTest::newRow("empty") << "" << QByteArray();
        QTest::newRow("no valid character") << "!?*" << QByteArray();
        QTest::newRow("beyond Latin-1") << QString::fromUtf8("\u20ac\u20ac") << QByteArray();
        QTest::newRow("one stray character") << "AQ!ID" << QByteArray("\x01\x02\x03");
        QTest::newRow("cut in a group") << "AQI" << QByteArray("\x01\x02");
    }

    void base64TextIsReadBack()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        OpenSection section("<Step>" + text + "</Step>");
        QCOMPARE(readBase64(section.reader), Bytes(bytes.begin(), bytes.end()));
        QVERIFY(section.reader.isEndElement());
        QVERIFY(!section.reader.hasError());
    }

    void elementThatIsNeverClosedIsAnErrorOfTheReader()
    {
        OpenSection section("<Step>AQID");
        QVERIFY(readBase64(section.reader).empty());
        QVERIFY(section.reader.hasError());
    }

    void childElementInBase64TextIsAnErrorOfTheReader()
    {
        OpenSection section("<Step>AQ<Other/>ID</Step>");
        QVERIFY(readBase64(section.reader).empty());
        QVERIFY(section.reader.hasError());
    }

    void writtenElementsAreReadBack()
    {
        std::vector<Bytes> records{Bytes(256), {7}};
        for (std::size_t index = 0; index < records[0].size(); ++index)
            records[0][index] = static_cast<std::uint8_t>(index);
        const QString text = written([&](QXmlStreamWriter& writer) {
            writer.writeStartElement("MSEQ");
            writeIndexedElements(writer, "Step", records, [](const Bytes& bytes) { return bytes; });
            writer.writeEndElement();
        });
        OpenSection section(text);
        QCOMPARE(readSteps(section.reader).value.value_or(std::vector<Bytes>()), records);
        QVERIFY(section.reader.isEndElement());
        QCOMPARE(section.reader.name().toString(), QString("MSEQ"));
    }

    void recordIsDecodedWithItsId()
    {
        OpenSection section("<MSEQ><Step id=\"0\"/><Step id=\"1\"/></MSEQ>");
        const auto ids = readIndexedElements<int>(
            section.reader, "Step", 3, "", [](const Bytes&, int id) { return std::optional(id); });
        QCOMPARE(ids.value.value_or(std::vector<int>()), std::vector<int>({0, 1}));
    }

    void elementsBehindTheLastRecordAreLeft()
    {
        OpenSection section("<MSEQ><Step id=\"0\">AQ==</Step><Step id=\"1\"/></MSEQ>");
        QCOMPARE(readSteps(section.reader, 1).value.value_or(std::vector<Bytes>()).size(), 1U);
        QVERIFY(section.reader.readNextStartElement());
        QCOMPARE(section.reader.attributes().value("id").toInt(), 1);
    }

    void wrongRecordLeavesNoneAtAll()
    {
        OpenSection section("<MSEQ><Step id=\"0\">AQ==</Step><Step id=\"1\"/></MSEQ>");
        const auto steps = readSteps(section.reader);
        QVERIFY(!steps.value);
        QCOMPARE(steps.error, std::string("no bytes"));
    }

    void firstFaultIsTheOneThatIsTold()
    {
        OpenSection section("<MSEQ><Step id=\"0\"/><Step id=\"7\"/></MSEQ>");
        QCOMPARE(readSteps(section.reader).error, std::string("no bytes"));
    }

    void emptySectionHasNoRecord()
    {
        OpenSection section("<MSEQ/>");
        const auto steps = readSteps(section.reader);
        QVERIFY(steps.value && steps.value->empty());
        QVERIFY(!section.reader.hasError());
    }

    void cutSectionIsAnErrorOfTheReader()
    {
        OpenSection section("<MSEQ>  ");
        const auto steps = readSteps(section.reader);
        QVERIFY(steps.value && steps.value->empty());
        QVERIFY(section.reader.hasError());
    }

    void wrongElementIsRefusedWithItsReason_data()
    {
        QTest::addColumn<QString>("element");
        QTest::addColumn<QString>("reason");
        QTest::newRow("as expected") << "<Step id=\"3\"/>"
                                     << "";
        QTest::newRow("other name") << "<Sensor id=\"3\"/>"
                                    << "wrong xml format";
        QTest::newRow("name in other case") << "<step id=\"3\"/>"
                                            << "wrong xml format";
        QTest::newRow("no id") << "<Step/>"
                               << "id missing";
        QTest::newRow("id in other case") << "<Step ID=\"3\"/>"
                                          << "id missing";
        QTest::newRow("next id") << "<Step id=\"4\"/>"
                                 << "wrong id value";
        QTest::newRow("negative id") << "<Step id=\"-3\"/>"
                                     << "wrong id value";
        QTest::newRow("empty id") << "<Step id=\"\"/>"
                                  << "wrong id value";
        QTest::newRow("id with a tail") << "<Step id=\"3x\"/>"
                                        << "wrong id value";
        QTest::newRow("hexadecimal id") << "<Step id=\"0x3\"/>"
                                        << "wrong id value";
        QTest::newRow("fraction") << "<Step id=\"3.0\"/>"
                                  << "wrong id value";
        QTest::newRow("id beyond 32 bits") << "<Step id=\"4294967299\"/>"
                                           << "wrong id value";
    }

    void wrongElementIsRefusedWithItsReason()
    {
        QFETCH(QString, element);
        QFETCH(QString, reason);
        const OpenSection section(element);
        QCOMPARE(QString::fromStdString(indexedElementError(section.reader, "Step", 3)), reason);
    }

    void takenValueIsHandedOnAndAReasonTold()
    {
        std::string error;
        int taken = 0;
        const auto take = [&taken](int value) { taken = value; };
        QVERIFY(takeSection(SectionResult<int>{.value = 5}, error, take));
        QCOMPARE(taken, 5);
        QVERIFY(error.empty());
        QVERIFY(!takeSection(SectionResult<int>{.error = "too long"}, error, take));
        QCOMPARE(taken, 5);
        QCOMPARE(error, std::string("too long"));
    }

    void textThatIsNoNumberIsNotTakenForIdZero()
    {
        const OpenSection section("<Step id=\"first\"/>");
        QCOMPARE(indexedElementError(section.reader, "Step", 0), std::string("wrong id value"));
    }
};

QTEST_APPLESS_MAIN(XmlSectionsTest)
#include "test_xml_sections.moc"
