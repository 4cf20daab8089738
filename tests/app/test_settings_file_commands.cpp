#include "app/OrvgOpenXmlSettingsDialog.h"
#include "app/SettingsFileCommands.h"
#include "tests/support/FullDisk.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/modal_dialogs.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <QtTest>

/// The two commands around a file with one section that holds one text.
class TestSettingsFileCommands : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init();

    void exportAsksForAnOrvFile();
    void cancelledExportWritesNothing();
    void exportedFileIsWrittenSilently();
    void missingExtensionIsAppended();
    void existingFileIsAskedAbout_data();
    void existingFileIsAskedAbout();
    void fileThatCannotBeOpenedIsTold();
    void fullDiskIsToldAndKeepsTheFormerFile_data();
    void fullDiskIsToldAndKeepsTheFormerFile();

    void cancelledImportReadsNothing();
    void importReadsWhatIsTicked();
    void failedSectionIsTold();
    void abortedImportIsTold();

private:
    SettingsFileCommands commands();
    void exportTo(const QString& fileName);
    void import(const QByteArray& content);
    QString path(const QString& name) const { return mFolder->filePath(name); }
    static QByteArray contentOf(const QString& fileName);

    std::unique_ptr<QTemporaryDir> mFolder;
    QString mText;
};

void TestSettingsFileCommands::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    mText = QStringLiteral("text");
}

SettingsFileCommands TestSettingsFileCommands::commands()
{
    const ConfigurationPart part{
        .element = QStringLiteral("MSEQ"),
        .errorName = QStringLiteral("Measurement sequence"),
        .writeXml = [this](QXmlStreamWriter& writer) { writer.writeCharacters(mText); },
        .readFromXml =
            [this](QXmlStreamReader& reader, std::string& error) {
                mText = reader.readElementText();
                error = "wrong id value";
                return mText != QStringLiteral("bad");
            }};
    return {SettingsFile({part}), nullptr};
}

void TestSettingsFileCommands::exportTo(const QString& fileName)
{
    QObject command;
    whenOpened<QFileDialog>(&command, [&](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(fileName);
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
        // Opens again when the user keeps the existing file.
        whenOpened<QFileDialog>(&command, [](QFileDialog& again) { again.reject(); });
    });
    commands().exportSettings();
}

void TestSettingsFileCommands::import(const QByteArray& content)
{
    const QString fileName = path(QStringLiteral("import.orv"));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    whenOpened<OrvgOpenXmlSettingsDialog>(this, [fileName](OrvgOpenXmlSettingsDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("mFileLineEdit"))->setText(fileName);
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    commands().importSettings();
}

QByteArray TestSettingsFileCommands::contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestSettingsFileCommands::exportAsksForAnOrvFile()
{
    QString caption;
    QStringList filters;
    whenOpened<QFileDialog>(this, [&](QFileDialog& dialog) {
        caption = dialog.windowTitle();
        filters = dialog.nameFilters();
        dialog.reject();
    });
    commands().exportSettings();
    QCOMPARE(caption, QStringLiteral("Export settings file"));
    QCOMPARE(filters, QStringList{"Orv settings(*.orv)"});
}

void TestSettingsFileCommands::cancelledExportWritesNothing()
{
    const MessageBoxWatcher watcher;
    whenOpened<QFileDialog>(this, [this](QFileDialog& dialog) {
        dialog.selectFile(path(QStringLiteral("a.orv")));
        dialog.reject();
    });
    commands().exportSettings();
    QVERIFY(QDir(mFolder->path()).isEmpty());
    QVERIFY(watcher.boxes().isEmpty());
}

void TestSettingsFileCommands::exportedFileIsWrittenSilently()
{
    const MessageBoxWatcher watcher;
    exportTo(path(QStringLiteral("a.orv")));
    QCOMPARE(contentOf(path(QStringLiteral("a.orv"))),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE tarvio>\n"
                        "<OrvgProject>\n    <MSEQ>text</MSEQ>\n</OrvgProject>\n"));
    QVERIFY(watcher.boxes().isEmpty());
}

void TestSettingsFileCommands::missingExtensionIsAppended()
{
    exportTo(path(QStringLiteral("a")));
    exportTo(path(QStringLiteral("bumper v1.2")));
    QCOMPARE(QDir(mFolder->path()).entryList(QDir::Files, QDir::Name),
             QStringList({"a.orv", "bumper v1.2.orv"}));
}

