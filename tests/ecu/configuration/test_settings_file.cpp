#include "ecu/configuration/SettingsFile.h"
#include "ecu/configuration/settings_text.h"

#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <QtTest>

#include <sys/resource.h>

namespace {

QByteArray document(const QByteArray& sections)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><!DOCTYPE tarvio><OrvgProject>" + sections +
           "</OrvgProject>";
}

/// The pattern as many times, with a number in the place of %1.
QByteArray numbered(int count, const QString& pattern)
{
    QByteArray text;
    for (int number = 0; number < count; ++number)
        text += pattern.arg(QString::number(number, 36)).toUtf8();
    return text;
}

/// All that this process has read from files so far.
qint64 bytesReadSoFar()
{
    QFile counters(QStringLiteral("/proc/self/io"));
    if (!counters.open(QIODevice::ReadOnly))
        qFatal("nothing tells how much is read");
    const QByteArray first = counters.readLine();
    return first.mid(first.indexOf(' ') + 1).trimmed().toLongLong();
}

constexpr long kMemoryKb = TARVIO_IMPORT_MEMORY_KB;

long peakMemoryKb()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

/// The frame with two made-up sections. "First" takes one text; "Second" up to two items.
class TestSettingsFile : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void writesTheFrameAroundTheSections();
    void readsTheSectionsInTheOrderOfTheFile();
    void unselectedSectionIsSkipped();
    void fileThatIsNone_data();
    void fileThatIsNone();
    void byteOrderMarkIsNoFault();
    void replacementCharacterOfItsOwnIsNoFault();
    void failedSectionDoesNotHideTheLaterOnes_data();
    void failedSectionDoesNotHideTheLaterOnes();
    void fullSectionDoesNotHideTheLaterOnes();
    void moreThanASectionHoldsEndsTheImport();
    void unknownSectionEndsTheImportAndKeepsWhatWasRead();
    void knownErrorsComeWithTheAbort();
    void brokenXmlAfterASectionEndsTheImport();
    void brokenSectionIsNotReadAtAll();
    void fileThatDoesNotEndWithItsRootIsTold_data();
    void fileThatDoesNotEndWithItsRootIsTold();
    void whatMayStandBehindTheRootIsNoFault();
    void bytesThatAreNoTextEndTheImport_data();
    void bytesThatAreNoTextEndTheImport();
    void moreSectionsThanAnyFileHasEndTheImport();
    void elementInsideATextIsTheSectionsError();
    void namesTheSectionsOfAFile_data();
    void namesTheSectionsOfAFile();
    void hostileFileIsRefusedInBoundedTimeAndMemory_data();
    void hostileFileIsRefusedInBoundedTimeAndMemory();
    void oneAttributeMoreThanAreTakenIsTooMany();
    void longFileIsNotReadToItsEnd_data();
    void longFileIsNotReadToItsEnd();
    void longestFileIsReadWhole();
    void longNamesAreCutInTheMessage();
    void deviceIsNoSettingsFile();

private:
    SettingsFile settingsFile();
    bool readItems(QXmlStreamReader& reader, std::string& error);
    ImportReport import(const QByteArray& content);
    QString fileWith(const QByteArray& content);

    QTemporaryDir mFolder;
    QStringList mRead;
    QStringList mSelected;
};

void TestSettingsFile::init()
{
    mRead.clear();
    mSelected = QStringList{"First", "Second"};
}

SettingsFile TestSettingsFile::settingsFile()
{
    const ConfigurationPart first{
        .element = QStringLiteral("First"),
        .errorName = QStringLiteral("The first"),
        .writeXml = [](QXmlStreamWriter& writer) { writer.writeCDATA(QStringLiteral("one")); },
        .readFromXml =
            [this](QXmlStreamReader& reader, std::string&) {
                mRead.append(reader.readElementText());
                return true;
            }};
    const ConfigurationPart second{
        .element = QStringLiteral("Second"),
        .errorName = QStringLiteral("The second"),
        .writeXml = [](QXmlStreamWriter& writer) { writer.writeTextElement("Item", "two"); },
        .readFromXml = [this](QXmlStreamReader& reader,
                              std::string& error) { return readItems(reader, error); }};
    return SettingsFile({first, second});
}

