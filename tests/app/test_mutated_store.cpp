#include "app/TarvioWindow.h"
#include "ecu/store/ConnectionSettings.h"
#include "ecu/store/ip_address.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/Mutator.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/TestClock.h"
#include "tests/support/window_faults.h"

#include <QDockWidget>
#include <QFileInfo>
#include <QSplitter>
#include <QtTest>

/// Stores that the program has written itself, damaged: each start has a window that can be used
/// and settings that can be used, and each close leaves a whole store behind.
class TestMutatedStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { mProfile.reset(); }

    void damagedFileIsSurvived_data();
    void damagedFileIsSurvived();
    void valueOfAnotherKindIsSurvived_data();
    void valueOfAnotherKindIsSurvived();

private:
    void putInPlace(const QByteArray& content) const;
    QByteArray content() const;
    QString faultOfARun() const;
    QString faultOfTheClosedStore() const;

    std::unique_ptr<TemporaryProfile> mProfile;
    QString mFile;
    QByteArray mSaved; // a whole store
};

namespace {

constexpr int kSeeds = 500;
constexpr int kSeedsInARow = 50;

const QStringList kKeys{"network/ecu_ip",
                        "network/ecu_subnet",
                        "network/ecu_gateway",
                        "network/control_port",
                        "network/host_ip",
                        "network/receive_port",
                        "network/fsp_port",
                        "main_window/geometry",
                        "main_window/state",
                        "main_window/live_view",
                        "main_window/freespaces_view",
                        "main_window/thresholds_view"};

QString faultOfAddress(const QString& address)
{
    const bool isUsable = address.isEmpty() || completeAddress(address) == address;
    return isUsable ? QString() : QStringLiteral("no address: ") + address;
}

QString faultOfConnection(const ConnectionSettings& connection)
{
    if (connection.link.controlPort == 0 || connection.link.receivePort == 0)
        return QStringLiteral("no port");
    return faultOfAddress(connection.link.ecuIp) + faultOfAddress(connection.ecuSubnet) +
           faultOfAddress(connection.ecuGateway) + faultOfAddress(connection.hostIp);
}

} // namespace

// A start, a change of the layout and a close.
void TestMutatedStore::initTestCase()
{
    init();
    mProfile->setNetwork(freeUdpPort(), freeUdpPort(), freeUdpPort());
    {
        TarvioWindow window;
        window.show();
        window.resize(900, 640);
        auto* dock = window.findChild<QDockWidget*>("mseqDock");
        dock->setFloating(true);
        dock->setGeometry(100, 100, 400, 300);
        QCoreApplication::processEvents();
        for (auto* splitter : window.findChildren<QSplitter*>())
            splitter->setSizes({splitter->sizes().first() - 25, splitter->sizes().last() + 25});
        QVERIFY(window.close());
    }
    mSaved = content();
    for (const QString& key : kKeys)
        QVERIFY2(mSaved.contains(key.section('/', 1).toLatin1() + '='), qPrintable(key));
}

void TestMutatedStore::init()
{
    mProfile = std::make_unique<TemporaryProfile>();
    mFile = mProfile->fileName();
    QVERIFY(QDir().mkpath(QFileInfo(mFile).path()));
}

void TestMutatedStore::putInPlace(const QByteArray& content) const
{
    QFile file(mFile);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(content), qint64{content.size()});
}

QByteArray TestMutatedStore::content() const
{
    QFile file(mFile);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// What was mutated may be the address: time stands still before the first probe.
QString TestMutatedStore::faultOfARun() const
{
    const TestClock noProbe;
    const MessageBoxWatcher watcher;
    TarvioWindow window;
    window.show();
    QCoreApplication::processEvents();
    const auto* store = window.findChild<QSettings*>();
    QString fault = faultOf(window) + faultOfConnection(settings::readConnection(*store));
    window.close();
    if (!watcher.boxes().isEmpty())
        fault += QStringLiteral("told: ") + watcher.boxes().first().text;
    return fault;
}

// Read anew, and not as Qt remembers it.
QString TestMutatedStore::faultOfTheClosedStore() const
{
    const QString copy = mFile + QStringLiteral(".copy.ini");
    QFile::remove(copy);
    if (!QFile::copy(mFile, copy))
        return QStringLiteral("no store");
    const QSettings store(copy, QSettings::IniFormat);
    for (const QString& key : kKeys.filter(QStringLiteral("main_window/"))) {
        if (store.value(key).toByteArray().isEmpty())
            return QStringLiteral("not stored: ") + key;
    }
    return store.childGroups().contains(QStringLiteral("network")) ? QString()
                                                                   : QStringLiteral("no network");
}

void TestMutatedStore::damagedFileIsSurvived_data()
{
    QTest::addColumn<quint32>("firstSeed");

    for (int seed = 0; seed < kSeeds; seed += kSeedsInARow)
        QTest::addRow("seeds from %d", seed) << quint32(seed);
}

void TestMutatedStore::damagedFileIsSurvived()
{
    QFETCH(quint32, firstSeed);
    for (quint32 seed = firstSeed; seed < firstSeed + kSeedsInARow; ++seed) {
        const QByteArray damaged = Mutator(seed)(mSaved);
        // A store that Qt has seen under this name would not be read again.
        cleanup();
        init();
        putInPlace(damaged);
        QString fault = faultOfARun();
        fault += faultOfTheClosedStore();
        QVERIFY2(fault.isEmpty(), qPrintable(QString("seed %1: %2").arg(seed).arg(fault)));
    }
}

void TestMutatedStore::valueOfAnotherKindIsSurvived_data()
{
    QTest::addColumn<QByteArray>("value");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("quoted nothing") << QByteArray("\"\"");
    QTest::newRow("number") << QByteArray("7");
    QTest::newRow("negative") << QByteArray("-1");
    QTest::newRow("above all numbers") << QByteArray("99999999999999999999");
    QTest::newRow("not a number") << QByteArray("nan");
    QTest::newRow("list") << QByteArray("1, 2, 3");
    QTest::newRow("nothing at all") << QByteArray("@Invalid()");
    QTest::newRow("rectangle") << QByteArray("@Rect(0 0 1 1)");
    QTest::newRow("no bytes") << QByteArray("@ByteArray()");
    QTest::newRow("unknown kind") << QByteArray("@Elsewhere(1)");
    QTest::newRow("broken kind") << QByteArray("@Variant(");
    QTest::newRow("true") << QByteArray("true");
    QTest::newRow("a text of 1 MB") << QByteArray(1'000'000, 'x');
    QTest::newRow("an address of 100 parts") << QByteArray("1.").repeated(100);
    QTest::newRow("bytes of 100 kB") << QByteArray("@ByteArray(") + QByteArray(100'000, 'x') + ')';
}

void TestMutatedStore::valueOfAnotherKindIsSurvived()
{
    QFETCH(QByteArray, value);
    QByteArray content;
    for (const char* group : {"network", "main_window"}) {
        content += QByteArray("[") + group + "]\n";
        for (const QString& key : kKeys.filter(QLatin1String(group) + '/'))
            content += key.section('/', 1).toLatin1() + '=' + value + '\n';
    }
    putInPlace(content);
    QCOMPARE(faultOfARun(), QString());
    QCOMPARE(faultOfTheClosedStore(), QString());
}

QTEST_MAIN(TestMutatedStore)
#include "test_mutated_store.moc"
