#include "orv_decoder/metatypes.h"
#include "tests/app/WholeWindow.h"
#include "tests/support/MessageBoxWatcher.h"

#include <QFile>
#include <QProcess>
#include <QtTest>

/// Files written and read by the whole window, checked by a parser that is not ours.
class TestSettingsRoundTrip : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { orv::registerMetaTypes(); }
    void init();
    void cleanup() { mWindow.reset(); }

    void importBringsBackEveryByte();
    void exportedFileIsValid();
    void anotherParserReadsTheSameBytes();
    void networkArrivesAsImportedOnly();
    void networkIsLeftOutUnlessTicked();
    void importedNetworkIsForgottenAtClose();
    void untickedSectionKeepsItsValues();
    void emptySequenceIsImported();
    void thirteenthStepAbortsAfterTheTwelfth();
    void faultyFileIsTold_data();
    void faultyFileIsTold();

private:
    QByteArray exported();
    void import(const QByteArray& content);
    static QByteArray section(const QByteArray& file, const QByteArray& name);
    static QByteArray steps(int count);
    QByteArray xmllint(const QStringList& arguments, int* exitCode = nullptr) const;

    std::unique_ptr<WholeWindow> mWindow;
    QString mFile;
};

void TestSettingsRoundTrip::init()
{
    mWindow = std::make_unique<WholeWindow>();
    mFile = mWindow->path(QStringLiteral("settings.orv"));
}