// Stops at the second item and, like a careless view, wherever an error is met.
bool TestSettingsFile::readItems(QXmlStreamReader& reader, std::string& error)
{
    for (int count = 0; count < 2 && reader.readNextStartElement(); ++count) {
        if (reader.name() != QStringLiteral("Item")) {
            error = "wrong xml format";
            return false;
        }
        mRead.append(reader.readElementText());
        if (mRead.last() == QStringLiteral("bad")) {
            error = "wrong data format";
            return false;
        }
    }
    return true;
}

QString TestSettingsFile::fileWith(const QByteArray& content)
{
    QFile file(mFolder.filePath(QStringLiteral("settings.orv")));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return {};
    return file.fileName();
}

ImportReport TestSettingsFile::import(const QByteArray& content)
{
    return settingsFile().read(
        fileWith(content), [this](const QString& element) { return mSelected.contains(element); });
}

void TestSettingsFile::writesTheFrameAroundTheSections()
{
    QCOMPARE(settingsFile().document(), QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                                   "<!DOCTYPE tarvio>\n"
                                                   "<OrvgProject>\n"
                                                   "    <First><![CDATA[one]]></First>\n"
                                                   "    <Second>\n"
                                                   "        <Item>two</Item>\n"
                                                   "    </Second>\n"
                                                   "</OrvgProject>\n"));
}

void TestSettingsFile::readsTheSectionsInTheOrderOfTheFile()
{
    const ImportReport report = import(document("<Second><Item>b</Item></Second><First>a</First>"));
    QVERIFY(report.isComplete());
    QCOMPARE(mRead, QStringList({"b", "a"}));
}

void TestSettingsFile::unselectedSectionIsSkipped()
{
    mSelected = QStringList{"Second"};
    QTest::ignoreMessage(QtDebugMsg, "\"First\"");
    QTest::ignoreMessage(QtDebugMsg, "\"Second\"");
    const ImportReport report =
        import(document("<First><deep><er/></deep></First><Second><Item>b</Item></Second>"));
    QVERIFY(report.isComplete());
    QCOMPARE(mRead, QStringList({"b"}));
}

void TestSettingsFile::fileThatIsNone_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("abortText");

    QTest::newRow("empty") << QByteArray() << "invalid xml file";
    QTest::newRow("text") << QByteArray("hello") << "invalid xml file";
    QTest::newRow("binary junk") << QByteArray::fromHex("89504e470d0a1a0a0000ffd8ff00fe")
                                 << "invalid xml file";
    QTest::newRow("zeros") << QByteArray(4096, '\0') << "invalid xml file";
    QTest::newRow("another root") << QByteArray("<svg/>") << "not an OrvgProject";
    QTest::newRow("no root yet") << QByteArray("<?xml version=\"1.0\"?>") << "invalid xml file";
}

void TestSettingsFile::fileThatIsNone()
{
    QFETCH(QByteArray, content);
    const ImportReport report = import(content);
    QTEST(report.abortText, "abortText");
    QCOMPARE(report.sectionErrors, QString());
    QVERIFY(mRead.isEmpty());
}

void TestSettingsFile::byteOrderMarkIsNoFault()
{
    QVERIFY(import("\xEF\xBB\xBF" + document("<First>a</First>")).isComplete());
    QCOMPARE(mRead, QStringList({"a"}));
}

// It is also what stands in for bytes that are no character.
void TestSettingsFile::replacementCharacterOfItsOwnIsNoFault()
{
    const QByteArray content = document("<!-- \xEF\xBF\xBD --><First>a</First>");
    QVERIFY(import(content).isComplete());
    QVERIFY(import("\xEF\xBB\xBF" + content).isComplete());
    QVERIFY(!import(document("<!-- \xFF --><First>a</First>")).isComplete());
}

void TestSettingsFile::failedSectionDoesNotHideTheLaterOnes_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<QString>("error");

    QTest::newRow("at a start element")
        << QByteArray("<Second><Other><x/></Other><Item>c</Item></Second>") << "wrong xml format";
    QTest::newRow("at an end element")
        << QByteArray("<Second><Item>bad</Item><Item>c</Item></Second>") << "wrong data format";
    QTest::newRow("in the last item")
        << QByteArray("<Second><Item>b</Item><Item>bad</Item></Second>") << "wrong data format";
    QTest::newRow("in a section within itself")
        << QByteArray("<Second><Second><Item>c</Item></Second></Second>") << "wrong xml format";
}

