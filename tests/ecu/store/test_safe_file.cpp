#include "ecu/store/safe_file.h"
#include "tests/support/FullDisk.h"
#include "tests/support/OrdinaryUser.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using Outcome = FileWriteResult::Outcome;

class TestSafeFile : public QObject
{
    Q_OBJECT

private slots:
    void init() { mFolder = std::make_unique<QTemporaryDir>(); }

    void newFileHoldsTheBytes();
    void oneByteIsEnough();
    void formerFileIsReplacedAsAWhole();
    void fullDiskKeepsTheFormerFile_data();
    void fullDiskKeepsTheFormerFile();
    void fullDiskLeavesNoNewFile();
    void fileInAFolderThatTakesNoneIsWrittenInPlace_data();
    void fileInAFolderThatTakesNoneIsWrittenInPlace();
    void fullDiskKeepsTheFileThatCouldOnlyBeWrittenInPlace();
    void fileThatSomebodyHoldsOpenIsReplacedBehindTheirBack();
    void newFileInAFolderThatTakesNoneCannotBeOpened();
    void linkStaysALink();
    void permissionsStay();
    void pipeIsLeftAlone();
    void whatIsNoPlaceForAFileCannotBeOpened_data();
    void whatIsNoPlaceForAFileCannotBeOpened();
    void suffixIsAddedWhereItIsMissing_data();
    void suffixIsAddedWhereItIsMissing();

private:
    QString path(const QString& name) const { return mFolder->filePath(name); }
    QString existing(const QString& name);
    QStringList files() const
    {
        return QDir(mFolder->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    static QByteArray contentOf(const QString& fileName);

    std::unique_ptr<QTemporaryDir> mFolder;
};

QString TestSafeFile::existing(const QString& name)
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write("former") != 6)
        qFatal("no file to begin with");
    return file.fileName();
}

QByteArray TestSafeFile::contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

void TestSafeFile::oneByteIsEnough()
{
    QVERIFY(writeWholeFile(path("a.orv"), "x").isWritten());
    QCOMPARE(contentOf(path("a.orv")), QByteArray("x"));
}

void TestSafeFile::newFileHoldsTheBytes()
{
    const FileWriteResult result = writeWholeFile(path("a.orv"), QByteArray("new\0bytes", 9));
    QVERIFY(result.isWritten());
    QCOMPARE(result.errorText, QString());
    QCOMPARE(contentOf(path("a.orv")), QByteArray("new\0bytes", 9));
    QCOMPARE(files(), QStringList{"a.orv"});
}

// A second name of the former file shows that its bytes are never touched: whoever dies in between
// leaves them as they were.
void TestSafeFile::formerFileIsReplacedAsAWhole()
{
    const QString file = existing("a.orv");
    QCOMPARE(::link(qPrintable(file), qPrintable(path("second name"))), 0);
    QVERIFY(writeWholeFile(file, "new").isWritten());
    QCOMPARE(contentOf(file), QByteArray("new"));
    QCOMPARE(contentOf(path("second name")), QByteArray("former"));
}

void TestSafeFile::fullDiskKeepsTheFormerFile_data()
{
    QTest::addColumn<int>("length");

    QTest::newRow("short file") << 1000;
    QTest::newRow("long file") << 100'000;
}

void TestSafeFile::fullDiskKeepsTheFormerFile()
{
    QFETCH(int, length);
    const QString file = existing("a.orv");
    FileWriteResult result;
    {
        const FullDisk fullDisk(512);
        result = writeWholeFile(file, QByteArray(length, 'x'));
    }
    QCOMPARE(result.outcome, Outcome::CannotWrite);
    QCOMPARE(result.errorText, QString("File too large"));
    QCOMPARE(contentOf(file), QByteArray("former"));
    QCOMPARE(files(), QStringList{"a.orv"});
}

void TestSafeFile::fullDiskLeavesNoNewFile()
{
    {
        const FullDisk fullDisk(512);
        QVERIFY(!writeWholeFile(path("a.orv"), QByteArray(1000, 'x')).isWritten());
    }
    QCOMPARE(files(), QStringList());
}

void TestSafeFile::fileInAFolderThatTakesNoneIsWrittenInPlace_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("shorter") << QByteArray("new");
    QTest::newRow("as long") << QByteArray("latest");
    QTest::newRow("longer") << QByteArray("new and longer");
    QTest::newRow("empty") << QByteArray();
}

void TestSafeFile::fileInAFolderThatTakesNoneIsWrittenInPlace()
{
    QFETCH(QByteArray, bytes);
    const QString file = existing("a.orv");
    QCOMPARE(::chmod(qPrintable(mFolder->path()), 0500), 0);
    FileWriteResult result;
    {
        const OrdinaryUser user;
        result = writeWholeFile(file, bytes);
    }
    ::chmod(qPrintable(mFolder->path()), 0700);
    QCOMPARE(result.errorText, QString());
    QVERIFY(result.isWritten());
    QCOMPARE(contentOf(file), bytes);
    QCOMPARE(files(), QStringList{"a.orv"});
}

