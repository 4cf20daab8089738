#include "app/TarvioWindow.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/Mutator.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/TestClock.h"
#include "tests/support/window_faults.h"

#include <QDockWidget>
#include <QFileInfo>
#include <QToolBar>
#include <QtTest>

#include <sys/stat.h>

/// Whatever the settings store holds, the program starts with a window that can be worked with.
class TestDamagedStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { mProfile.reset(); }

    void damagedStateLeavesTheWindowUsable_data();
    void damagedStateLeavesTheWindowUsable();
    void splitterStateThatEndedTheProgramIsLeftAlone_data();
    void splitterStateThatEndedTheProgramIsLeftAlone();
    void endlessToolBarsDoNotHoldTheWindow();
    void layoutThatNeedsMoreRoomThanThereIsIsLeftAlone();
    void valueOfAnotherKindIsLeftAlone_data();
    void valueOfAnotherKindIsLeftAlone();
    void junkInTheFileIsLeftAlone_data();
    void junkInTheFileIsLeftAlone();
    void storeThatIsNoFileIsLeftAlone_data();
    void storeThatIsNoFileIsLeftAlone();
    void storeThatCannotBeWrittenIsLeftAloneAndTold();

private:
    void restore(const QString& key, const QVariant& value)
    {
        mProfile->setValue("main_window/" + key, value);
    }
    QString faultOfTheNextStart();

    std::unique_ptr<TemporaryProfile> mProfile;
    QVector<QVariantMap> mSaved; // of several layouts, by key
};

namespace {

const QStringList kKeys{"geometry", "state", "live_view", "freespaces_view", "thresholds_view"};

void useLoopback(TemporaryProfile& profile)
{
    profile.setNetwork(freeUdpPort(), freeUdpPort(), freeUdpPort());
}

QVariantMap stateIn(const TemporaryProfile& profile)
{
    QVariantMap state;
    for (const QString& key : kKeys)
        state[key] = profile.value("main_window/" + key);
    return state;
}

// A start, a change of the layout and a close.
template<typename Arrange>
QVariantMap stateAfter(Arrange arrange)
{
    TemporaryProfile profile;
    useLoopback(profile);
    TarvioWindow window;
    window.show();
    arrange(window);
    QCoreApplication::processEvents();
    window.close();
    return stateIn(profile);
}

} // namespace

void TestDamagedStore::initTestCase()
{
    mSaved << stateAfter([](TarvioWindow& window) { window.resize(700, 500); });
    mSaved << stateAfter([](TarvioWindow& window) {
        auto* dock = window.findChild<QDockWidget*>("mseqDock");
        dock->setFloating(true);
        dock->setGeometry(100, 100, 300, 200);
        window.findChild<QDockWidget*>("thresholdDock")->close();
        window.resize(700, 500);
    });
    mSaved << stateAfter([](TarvioWindow& window) {
        window.addDockWidget(Qt::LeftDockWidgetArea,
                             window.findChild<QDockWidget*>("sensorPositionDock"));
        window.addToolBar(Qt::LeftToolBarArea, window.findChild<QToolBar*>());
        window.showMaximized();
    });
}

void TestDamagedStore::init()
{
    mProfile = std::make_unique<TemporaryProfile>();
    useLoopback(*mProfile);
}

QString TestDamagedStore::faultOfTheNextStart()
{
    TarvioWindow window;
    window.show();
    QCoreApplication::processEvents();
    return faultOf(window);
}

void TestDamagedStore::damagedStateLeavesTheWindowUsable_data()
{
    QTest::addColumn<int>("layout");
    QTest::addColumn<QString>("key");
    QTest::addColumn<quint32>("seed");

    for (int layout = 0; layout < mSaved.size(); ++layout) {
        for (const QString& key : kKeys)
            QTest::addRow("%s of layout %d", qPrintable(key), layout)
                << layout << key << quint32(layout + 3 * kKeys.indexOf(key));
    }
}

// Most damage is seen; what is not seen has to be restored into something usable.
void TestDamagedStore::damagedStateLeavesTheWindowUsable()
{
    QFETCH(int, layout);
    QFETCH(QString, key);
    QFETCH(quint32, seed);
    const QVariantMap saved = mSaved.at(layout);
    for (const QString& other : kKeys)
        restore(other, saved[other]);
    QCOMPARE(faultOfTheNextStart(), QString());
    Mutator mutate(seed);
    for (int round = 0; round < 20; ++round) {
        const QByteArray damaged = mutate(saved[key].toByteArray());
        restore(key, damaged);
        const QString fault = faultOfTheNextStart();
        QVERIFY2(fault.isEmpty(), qPrintable(fault + ' ' + damaged.toHex()));
    }
}

void TestDamagedStore::splitterStateThatEndedTheProgramIsLeftAlone_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<qint32>("number");

    QTest::newRow("endless sections") << 8 << 0x7FFFFFFF;
    QTest::newRow("more than any memory") << 8 << 0x20000000;
    QTest::newRow("more than most memories") << 8 << 0x10000000;
    QTest::newRow("endless size") << 12 << 0x7FFFFFFF;
    QTest::newRow("endless handle") << 21 << 0x7FFFFFFF;
    QTest::newRow("handle of a thousand pixels") << 21 << 1000;
    QTest::newRow("other orientation") << 26 << 2;
}

