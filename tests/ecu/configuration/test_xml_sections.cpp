#include "ecu/configuration/xml_sections.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <QtTest>

#include <stdexcept>
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

std::string refusalOf(const QString& text)
{
    OpenSection section(text);
    try {
        readIndexedElement(section.reader, "Step", 3);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "accepted";
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

    void writtenElementIsReadBack()
    {
        Bytes bytes(256);
        for (std::size_t index = 0; index < bytes.size(); ++index)
            bytes[index] = static_cast<std::uint8_t>(index);
        const QString text = written([&](QXmlStreamWriter& writer) {
            writer.writeStartElement("MSEQ");
            writeIndexedElement(writer, "Step", 0, bytes);
            writeIndexedElement(writer, "Step", 1, {});
            writer.writeEndElement();
        });
        OpenSection section(text);
        QVERIFY(readIndexedElement(section.reader, "Step", 0));
        QCOMPARE(readBase64(section.reader), bytes);
        QVERIFY(readIndexedElement(section.reader, "Step", 1));
        QCOMPARE(readBase64(section.reader), Bytes());
        QVERIFY(!readIndexedElement(section.reader, "Step", 2));
        QVERIFY(section.reader.isEndElement());
        QCOMPARE(section.reader.name().toString(), QString("MSEQ"));
    }

    void emptySectionHasNoElement()
    {
        OpenSection section("<MSEQ/>");
        QVERIFY(!readIndexedElement(section.reader, "Step", 0));
        QVERIFY(!section.reader.hasError());
    }

    void cutSectionHasNoElementAndAnErrorOfTheReader()
    {
        OpenSection section("<MSEQ>  ");
        QVERIFY(!readIndexedElement(section.reader, "Step", 0));
        QVERIFY(section.reader.hasError());
    }

    void wrongElementIsRefusedWithItsReason_data()
    {
        QTest::addColumn<QString>("element");
        QTest::addColumn<QString>("reason");
        QTest::newRow("as expected") << "<Step id=\"3\"/>"
                                     << "accepted";
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
        QCOMPARE(QString::fromStdString(refusalOf("<MSEQ>" + element + "</MSEQ>")), reason);
    }

    void textThatIsNoNumberIsNotTakenForIdZero()
    {
        OpenSection section("<MSEQ><Step id=\"first\"/></MSEQ>");
        QVERIFY_EXCEPTION_THROWN(readIndexedElement(section.reader, "Step", 0),
                                 std::invalid_argument);
    }
};

QTEST_APPLESS_MAIN(XmlSectionsTest)
#include "test_xml_sections.moc"