QByteArray TestSettingsRoundTrip::exported()
{
    QFile::remove(mFile);
    mWindow->exportTo(mFile);
    QFile file(mFile);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestSettingsRoundTrip::import(const QByteArray& content)
{
    QFile file(mFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    mWindow->importFrom(mFile);
}

QByteArray TestSettingsRoundTrip::section(const QByteArray& file, const QByteArray& name)
{
    const auto begin = file.indexOf("<" + name);
    const QByteArray end = "</" + name + ">";
    return file.mid(begin, file.indexOf(end) + end.size() - begin);
}

QByteArray TestSettingsRoundTrip::steps(int count)
{
    QByteArray text;
    for (int id = 0; id < count; ++id) {
        const QByteArray block = QByteArray::fromHex("010002000000000000") + char(id);
        text += "<Step id=\"" + QByteArray::number(id) + "\">" + block.toBase64() + "</Step>";
    }
    return text;
}

QByteArray TestSettingsRoundTrip::xmllint(const QStringList& arguments, int* exitCode) const
{
    QProcess process;
    process.start(QStringLiteral(TARVIO_XMLLINT), arguments + QStringList{mFile});
    process.waitForFinished();
    if (exitCode)
        *exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    return process.readAllStandardOutput().trimmed();
}

void TestSettingsRoundTrip::importBringsBackEveryByte()
{
    const QByteArray file = exported();
    const QString configuration = mWindow->configuration();
    QVERIFY(mWindow->ecu().write(configurationOfSeed(1)));
    const MessageBoxWatcher watcher(QMessageBox::Yes);
    mWindow->trigger("actionSyncFromECU");
    const QByteArray changed = exported();
    for (const char* name : {"MSEQ", "Thresholds", "MountPositions"})
        QVERIFY(section(changed, name) != section(file, name));
    import(file);
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(mWindow->configuration(), configuration);
    QCOMPARE(exported(), file);
}

void TestSettingsRoundTrip::exportedFileIsValid()
{
    exported();
    int exitCode = -1;
    xmllint({QStringLiteral("--noout"), QStringLiteral("--relaxng"), QStringLiteral(TARVIO_SCHEMA)},
            &exitCode);
    QCOMPARE(exitCode, 0);
}

void TestSettingsRoundTrip::anotherParserReadsTheSameBytes()
{
    exported();
    const auto text = [this](const char* path) {
        return xmllint({QStringLiteral("--xpath"), QStringLiteral("string(%1)").arg(path)});
    };
    const auto bytesOf = [](const std::vector<std::uint8_t>& bytes) {
        return QByteArray(reinterpret_cast<const char*>(bytes.data()), int(bytes.size()));
    };
    const EcuConfiguration ecu = configurationOfSeed(0);
    QCOMPARE(text("/OrvgProject/Network/ecu_ip"), QByteArray("127.0.0.1"));
    QCOMPARE(QByteArray::fromBase64(text("/OrvgProject/MSEQ/Step[@id='2']")),
             bytesOf(orv::encodeStep(ecu.sequence[2])));
    QCOMPARE(QByteArray::fromBase64(text("/OrvgProject/Thresholds/Sensor[@id='11']")),
             bytesOf(orv::encodeThreshold(ecu.thresholds[11])));
    QCOMPARE(QByteArray::fromBase64(text("/OrvgProject/MountPositions")),
             bytesOf(orv::encodeMountPositions(ecu.positions)));
    QCOMPARE(xmllint({"--xpath", "name(/*/*[1]/following-sibling::*[3])"}),
             QByteArray("MountPositions"));
}

void TestSettingsRoundTrip::networkArrivesAsImportedOnly()
{
    QByteArray file = exported();
    file.replace("<ecu_ip>127.0.0.1<", "<ecu_ip>127.0.0.9<");
    QFile changed(mFile);
    QVERIFY(changed.open(QIODevice::WriteOnly));
    changed.write(file);
    changed.close();
    mWindow->importFrom(mFile, true);
    const TemporaryProfile& profile = mWindow->profile();
    QTRY_COMPARE(profile.value(QStringLiteral("network_imported/ecu_ip")).toString(),
                 QStringLiteral("127.0.0.9"));
    QCOMPARE(profile.value(QStringLiteral("network/ecu_ip")).toString(),
             QStringLiteral("127.0.0.1"));
    QCOMPARE(profile.keys(QStringLiteral("network_imported")).size(), 6);
}

void TestSettingsRoundTrip::networkIsLeftOutUnlessTicked()
{
    exported();
    mWindow->importFrom(mFile);
    QVERIFY(!mWindow->profile().groups().contains(QStringLiteral("network_imported")));
}

void TestSettingsRoundTrip::importedNetworkIsForgottenAtClose()
{
    exported();
    mWindow->importFrom(mFile, true);
    QTRY_VERIFY(mWindow->profile().groups().contains(QStringLiteral("network_imported")));
    mWindow->window().close();
    QVERIFY(!mWindow->profile().groups().contains(QStringLiteral("network_imported")));
}

void TestSettingsRoundTrip::untickedSectionKeepsItsValues()
{
    const QByteArray file = exported();
    QVERIFY(mWindow->ecu().write(configurationOfSeed(1)));
    const MessageBoxWatcher watcher(QMessageBox::Yes);
    mWindow->trigger("actionSyncFromECU");
    const QByteArray changed = exported();
    QFile former(mFile);
    QVERIFY(former.open(QIODevice::WriteOnly));
    former.write(file);
    former.close();
    mWindow->importFrom(mFile, false, {QStringLiteral("mThresholdsCb")});
    const QByteArray now = exported();
    QCOMPARE(section(now, "MSEQ"), section(file, "MSEQ"));
    QCOMPARE(section(now, "Thresholds"), section(changed, "Thresholds"));
    QCOMPARE(section(now, "MountPositions"), section(file, "MountPositions"));
}

void TestSettingsRoundTrip::emptySequenceIsImported()
{
    const MessageBoxWatcher watcher;
    import("<OrvgProject><MSEQ/></OrvgProject>");
    QVERIFY(watcher.boxes().isEmpty());
    QVERIFY(!exported().contains("<Step"));
}

void TestSettingsRoundTrip::thirteenthStepAbortsAfterTheTwelfth()
{
    const QByteArray positions = section(exported(), "MountPositions");
    const MessageBoxWatcher watcher;
    import("<OrvgProject><MSEQ>" + steps(13) +
           "</MSEQ><Thresholds><x/></Thresholds></OrvgProject>");
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().title, QStringLiteral("Import error"));
    QCOMPARE(watcher.boxes().first().text,
             QStringLiteral("Import of some settings failed!\nUnknown category Step\n\n"));
    QCOMPARE(exported().count("<Step"), 12);
    QCOMPARE(section(exported(), "MountPositions"), positions);
}

void TestSettingsRoundTrip::faultyFileIsTold_data()
{
    QTest::addColumn<QByteArray>("sections");
    QTest::addColumn<QString>("errors");

    const QByteArray step = "AQACAAAAAAAAAA==";
    const auto mseq = [](const QByteArray& content) { return "<MSEQ>" + content + "</MSEQ>"; };
    QTest::newRow("first step with id 1")
        << mseq("<Step id=\"1\">" + step + "</Step>") << "Measurement sequence: wrong id value\n";
    QTest::newRow("step without id")
        << mseq("<Step>" + step + "</Step>") << "Measurement sequence: id missing\n";
    QTest::newRow("another element")
        << mseq("<Sensor id=\"0\"/>") << "Measurement sequence: wrong xml format\n";
    QTest::newRow("step without bytes")
        << mseq("<Step id=\"0\"/>") << "Measurement sequence: wrong data format\n";
    QTest::newRow("step of nine bytes") << mseq("<Step id=\"0\">AQACAAAAAAAA</Step>")
                                        << "Measurement sequence: wrong data format\n";
    QTest::newRow("no Base64") << mseq("<Step id=\"0\">!!!***</Step>")
                               << "Measurement sequence: wrong data format\n";
    QTest::newRow("element inside a step") << mseq("<Step id=\"0\">" + step + "<x/></Step>")
                                           << "Measurement sequence: wrong data format\n";
    QTest::newRow("sensor out of order")
        << QByteArray("<Thresholds><Sensor id=\"3\"/></Thresholds>")
        << "Thresholds: wrong id value\n";
    QTest::newRow("sensor of no bytes") << QByteArray("<Thresholds><Sensor id=\"0\"/></Thresholds>")
                                        << "Thresholds: wrong thresholds data format\n";
    QTest::newRow("positions of no bytes")
        << QByteArray("<MountPositions/>")
        << "MountPositions: Invalid data format of sensor positions\n";
    QTest::newRow("positions of 143 bytes")
        << "<MountPositions>" + QByteArray(143, '\1').toBase64() + "</MountPositions>"
        << "MountPositions: Invalid data format of sensor positions\n";
    QTest::newRow("element inside the positions")
        << "<MountPositions>" + QByteArray(144, '\1').toBase64() + "<x/></MountPositions>"
        << "MountPositions: Invalid data format of sensor positions\n";
    QTest::newRow("two sections") << QByteArray("<Thresholds><x/></Thresholds><MountPositions/>")
                                  << "Thresholds: wrong xml format\n"
                                     "MountPositions: Invalid data format of sensor positions\n";
}

void TestSettingsRoundTrip::faultyFileIsTold()
{
    QFETCH(QByteArray, sections);
    QFETCH(QString, errors);
    const QString former = mWindow->configuration();
    const MessageBoxWatcher watcher;
    import("<OrvgProject>" + sections + "</OrvgProject>");
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().text,
             QStringLiteral("Import of some settings failed!\n\n\n") + errors);
    QCOMPARE(mWindow->configuration(), former);
}

QTEST_MAIN(TestSettingsRoundTrip)
#include "test_settings_round_trip.moc"