void TestSettingsFileCommands::existingFileIsAskedAbout_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isReplaced");

    QTest::newRow("with extension, replaced") << "a.orv" << true;
    QTest::newRow("with extension, kept") << "a.orv" << false;
    QTest::newRow("without extension, replaced") << "a" << true;
    QTest::newRow("without extension, kept") << "a" << false;
    QTest::newRow("with another dot, replaced") << "a v1.2" << true;
    QTest::newRow("with another dot, kept") << "a v1.2" << false;
}

void TestSettingsFileCommands::existingFileIsAskedAbout()
{
    QFETCH(QString, typed);
    QFETCH(bool, isReplaced);
    const QString full = path(typed.contains(QStringLiteral(".orv")) ? typed : typed + ".orv");
    const auto answer = isReplaced ? QMessageBox::Yes : QMessageBox::No;
    exportTo(full);
    const QByteArray former = contentOf(full);
    mText = QStringLiteral("other text");
    const MessageBoxWatcher watcher(answer);
    exportTo(path(typed));
    QCOMPARE(watcher.boxes().size(), 1);
    QVERIFY(watcher.boxes().first().buttons.testFlag(answer));
    QCOMPARE(contentOf(full) != former, isReplaced);
}

void TestSettingsFileCommands::fileThatCannotBeOpenedIsTold()
{
    const MessageBoxWatcher watcher;
    exportTo(QStringLiteral("/proc/a.orv"));
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().icon, QMessageBox::Warning);
    QCOMPARE(watcher.boxes().first().title, QStringLiteral("Can't open file for writing"));
    QVERIFY(!watcher.boxes().first().text.isEmpty());
}

void TestSettingsFileCommands::fullDiskIsToldAndKeepsTheFormerFile_data()
{
    QTest::addColumn<int>("length");

    QTest::newRow("short file") << 1000;
    QTest::newRow("long file") << 100'000;
}

void TestSettingsFileCommands::fullDiskIsToldAndKeepsTheFormerFile()
{
    QFETCH(int, length);
    const QString fileName = path(QStringLiteral("a.orv"));
    exportTo(fileName);
    const QByteArray former = contentOf(fileName);
    mText = QString(length, QLatin1Char('x'));
    MessageBoxWatcher watcher(QMessageBox::Yes);
    {
        const FullDisk fullDisk(512);
        exportTo(fileName);
    }
    QCOMPARE(watcher.boxes().size(), 2);
    QCOMPARE(watcher.boxes().last().icon, QMessageBox::Warning);
    QCOMPARE(watcher.boxes().last().title, QStringLiteral("Can't write file"));
    QCOMPARE(watcher.boxes().last().text, QStringLiteral("File too large"));
    QCOMPARE(contentOf(fileName), former);
    QCOMPARE(QDir(mFolder->path()).entryList(QDir::Files), QStringList{"a.orv"});
}

void TestSettingsFileCommands::cancelledImportReadsNothing()
{
    whenOpened<OrvgOpenXmlSettingsDialog>(
        this, [](OrvgOpenXmlSettingsDialog& dialog) { dialog.reject(); });
    const MessageBoxWatcher watcher;
    commands().importSettings();
    QCOMPARE(mText, QStringLiteral("text"));
    QVERIFY(watcher.boxes().isEmpty());
}

void TestSettingsFileCommands::importReadsWhatIsTicked()
{
    const MessageBoxWatcher watcher;
    import("<OrvgProject><MSEQ>imported</MSEQ></OrvgProject>");
    QCOMPARE(mText, QStringLiteral("imported"));
    QVERIFY(watcher.boxes().isEmpty());
}

void TestSettingsFileCommands::failedSectionIsTold()
{
    const MessageBoxWatcher watcher;
    import("<OrvgProject><MSEQ>bad</MSEQ></OrvgProject>");
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().icon, QMessageBox::Warning);
    QCOMPARE(watcher.boxes().first().title, QStringLiteral("Import error"));
    QCOMPARE(watcher.boxes().first().text,
             QStringLiteral("Import of some settings failed!\n\n\n"
                            "Measurement sequence: wrong id value\n"));
}

void TestSettingsFileCommands::abortedImportIsTold()
{
    const MessageBoxWatcher watcher;
    import("<OrvgProject><MSEQ>a</MSEQ><Other/></OrvgProject>");
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().text,
             QStringLiteral("Import of some settings failed!\nUnknown category Other\n\n"));
    QCOMPARE(mText, QStringLiteral("a"));
}

QTEST_MAIN(TestSettingsFileCommands)
#include "test_settings_file_commands.moc"
