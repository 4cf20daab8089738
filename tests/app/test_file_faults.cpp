#include "app/OrvgConnectionSettingsDialog.h"
#include "app/TarvioWindow.h"
#include "tests/support/FullDisk.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/MeasurementBuilder.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/modal_dialogs.h"
#include "views/recording/OrvgCurveRecordingDialog.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

#include <sys/file.h>
#include <sys/stat.h>

/// A file that cannot be written, where users meet it: at the menus and buttons of the window. The
/// box says so in these words, and the former file is as it was.
class TestFileFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init();
    void cleanup();

    void exportThatFailsIsTold_data() { faults(); }
    void exportThatFailsIsTold();
    void recordingThatCannotBeSavedIsTold_data() { faults(); }
    void recordingThatCannotBeSavedIsTold();
    void acceptedConnectionThatIsNotStoredIsToldAndInUse();
    void storeThatFindsNoRoomAtTheCloseIsTold();

private:
    enum class Fault { FullDisk, FolderTakesNone, FolderGoesAway, HeldOpen };
    using Act = std::function<void()>;

    static void faults();
    QString file() const { return mFolder->filePath("there/file" + mSuffix); }
    void writeFormer() const;
    QByteArray content() const;
    void underFault(Fault fault, const Act& act);
    void exportSettings();
    void saveRecording();
    void expectOutcome(Fault fault, const QString& title, const QString& text) const;

    std::unique_ptr<QTemporaryDir> mFolder;
    QString mSuffix;
    std::unique_ptr<TemporaryProfile> mProfile;
    std::unique_ptr<TarvioWindow> mWindow;
    std::unique_ptr<MessageBoxWatcher> mWatcher;
};

namespace {

void answerSaveDialog(QObject* context, const QString& fileName, const std::function<void()>& then)
{
    whenOpened<QFileDialog>(context, [fileName, then](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(fileName);
        then();
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
    });
}

} // namespace

void TestFileFaults::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(mFolder->path()).mkdir("there"));
    mProfile = std::make_unique<TemporaryProfile>();
    mProfile->setNetwork(freeUdpPort(), freeUdpPort(), freeUdpPort());
    mWindow = std::make_unique<TarvioWindow>();
    mWindow->show();
    QCoreApplication::processEvents(); // Stores what a first start stores.
    mWatcher = std::make_unique<MessageBoxWatcher>(QMessageBox::Yes);
}

void TestFileFaults::cleanup()
{
    mWindow.reset();
    mWatcher.reset();
    mProfile.reset();
}

void TestFileFaults::faults()
{
    QTest::addColumn<int>("fault");
    QTest::addColumn<QString>("exportTitle");
    QTest::addColumn<QString>("exportText");

    const QString notOpened("Can't open file for writing");
    const QString notWritten("Can't write file");
    QTest::newRow("full disk") << int(Fault::FullDisk) << notWritten << "File too large";
    QTest::newRow("folder that takes no file")
        << int(Fault::FolderTakesNone) << notOpened << "Permission denied";
    QTest::newRow("folder that goes away")
        << int(Fault::FolderGoesAway) << notOpened << "No such file or directory";
    QTest::newRow("file held open") << int(Fault::HeldOpen) << QString() << QString();
}

void TestFileFaults::writeFormer() const
{
    QFile former(file());
    QVERIFY(former.open(QIODevice::WriteOnly));
    QCOMPARE(former.write("former"), 6);
}

QByteArray TestFileFaults::content() const
{
    QFile written(file());
    return written.open(QIODevice::ReadOnly) ? written.readAll() : QByteArray();
}

void TestFileFaults::underFault(Fault fault, const Act& act)
{
    const QString folder = QFileInfo(file()).path();
    if (fault == Fault::FullDisk || fault == Fault::HeldOpen)
        writeFormer();
    if (fault == Fault::FolderTakesNone)
        QCOMPARE(::chmod(qPrintable(folder), 0500), 0);
    if (fault == Fault::FullDisk) {
        const FullDisk disk(4);
        return act();
    }
    QFile holder(file());
    if (fault == Fault::HeldOpen) {
        QVERIFY(holder.open(QIODevice::ReadWrite));
        QCOMPARE(::flock(holder.handle(), LOCK_EX | LOCK_NB), 0);
    }
    const OrdinaryUser user;
    act();
    ::chmod(qPrintable(folder), 0700);
    if (fault == Fault::HeldOpen)
        QCOMPARE(holder.readAll(), QByteArray("former"));
}

