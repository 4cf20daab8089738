#include "ecu/configuration/sequence_section.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <QtTest>

namespace {

const std::vector<orv::MseqStep> kTwoSteps = {
    {.valid = true, .activeMask = 0x0801, .passiveMask = 0x0FFF},
    {.valid = true, .activeMask = 1, .modulation = 65535, .code = 65535, .fifthValue = 0x1234}};

const QString kEmptyStep = "AAAAAAAAAAAAAA==";

QString stepElement(const QString& id, const QString& content = kEmptyStep)
{
    return QString("<Step id=\"%1\"><![CDATA[%2]]></Step>").arg(id, content);
}

} // namespace

class SequenceSectionTest : public QObject
{
    Q_OBJECT

private slots:
    void stepsAreWrittenWithIdAndBytes()
    {
        QString text;
        QXmlStreamWriter writer(&text);
        writeSequenceSection(writer, kTwoSteps);
        QCOMPARE(text, stepElement("0", "AQj/DwAAAAAAAA==") + stepElement("1", "AQAAAP////80Eg=="));
    }

    void writtenStepsAreReadAgain()
    {
        QString text;
        QXmlStreamWriter writer(&text);
        writer.setAutoFormatting(true);
        writer.writeStartElement("MSEQ");
        writeSequenceSection(writer, kTwoSteps);
        writer.writeEndElement();
        QVERIFY(read(text));
        QCOMPARE(mSteps, kTwoSteps);
    }

    void emptySectionIsAnEmptySequence()
    {
        QVERIFY(read("<MSEQ></MSEQ>"));
        QVERIFY(mSteps.empty());
    }

    void thirteenthStepIsLeftToTheCaller()
    {
        QString steps;
        for (int id = 0; id < 13; ++id)
            steps += stepElement(QString::number(id));
        QXmlStreamReader reader("<MSEQ>" + steps + "</MSEQ>");
        reader.readNextStartElement();
        const auto section = readSequenceSection(reader);
        QVERIFY(section.value);
        QCOMPARE(section.value->size(), 12U);
        QVERIFY(reader.readNextStartElement());
        QCOMPARE(reader.attributes().value("id").toInt(), 12);
    }

    void longerBlockIsReadFromItsFront()
    {
        QVERIFY(read("<MSEQ>" + stepElement("0", "AQACAAMABAAFAAY=") + "</MSEQ>"));
        QCOMPARE(mSteps.front().fifthValue, std::uint16_t{5});
    }

    void wrongSectionsAreRefused_data()
    {
        QTest::addColumn<QString>("content");
        QTest::addColumn<QString>("expected");
        const QString good = stepElement("0");
        QTest::newRow("other element") << "<Sensor id=\"0\"/>"
                                       << "wrong xml format";
        QTest::newRow("other element behind a step") << good + "<Sensor id=\"1\"/>"
                                                     << "wrong xml format";
        QTest::newRow("no id") << "<Step>" + kEmptyStep + "</Step>"
                               << "id missing";
        QTest::newRow("first id is 1") << stepElement("1") << "wrong id value";
        QTest::newRow("id comes twice") << good + good << "wrong id value";
        QTest::newRow("id is no number") << stepElement("zero") << "wrong id value";
        QTest::newRow("empty id") << stepElement("") << "wrong id value";
        QTest::newRow("huge id") << stepElement("4294967296") << "wrong id value";
        QTest::newRow("9 bytes") << stepElement("0", "AAAAAAAAAAAA") << "wrong data format";
        QTest::newRow("empty") << stepElement("0", "") << "wrong data format";
        QTest::newRow("no Base64") << stepElement("0", "#####") << "wrong data format";
        QTest::newRow("element inside") << "<Step id=\"0\"><Step/>" + kEmptyStep + "</Step>"
                                        << "wrong data format";
        QTest::newRow("cut file") << "<Step id=\"0\">"
                                  << "wrong data format";
    }

    void wrongSectionsAreRefused()
    {
        QFETCH(QString, content);
        QVERIFY(!read("<MSEQ>" + content + "</MSEQ>"));
        QVERIFY(mSteps.empty());
        QTEST(mError, "expected");
    }

private:
    bool read(const QString& text)
    {
        QXmlStreamReader reader(text);
        reader.readNextStartElement();
        const auto section = readSequenceSection(reader);
        mSteps = section.value.value_or(std::vector<orv::MseqStep>());
        mError = QString::fromStdString(section.error);
        return section.value.has_value();
    }

    std::vector<orv::MseqStep> mSteps;
    QString mError;
};

QTEST_APPLESS_MAIN(SequenceSectionTest)
#include "test_sequence_section.moc"
