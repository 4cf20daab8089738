#include "app/TarvioWindow.h"
#include "tests/support/KilledChild.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/TestClock.h"
#include "tests/support/modal_dialogs.h"
#include "tests/views/recording/RecordingFixture.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QtTest>

#include <algorithm>
#include <sys/syscall.h>

/// A child has none of its parent's threads, and Qt 6 waits for them where it fills large areas.
class NoPainting : public QObject
{
public:
    bool eventFilter(QObject* /*receiver*/, QEvent* event) override
    {
        return event->type() == QEvent::Paint;
    }
};

/// The program is killed at every system call of everything that it writes: the file is then the
/// former one or the new one, to the last byte.
class TestKilledWhileWriting : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { mFolder = std::make_unique<QTemporaryDir>(); }
    void cleanupTestCase();

    void exportedSettings();
    void recordingSavedByItsButton();
    void longPlot();
    void settingsStoreAtTheClose();

private:
    using Write = std::function<void()>;

    QString path(const QString& name) const { return mFolder->filePath(name); }
    void killEverywhere(const QString& fileName, int stops, const Write& write);
    void expectSynchronisedBeforeTheRename(const std::vector<long>& systemCalls) const;

    std::unique_ptr<QTemporaryDir> mFolder;
    NoPainting mNoPainting;
    int mKills = 0;
};

namespace {

const QByteArray kFormer("former\n");

// A rename that has happened is the last change; some more stops behind it show that. A file dialog
// opens files of its own: what is written begins less than this before the rename.
constexpr int kStopsBehindTheRename = 10;
constexpr int kStopsOfWriting = 40;
constexpr int kStopsOfAll = 10'000;

void write(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(content), qint64{content.size()});
}

QByteArray contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

bool isRename(long systemCall)
{
    return systemCall == SYS_rename || systemCall == SYS_renameat || systemCall == SYS_renameat2;
}

bool isSynchronisation(long systemCall)
{
    return systemCall == SYS_fsync || systemCall == SYS_fdatasync;
}

bool isWrite(long systemCall)
{
    return systemCall == SYS_write || systemCall == SYS_pwrite64 || systemCall == SYS_writev;
}

// The stop behind the last rename.
int stopBehindTheRename(const std::vector<long>& systemCalls)
{
    const auto last = std::find_if(systemCalls.rbegin(), systemCalls.rend(), isRename);
    return 2 * int(systemCalls.rend() - last) + 1;
}

// Children of one process choose the same random names for what is not complete yet, and would have
// to find others for what was left of the former one.
void removeHalves(const QString& fileName)
{
    const QFileInfo whole(fileName);
    for (const QFileInfo& file : QDir(whole.path()).entryInfoList({whole.fileName() + ".??????"}))
        QFile::remove(file.filePath());
}

void answerSaveDialog(QObject* context, const QString& fileName)
{
    whenOpened<QFileDialog>(context, [fileName](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(fileName);
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
    });
}

} // namespace

void TestKilledWhileWriting::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    qApp->installEventFilter(&mNoPainting);
}

void TestKilledWhileWriting::cleanupTestCase()
{
    qInfo("killed %d times", mKills);
    QVERIFY(mKills >= 100);
}

// On the disk before it takes the former file's place: a machine that loses its power keeps one.
void TestKilledWhileWriting::expectSynchronisedBeforeTheRename(
    const std::vector<long>& systemCalls) const
{
    const auto rename = std::find_if(systemCalls.rbegin(), systemCalls.rend(), isRename);
    QVERIFY(rename != systemCalls.rend());
    const auto synchronisation = std::find_if(rename, systemCalls.rend(), isSynchronisation);
    const auto lastWrite = std::find_if(rename, systemCalls.rend(), isWrite);
    QVERIFY(lastWrite != systemCalls.rend());
    QVERIFY(synchronisation < lastWrite);
}

void TestKilledWhileWriting::killEverywhere(const QString& fileName, int stops,
                                            const Write& writeIt)
{
    const QByteArray former = contentOf(fileName);
    const std::vector<long> all = KilledChild::whole(writeIt).systemCalls;
    const QByteArray latest = contentOf(fileName);
    QVERIFY(latest != former);
    expectSynchronisedBeforeTheRename(all);
    int formerFiles = 0;
    int latestFiles = 0;
    // What is left of the killed ones, a lock or a folder, makes the way of the next ones longer.
    const int first = std::max(0, stopBehindTheRename(all) - stops);
    for (int stop = first; latestFiles < kStopsBehindTheRename && stop < kStopsOfAll; ++stop) {
        removeHalves(fileName);
        for (const QString& scratch :
             QDir(mFolder->path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            QDir(path(scratch)).removeRecursively();
        if (contentOf(fileName) != former)
            write(fileName, former);
        mKills += KilledChild::killedAtStop(stop, writeIt).wasKilled ? 1 : 0;
        const QByteArray content = contentOf(fileName);
        formerFiles += content == former ? 1 : 0;
        latestFiles += content == latest ? 1 : 0;
        QVERIFY2(formerFiles + latestFiles == stop - first + 1, qPrintable(QString::number(stop)));
    }
    QVERIFY2(formerFiles > 0 && latestFiles > 0,
             qPrintable(QString("%1 former, %2 latest").arg(formerFiles).arg(latestFiles)));
}

void TestKilledWhileWriting::exportedSettings()
{
    const TestClock noProbe;
    const TemporaryProfile profile;
    TarvioWindow window;
    write(path("a.orv"), kFormer);
    killEverywhere(path("a.orv"), kStopsOfWriting, [&] {
        const MessageBoxWatcher watcher(QMessageBox::Yes);
        answerSaveDialog(&window, path("a.orv"));
        window.findChild<QAction*>("actionSaveSettings")->trigger();
    });
}

void TestKilledWhileWriting::recordingSavedByItsButton()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1);
    fixture.inject(2, aMeasurement().withEcho(0, 1200, 7));
    fixture.stop()->click();
    fixture.inject(1);
    fixture.watcher.setAnswer(QMessageBox::Yes);
    write(path("a.csv"), kFormer);
    killEverywhere(path("a.csv"), kStopsOfWriting, [&] {
        answerSaveDialog(&fixture.dialog, path("a.csv"));
        fixture.save()->click();
    });
    QCOMPARE(contentOf(path("a.csv")), QByteArray("1200,7,7\n"));
}

// Longer than any buffer on the way.
void TestKilledWhileWriting::longPlot()
{
    OrvgPlotWidget plot;
    for (int time = 1; time <= 25'000; ++time)
        plot.addData({{.magnitude = 7, .timeOfFlight = std::uint16_t(time)}});
    write(path("a.csv"), kFormer);
    killEverywhere(path("a.csv"), kStopsOfAll, [&] { plot.save(path("a.csv")); });
    QVERIFY(contentOf(path("a.csv")).size() > 150'000);
}

// What a killed close leaves lying about, Qt's lock file for one, does not keep the next from
// storing.
void TestKilledWhileWriting::settingsStoreAtTheClose()
{
    const TestClock noProbe;
    const TemporaryProfile profile;
    qputenv("TMPDIR", mFolder->path().toLocal8Bit());
    const QString store = profile.fileName();
    QVERIFY(QDir().mkpath(QFileInfo(store).path()));
    write(store, "[network]\necu_ip=127.0.0.1\n");
    TarvioWindow window;
    window.show();
    killEverywhere(store, kStopsOfAll, [&] { window.close(); });
}

QTEST_MAIN(TestKilledWhileWriting)
#include "test_killed_while_writing.moc"