void TestFileFaults::expectOutcome(Fault fault, const QString& title, const QString& text) const
{
    const bool isReplaced = fault != Fault::FolderTakesNone && fault != Fault::FolderGoesAway;
    QCOMPARE(mWatcher->boxes().size(), (isReplaced ? 1 : 0) + (fault == Fault::HeldOpen ? 0 : 1));
    if (fault == Fault::HeldOpen) {
        QVERIFY(!content().isEmpty());
        QVERIFY(content() != "former");
        return;
    }
    QCOMPARE(mWatcher->boxes().last().icon, QMessageBox::Warning);
    QCOMPARE(mWatcher->boxes().last().title, title);
    QCOMPARE(mWatcher->boxes().last().text, text);
    QCOMPARE(content(), isReplaced ? QByteArray("former") : QByteArray());
    const QDir folder(QFileInfo(file()).path());
    QCOMPARE(folder.entryList(QDir::Files | QDir::Hidden).size(), isReplaced ? 1 : 0);
}

void TestFileFaults::exportSettings()
{
    mWindow->findChild<QAction*>("actionSaveSettings")->trigger();
}

void TestFileFaults::exportThatFailsIsTold()
{
    mSuffix = ".orv";
    QFETCH(int, fault);
    QFETCH(QString, exportTitle);
    QFETCH(QString, exportText);
    underFault(Fault(fault), [&] {
        answerSaveDialog(mWindow.get(), file(), [&] {
            if (Fault(fault) == Fault::FolderGoesAway)
                QVERIFY(QDir(QFileInfo(file()).path()).removeRecursively());
        });
        exportSettings();
    });
    expectOutcome(Fault(fault), exportTitle, exportText);
}

// A recording of two results, from its menu entry to its button.
void TestFileFaults::saveRecording()
{
    whenOpened<OrvgCurveRecordingDialog>(mWindow.get(), [this](OrvgCurveRecordingDialog& dialog) {
        dialog.findChild<QPushButton*>("mRecordPb")->click();
        emit mWindow->measResultReceived(aMeasurement());
        emit mWindow->measResultReceived(aMeasurement().withEcho(0, 1200, 7));
        dialog.findChild<QPushButton*>("mStopPb")->click();
        emit mWindow->measResultReceived(aMeasurement());
        dialog.findChild<QPushButton*>("mSavePb")->click();
        dialog.reject();
    });
    mWindow->findChild<QAction*>("actionEnvelopCurveRecording")->trigger();
}

void TestFileFaults::recordingThatCannotBeSavedIsTold()
{
    mSuffix = ".csv";
    QFETCH(int, fault);
    underFault(Fault(fault), [&] {
        answerSaveDialog(mWindow.get(), file(), [&] {
            if (Fault(fault) == Fault::FolderGoesAway)
                QVERIFY(QDir(QFileInfo(file()).path()).removeRecursively());
        });
        saveRecording();
    });
    expectOutcome(Fault(fault), "File error", "Can't write to file.");
    if (Fault(fault) == Fault::HeldOpen)
        QCOMPARE(content(), QByteArray("1200,7\n"));
}

void TestFileFaults::acceptedConnectionThatIsNotStoredIsToldAndInUse()
{
    const QString store = mProfile->fileName();
    const std::uint16_t port = freeUdpPort();
    whenOpened<OrvgConnectionSettingsDialog>(
        mWindow.get(), [&](OrvgConnectionSettingsDialog& dialog) {
            dialog.findChild<QSpinBox*>("controlPort")->setValue(port);
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
    {
        const FullDisk disk(40);
        mWindow->findChild<QAction*>("actionConnection")->trigger();
    }
    QCOMPARE(mWatcher->boxes().size(), 1);
    QCOMPARE(mWatcher->boxes().first().icon, QMessageBox::Warning);
    QCOMPARE(mWatcher->boxes().first().title, QString("Settings not stored"));
    QCOMPARE(mWatcher->boxes().first().text,
             QString("The settings could not be written to\n%1").arg(store));
    QCOMPARE(mWindow->findChild<QSettings*>()->value("network/control_port").toInt(), int{port});
    QFile file(store);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(!file.readAll().contains("control_port=" + QByteArray::number(port)));
}

void TestFileFaults::storeThatFindsNoRoomAtTheCloseIsTold()
{
    QFile store(mProfile->fileName());
    QVERIFY(store.open(QIODevice::ReadOnly));
    const QByteArray former = store.readAll();
    store.close();
    QVERIFY(former.contains("[network]"));
    {
        const FullDisk disk(512);
        QVERIFY(mWindow->close());
        mWindow.reset();
    }
    QCOMPARE(mWatcher->boxes().size(), 1);
    QCOMPARE(mWatcher->boxes().first().text,
             QString("The settings could not be written to\n%1").arg(store.fileName()));
    QVERIFY(store.open(QIODevice::ReadOnly));
    QCOMPARE(store.readAll(), former);
}

QTEST_MAIN(TestFileFaults)
#include "test_file_faults.moc"