void TestSafeFile::fullDiskKeepsTheFileThatCouldOnlyBeWrittenInPlace()
{
    const QString file = existing("a.orv");
    QCOMPARE(::chmod(qPrintable(mFolder->path()), 0500), 0);
    FileWriteResult result;
    {
        const OrdinaryUser user;
        const FullDisk fullDisk(512);
        result = writeWholeFile(file, QByteArray(1000, 'x'));
    }
    ::chmod(qPrintable(mFolder->path()), 0700);
    QCOMPARE(result.outcome, Outcome::CannotWrite);
    QCOMPARE(result.errorText, QString("File too large"));
    QCOMPARE(contentOf(file), QByteArray("former"));
}

void TestSafeFile::fileThatSomebodyHoldsOpenIsReplacedBehindTheirBack()
{
    QFile held(existing("a.orv"));
    QVERIFY(held.open(QIODevice::ReadWrite));
    QCOMPARE(::flock(held.handle(), LOCK_EX | LOCK_NB), 0);
    QVERIFY(writeWholeFile(held.fileName(), "new").isWritten());
    QCOMPARE(held.readAll(), QByteArray("former"));
    QCOMPARE(contentOf(held.fileName()), QByteArray("new"));
}

void TestSafeFile::newFileInAFolderThatTakesNoneCannotBeOpened()
{
    QCOMPARE(::chmod(qPrintable(mFolder->path()), 0500), 0);
    FileWriteResult result;
    {
        const OrdinaryUser user;
        result = writeWholeFile(path("a.orv"), "new");
    }
    ::chmod(qPrintable(mFolder->path()), 0700);
    QCOMPARE(result.outcome, Outcome::CannotOpen);
    QCOMPARE(result.errorText, QString("Permission denied"));
}

void TestSafeFile::linkStaysALink()
{
    const QString file = existing("a.orv");
    QVERIFY(QFile::link(file, path("link.orv")));
    QVERIFY(writeWholeFile(path("link.orv"), "new").isWritten());
    QVERIFY(QFileInfo(path("link.orv")).isSymLink());
    QCOMPARE(contentOf(file), QByteArray("new"));
}

void TestSafeFile::permissionsStay()
{
    const QString file = existing("a.orv");
    QCOMPARE(::chmod(qPrintable(file), 0640), 0);
    QVERIFY(writeWholeFile(file, "new").isWritten());
    struct stat status
    {};
    QCOMPARE(::stat(qPrintable(file), &status), 0);
    QCOMPARE(int(status.st_mode & 0777), 0640);
}

void TestSafeFile::pipeIsLeftAlone()
{
    QCOMPARE(::mkfifo(qPrintable(path("a.orv")), 0600), 0);
    const FileWriteResult result = writeWholeFile(path("a.orv"), "new");
    QCOMPARE(result.outcome, Outcome::CannotOpen);
    QVERIFY(!result.errorText.isEmpty());
    struct stat status
    {};
    QCOMPARE(::stat(qPrintable(path("a.orv")), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));
}

void TestSafeFile::whatIsNoPlaceForAFileCannotBeOpened_data()
{
    QTest::addColumn<QString>("fileName");

    QTest::newRow("folder") << "/tmp";
    QTest::newRow("no such folder") << "/no/such/folder/a.orv";
    QTest::newRow("below a file") << "/proc/self/status/a.orv";
}

void TestSafeFile::whatIsNoPlaceForAFileCannotBeOpened()
{
    QFETCH(QString, fileName);
    const FileWriteResult result = writeWholeFile(fileName, "new");
    QCOMPARE(result.outcome, Outcome::CannotOpen);
    QVERIFY(!result.errorText.isEmpty());
}

void TestSafeFile::suffixIsAddedWhereItIsMissing_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("expected");

    QTest::newRow("none") << "bumper"
                          << "bumper.orv";
    QTest::newRow("there") << "bumper.orv"
                           << "bumper.orv";
    QTest::newRow("there in capitals") << "BUMPER.ORV"
                                       << "BUMPER.ORV";
    QTest::newRow("another dot") << "bumper v1.2"
                                 << "bumper v1.2.orv";
    QTest::newRow("another suffix") << "bumper.xml"
                                    << "bumper.xml.orv";
    QTest::newRow("suffix without its dot") << "bumperorv"
                                            << "bumperorv.orv";
    QTest::newRow("dot in the folder") << "/car.orv/bumper"
                                       << "/car.orv/bumper.orv";
}

void TestSafeFile::suffixIsAddedWhereItIsMissing()
{
    QFETCH(QString, fileName);
    QTEST(withSuffix(fileName, QStringLiteral(".orv")), "expected");
}

QTEST_GUILESS_MAIN(TestSafeFile)
#include "test_safe_file.moc"
