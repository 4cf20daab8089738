#include "app/EcuSynchronisation.h"
#include "tests/support/MessageBoxWatcher.h"

#include <QMainWindow>
#include <QSignalSpy>
#include <QStatusBar>
#include <QtTest>

class TestEcuSynchronisation : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void readingAsksFirst();
    void answerNoReadsNothing();
    void readingAttemptsEveryPartInOrder();
    void failuresOfReadingAreListedOneALine();
    void successOfReadingStandsInTheStatusBar();
    void automaticReadingTellsNothing_data();
    void automaticReadingTellsNothing();
    void transmittingAsksNothing();
    void failureOfOnePartDoesNotKeepTheOthersFromBeingWritten();
    void waitCursorShowsWhileTheEcuIsTalkedToOnly();

private:
    ConfigurationPart part(const QString& name);
    EcuSynchronisation synchronisation();

    QMainWindow mWindow;
    QStringList mCalls;
    QStringList mFailing;
    bool mWaitCursorShown = true;
};

void TestEcuSynchronisation::init()
{
    mCalls.clear();
    mFailing.clear();
    mWindow.statusBar()->clearMessage();
}

ConfigurationPart TestEcuSynchronisation::part(const QString& name)
{
    const auto call = [this, name](const QString& what) {
        mCalls.append(what + name);
        const QCursor* cursor = QApplication::overrideCursor();
        mWaitCursorShown = mWaitCursorShown && cursor && cursor->shape() == Qt::WaitCursor;
        return !mFailing.contains(name);
    };
    return {.element = name,
            .errorName = name,
            .writeXml = {},
            .readFromXml = {},
            .ecu = EcuTransfer{.name = name,
                               .read = [call] { return call(QStringLiteral("read ")); },
                               .write = [call] { return call(QStringLiteral("write ")); }}};
}

EcuSynchronisation TestEcuSynchronisation::synchronisation()
{
    return {{part(QStringLiteral("a")), part(QStringLiteral("b")), part(QStringLiteral("c"))},
            &mWindow};
}

void TestEcuSynchronisation::readingAsksFirst()
{
    const MessageBoxWatcher watcher(QMessageBox::Yes);
    synchronisation().readInteractively();
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().icon, QMessageBox::Information);
    QCOMPARE(watcher.boxes().first().title, QStringLiteral("Sync from ECU"));
    QCOMPARE(watcher.boxes().first().text,
             QStringLiteral("Current changes would be overwritten. Are You sure?"));
    QCOMPARE(watcher.boxes().first().buttons, QMessageBox::Yes | QMessageBox::No);
}

void TestEcuSynchronisation::answerNoReadsNothing()
{
    const MessageBoxWatcher watcher(QMessageBox::No);
    synchronisation().readInteractively();
    QVERIFY(mCalls.isEmpty());
    QCOMPARE(mWindow.statusBar()->currentMessage(), QString());
}

void TestEcuSynchronisation::readingAttemptsEveryPartInOrder()
{
    mFailing = QStringList{"a"};
    const MessageBoxWatcher watcher(QMessageBox::Yes);
    synchronisation().readInteractively();
    QCOMPARE(mCalls, QStringList({"read a", "read b", "read c"}));
}

void TestEcuSynchronisation::failuresOfReadingAreListedOneALine()
{
    mFailing = QStringList{"a", "b", "c"};
    const MessageBoxWatcher watcher(QMessageBox::Yes);
    synchronisation().readInteractively();
    QCOMPARE(watcher.boxes().size(), 2);
    const MessageBoxWatcher::Box& box = watcher.boxes().last();
    QCOMPARE(box.icon, QMessageBox::Warning);
    QCOMPARE(box.title, QStringLiteral("Communication error"));
    QCOMPARE(box.text, QStringLiteral("Some communication errors are detected during reading \n\n"
                                      "a\nb\nc"));
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(mWindow.statusBar()->currentMessage(), QString());
}

void TestEcuSynchronisation::successOfReadingStandsInTheStatusBar()
{
    const MessageBoxWatcher watcher(QMessageBox::Yes);
    synchronisation().readInteractively();
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(mWindow.statusBar()->currentMessage(), QStringLiteral("ECU data sync: SUCCESS!"));
}

void TestEcuSynchronisation::automaticReadingTellsNothing_data()
{
    QTest::addColumn<QStringList>("failing");

    QTest::newRow("all read") << QStringList();
    QTest::newRow("nothing read") << QStringList{"a", "b", "c"};
}

void TestEcuSynchronisation::automaticReadingTellsNothing()
{
    QFETCH(QStringList, failing);
    mFailing = failing;
    const MessageBoxWatcher watcher;
    synchronisation().readSilently();
    QCOMPARE(mCalls, QStringList({"read a", "read b", "read c"}));
    QVERIFY(watcher.boxes().isEmpty());
    QCOMPARE(mWindow.statusBar()->currentMessage(), QString());
}

void TestEcuSynchronisation::transmittingAsksNothing()
{
    const MessageBoxWatcher watcher;
    synchronisation().transmit();
    QCOMPARE(mCalls, QStringList({"write a", "write b", "write c"}));
    QVERIFY(watcher.boxes().isEmpty());
    QCOMPARE(mWindow.statusBar()->currentMessage(),
             QStringLiteral("Setting successfully transmitted to ECU!"));
}

void TestEcuSynchronisation::failureOfOnePartDoesNotKeepTheOthersFromBeingWritten()
{
    mFailing = QStringList{"b"};
    const MessageBoxWatcher watcher;
    synchronisation().transmit();
    QCOMPARE(mCalls, QStringList({"write a", "write b", "write c"}));
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().title, QStringLiteral("Communication error"));
    QCOMPARE(watcher.boxes().first().text,
             QStringLiteral("Some communication errors are detected during transmitting. \n\nb"));
}

void TestEcuSynchronisation::waitCursorShowsWhileTheEcuIsTalkedToOnly()
{
    mWaitCursorShown = true;
    synchronisation().readSilently();
    synchronisation().transmit();
    QVERIFY(mWaitCursorShown);
    QVERIFY(!QApplication::overrideCursor());
}

QTEST_MAIN(TestEcuSynchronisation)
#include "test_ecu_synchronisation.moc"