void TestSettingsFile::failedSectionDoesNotHideTheLaterOnes()
{
    QFETCH(QByteArray, section);
    QFETCH(QString, error);
    const ImportReport report = import(document(section + "<First>a</First>"));
    QCOMPARE(report.abortText, QString());
    QCOMPARE(report.sectionErrors, QStringLiteral("The second: %1\n").arg(error));
    QCOMPARE(mRead.last(), QStringLiteral("a"));
}

void TestSettingsFile::fullSectionDoesNotHideTheLaterOnes()
{
    const ImportReport report =
        import(document("<Second><Item>b</Item><Item>c</Item></Second><First>a</First>"));
    QVERIFY(report.isComplete());
    QCOMPARE(mRead, QStringList({"b", "c", "a"}));
}

void TestSettingsFile::moreThanASectionHoldsEndsTheImport()
{
    const ImportReport report = import(
        document("<Second><Item>b</Item><Item>c</Item><Item>d</Item></Second><First>a</First>"));
    QCOMPARE(report.abortText, QStringLiteral("Unknown category Item"));
    QCOMPARE(mRead, QStringList({"b", "c"}));
}

void TestSettingsFile::unknownSectionEndsTheImportAndKeepsWhatWasRead()
{
    const ImportReport report =
        import(document("<First>a</First><Third/><Second><Item>b</Item></Second>"));
    QCOMPARE(report.abortText, QStringLiteral("Unknown category Third"));
    QCOMPARE(report.sectionErrors, QString());
    QCOMPARE(mRead, QStringList({"a"}));
}

void TestSettingsFile::knownErrorsComeWithTheAbort()
{
    const ImportReport report = import(document("<Second><Item>bad</Item></Second><Third/>"));
    QCOMPARE(report.abortText, QStringLiteral("Unknown category Third"));
    QCOMPARE(report.sectionErrors, QStringLiteral("The second: wrong data format\n"));
}

void TestSettingsFile::brokenXmlAfterASectionEndsTheImport()
{
    const ImportReport report = import("<OrvgProject><First>a</First><oops");
    QCOMPARE(report.abortText, QStringLiteral("Premature end of document."));
    QCOMPARE(mRead, QStringList({"a"}));
}

void TestSettingsFile::brokenSectionIsNotReadAtAll()
{
    const ImportReport report =
        import("<OrvgProject><First>a</First><Second><Item>b</Item><Item>c");
    QCOMPARE(report.abortText, QStringLiteral("Premature end of document."));
    QCOMPARE(report.sectionErrors, QStringLiteral("The second: Premature end of document.\n"));
    QCOMPARE(mRead, QStringList({"a"}));
}

void TestSettingsFile::fileThatDoesNotEndWithItsRootIsTold_data()
{
    QTest::addColumn<QByteArray>("behind");
    QTest::addColumn<QString>("abortText");

    const QString extra = "Extra content at end of document.";
    QTest::newRow("a second root") << QByteArray("<OrvgProject/>") << extra;
    QTest::newRow("a second file")
        << document("<First>b</First>") << "XML declaration not at start of document.";
    QTest::newRow("text") << QByteArray("\nrest of a longer file") << extra;
    QTest::newRow("zeros") << QByteArray(100, '\0') << extra;
    QTest::newRow("an open tag") << QByteArray("<") << "Premature end of document.";
}

void TestSettingsFile::fileThatDoesNotEndWithItsRootIsTold()
{
    QFETCH(QByteArray, behind);
    const ImportReport report = import(document("<First>a</First>") + behind);
    QTEST(report.abortText, "abortText");
    QCOMPARE(report.sectionErrors, QString());
    QCOMPARE(mRead, QStringList({"a"}));
}

void TestSettingsFile::whatMayStandBehindTheRootIsNoFault()
{
    QVERIFY(import(document("<First>a</First>") + "\n\n<!-- checked -->\n<?note?>\n").isComplete());
}

void TestSettingsFile::bytesThatAreNoTextEndTheImport_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("read");

    QTest::newRow("in a section") << document("<First>a</First><Second><Item>\xFF</Item></Second>")
                                  << QStringList{"a"};
    QTest::newRow("in a name") << document("<First>a</First><Sec\xC3ond/>") << QStringList{"a"};
    QTest::newRow("behind the root") << document("<First>a</First>") + "\xFE" << QStringList{"a"};
    QTest::newRow("cut short at the end")
        << document("<First>a</First>") + "\xE2\x82" << QStringList{"a"};
    QTest::newRow("another encoding")
        << QByteArray("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><OrvgProject><First>\xE4"
                      "</First></OrvgProject>")
        << QStringList();
}