void TestDamagedStore::splitterStateThatEndedTheProgramIsLeftAlone()
{
    QFETCH(int, offset);
    QFETCH(qint32, number);
    for (const char* key : {"live_view", "freespaces_view", "thresholds_view"}) {
        QByteArray state = mSaved.first()[key].toByteArray();
        qToBigEndian(number, state.data() + offset);
        restore(key, state);
    }
    QCOMPARE(faultOfTheNextStart(), QString());
}

// Qt reads on for as many tool bars as there are said to be, whether there are bytes or not.
void TestDamagedStore::endlessToolBarsDoNotHoldTheWindow()
{
    QByteArray state = mSaved.first()["state"].toByteArray();
    const auto toolBars = state.indexOf(QByteArray::fromHex("fc00000001"));
    QVERIFY(toolBars > 0);
    qToBigEndian(0x7FFFFFFF, state.data() + toolBars + 9);
    restore("state", state);
    QCOMPARE(faultOfTheNextStart(), QString());
}

// All docks to the left of the views, as a single damaged number has it.
void TestDamagedStore::layoutThatNeedsMoreRoomThanThereIsIsLeftAlone()
{
    QByteArray state = mSaved.first()["state"].toByteArray();
    const int area = 13;
    QCOMPARE(int(state.at(area + 3)), 3);
    qToBigEndian(0, state.data() + area);
    restore("state", state);
    QCOMPARE(faultOfTheNextStart(), QString());
}

void TestDamagedStore::valueOfAnotherKindIsLeftAlone_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("empty") << QVariant(QByteArray());
    QTest::newRow("number") << QVariant(7);
    QTest::newRow("list") << QVariant(QStringList{"a", "b"});
    QTest::newRow("map") << QVariant(QVariantMap{{"a", 1}});
    QTest::newRow("text of a megabyte") << QVariant(QString(1'000'000, 'x'));
    // Qt takes each byte of them a step to write, and a sanitizer copies all at each step.
    QTest::newRow("many bytes") << QVariant(QByteArray(50'000, '\xff'));
}

void TestDamagedStore::valueOfAnotherKindIsLeftAlone()
{
    QFETCH(QVariant, value);
    for (const QString& key : kKeys)
        restore(key, value);
    QCOMPARE(faultOfTheNextStart(), QString());
}

void TestDamagedStore::junkInTheFileIsLeftAlone_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("zeros") << QByteArray(100'000, '\0');
    QTest::newRow("brackets") << QByteArray(100'000, '[');
    QTest::newRow("one line") << QByteArray(1'000'000, 'x');
    QTest::newRow("many groups") << QByteArray("[a]\nb=1\n").repeated(10'000);
    QTest::newRow("hostile list") << QByteArray(
        "[main_window]\nstate=\"@Variant(\\0\\0\\0\\x9\\x7f\\xff\\xff\\xff)\"\n");
    QTest::newRow("hostile bytes") << QByteArray(
        "[main_window]\nlive_view=@ByteArray(\\0\\0\\0\\xff\\0\\0\\0\\x1\\x7f\\xff)\n");
}

// The junk leaves the default address in place, so time stands still before the first probe.
void TestDamagedStore::junkInTheFileIsLeftAlone()
{
    QFETCH(QByteArray, content);
    const TestClock noProbe;
    QFile file(mProfile->fileName());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
    file.close();
    QCOMPARE(faultOfTheNextStart(), QString());
}

void TestDamagedStore::storeThatIsNoFileIsLeftAlone_data()
{
    QTest::addColumn<QString>("kind");

    QTest::newRow("folder") << "folder";
    QTest::newRow("pipe") << "pipe";
    QTest::newRow("device") << "device";
}

void TestDamagedStore::storeThatIsNoFileIsLeftAlone()
{
    QFETCH(QString, kind);
    const QString name = mProfile->fileName();
    QVERIFY(QFile::remove(name));
    if (kind == "folder")
        QVERIFY(QDir().mkpath(name));
    else if (kind == "pipe")
        QCOMPARE(::mkfifo(qPrintable(name), 0600), 0);
    else
        QVERIFY(QFile::link(QStringLiteral("/dev/zero"), name));
    const TestClock noProbe; // of the default address
    TarvioWindow window;
    window.show();
    QCOMPARE(faultOf(window), QString());
    QCOMPARE(window.findChild<QSettings*>()->value("network/ecu_ip").toString(),
             QStringLiteral("192.168.1.3"));
    const MessageBoxWatcher watcher;
    QVERIFY(window.close());
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().text,
             QStringLiteral("The settings could not be written to\n%1").arg(name));
    QVERIFY(!QFileInfo(name).isFile());
}

void TestDamagedStore::storeThatCannotBeWrittenIsLeftAloneAndTold()
{
    const QString name = mProfile->fileName();
    const QString folder = QFileInfo(name).path();
    QCOMPARE(::chmod(qPrintable(name), 0400), 0);
    QCOMPARE(::chmod(qPrintable(folder), 0500), 0);
    const MessageBoxWatcher watcher;
    {
        const OrdinaryUser user;
        TarvioWindow window;
        window.show();
        QCOMPARE(faultOf(window), QString());
        QVERIFY(watcher.boxes().isEmpty());
        QVERIFY(window.close());
    }
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().text,
             QStringLiteral("The settings could not be written to\n%1").arg(name));
    ::chmod(qPrintable(folder), 0700);
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    QVERIFY(content.contains("[network]"));
    QVERIFY(!content.contains("[main_window]"));
}

QTEST_MAIN(TestDamagedStore)
#include "test_damaged_store.moc"