void TestSettingsFile::bytesThatAreNoTextEndTheImport()
{
    QFETCH(QByteArray, content);
    const ImportReport report = import(content);
    QVERIFY(!report.abortText.isEmpty());
    QTEST(mRead, "read");
}

void TestSettingsFile::moreSectionsThanAnyFileHasEndTheImport()
{
    const QByteArray section("<First>a</First>");
    QVERIFY(import(document(section.repeated(16))).isComplete());
    QCOMPARE(mRead.size(), 16);
    const ImportReport report = import(document(section.repeated(50'000)));
    QCOMPARE(report.abortText, QStringLiteral("invalid xml file"));
    QCOMPARE(mRead.size(), 32);
    QCOMPARE(SettingsFile::sectionsOf(fileWith(document(section.repeated(50'000)))).size(), 16);
    // A message of megabytes would hold the window for minutes.
    const ImportReport failed =
        import(document(QByteArray("<Second><x/></Second>").repeated(9999)));
    QVERIFY(failed.sectionErrors.size() < 1000);
}

void TestSettingsFile::elementInsideATextIsTheSectionsError()
{
    const ImportReport report =
        import(document("<Second><Item>b<x/></Item></Second><First>a</First>"));
    QCOMPARE(report.abortText, QString());
    QCOMPARE(report.sectionErrors, QStringLiteral("The second: Expected character data.\n"));
    QCOMPARE(mRead.last(), QStringLiteral("a"));
}

void TestSettingsFile::namesTheSectionsOfAFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("names");

    QTest::newRow("two sections") << document("<Second><Item/></Second><First/>")
                                  << QStringList{"Second", "First"};
    QTest::newRow("unknown section") << document("<Third/>") << QStringList{"Third"};
    QTest::newRow("no section") << document("") << QStringList();
    QTest::newRow("cut short") << QByteArray("<OrvgProject><First/><Sec") << QStringList{"First"};
    QTest::newRow("another root") << QByteArray("<svg><First/></svg>") << QStringList();
    QTest::newRow("empty") << QByteArray() << QStringList();
}

void TestSettingsFile::namesTheSectionsOfAFile()
{
    QFETCH(QByteArray, content);
    QTEST(SettingsFile::sectionsOf(fileWith(content)), "names");
}

void TestSettingsFile::hostileFileIsRefusedInBoundedTimeAndMemory_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isSettingsFile");

    QByteArray laughs = "<!DOCTYPE tarvio [<!ENTITY l0 \"lol\">";
    for (int level = 1; level < 10; ++level) {
        laughs += "<!ENTITY l" + QByteArray::number(level) + " \"" +
                  ("&l" + QByteArray::number(level - 1) + ";").repeated(10) + "\">";
    }
    QTest::newRow("nested entities")
        << laughs + "]><OrvgProject><First>&l9;</First></OrvgProject>" << false;
    const QByteArray blank(4000, ' ');
    QTest::newRow("one entity again and again")
        << "<!DOCTYPE tarvio [<!ENTITY x \"" + blank + "\">]><OrvgProject><First>" +
               QByteArray("&x;").repeated(300000) + "</First></OrvgProject>"
        << false;
    QTest::newRow("one parameter entity again and again")
        << "<!DOCTYPE tarvio [<!ENTITY % x \"" + blank + "\">" +
               QByteArray("%x;").repeated(300000) + "]><OrvgProject/>"
        << false;
    QTest::newRow("90,000 attributes")
        << document("<First" + numbered(90'000, " a%1=''") + "/>") << false;
    QTest::newRow("attributes with blanks around the sign")
        << document("<First" + numbered(50'000, " a%1 = \n''") + "/>") << false;
    QTest::newRow("a namespace in each of many nested elements")
        << "<OrvgProject><First>" + numbered(50'000, "<a xmlns:n%1='u'>") << false;
    QTest::newRow("declared attributes in each of many elements")
        << "<!DOCTYPE tarvio [" + numbered(300, "<!ATTLIST a b%1 CDATA 'x'>") +
               "]><OrvgProject><First>" + QByteArray("<a/>").repeated(200'000) +
               "</First></OrvgProject>"
        << false;
    QTest::newRow("as many attributes as are taken")
        << "<OrvgProject><First" + numbered(512, " a%1=''") + ">" << true;
    QTest::newRow("nesting to the largest size")
        << "<OrvgProject><First>" + QByteArray("<a>").repeated(340'000) << true;
}

void TestSettingsFile::hostileFileIsRefusedInBoundedTimeAndMemory()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isSettingsFile);
    const QString fileName = fileWith(content);
    content = QByteArray();
    const long memoryBefore = peakMemoryKb();
    const ImportReport report = settingsFile().read(fileName, [](const QString&) { return true; });
    QVERIFY2(peakMemoryKb() - memoryBefore < kMemoryKb,
             qPrintable(QString::number(peakMemoryKb() - memoryBefore)));
    QCOMPARE(report.abortText, isSettingsFile ? QStringLiteral("Premature end of document.")
                                              : QStringLiteral("invalid xml file"));
    QVERIFY(mRead.isEmpty());
    QCOMPARE(SettingsFile::sectionsOf(fileName).isEmpty(), !isSettingsFile);
}

void TestSettingsFile::oneAttributeMoreThanAreTakenIsTooMany()
{
    const QByteArray behind("><Second/></OrvgProject>");
    QVERIFY(import("<OrvgProject" + numbered(512, " a%1=''") + behind).isComplete());
    QCOMPARE(import("<OrvgProject" + numbered(513, " a%1=''") + behind).abortText,
             QStringLiteral("invalid xml file"));
}

void TestSettingsFile::longFileIsNotReadToItsEnd_data()
{
    QTest::addColumn<qint64>("size");

    QTest::newRow("one byte too long") << kMaxSettingsFileSize + 1;
    QTest::newRow("100 MB") << qint64{100'000'000};
    QTest::newRow("100 GB") << qint64{100'000'000'000};
}

// What is read counts, not how long it takes: the file is a hole on the disk.
void TestSettingsFile::longFileIsNotReadToItsEnd()
{
    QFETCH(qint64, size);
    const QString fileName = fileWith("<OrvgProject><First>a</First>");
    QVERIFY(QFile::resize(fileName, size));
    const long memoryBefore = peakMemoryKb();
    const qint64 readBefore = bytesReadSoFar();
    const ImportReport report = settingsFile().read(fileName, [](const QString&) { return true; });
    QCOMPARE(report.abortText, QStringLiteral("invalid xml file"));
    QCOMPARE(SettingsFile::sectionsOf(fileName), QStringList());
    QVERIFY(mRead.isEmpty());
    QVERIFY2(bytesReadSoFar() - readBefore < 3 * kMaxSettingsFileSize,
             qPrintable(QString::number(bytesReadSoFar() - readBefore)));
    QVERIFY(peakMemoryKb() - memoryBefore < 50'000);
}

void TestSettingsFile::longestFileIsReadWhole()
{
    const QByteArray head("<OrvgProject><First>a</First><!--");
    const QByteArray tail("--></OrvgProject>");
    const auto filler = int(kMaxSettingsFileSize) - head.size() - tail.size();
    QVERIFY(import(head + QByteArray(filler, 'x') + tail).isComplete());
    QCOMPARE(mRead, QStringList{"a"});
}

void TestSettingsFile::longNamesAreCutInTheMessage()
{
    const ImportReport report = import(document("<" + QByteArray(3000, 'n') + "/>"));
    QVERIFY(report.abortText.startsWith(QStringLiteral("Unknown category nnn")));
    QCOMPARE(report.abortText.size(), 200);
}

void TestSettingsFile::deviceIsNoSettingsFile()
{
    const auto all = [](const QString&) { return true; };
    for (const char* name : {"/dev/zero", "/tmp", "/no/such/file", ""}) {
        const QString fileName = QString::fromLatin1(name);
        QCOMPARE(settingsFile().read(fileName, all).abortText, QStringLiteral("invalid xml file"));
        QVERIFY(SettingsFile::sectionsOf(fileName).isEmpty());
    }
}

QTEST_GUILESS_MAIN(TestSettingsFile)
#include "test_settings_file.moc"
