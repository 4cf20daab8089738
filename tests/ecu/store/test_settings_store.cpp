#include "ecu/store/settings_store.h"
#include "tests/support/TemporaryProfile.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QtTest>

#include <sys/stat.h>

class TestSettingsStore : public QObject
{
    Q_OBJECT

private slots:
    void init() { mProfile = std::make_unique<TemporaryProfile>(); }
    void cleanup() { mProfile.reset(); }

    void storeIsTheUsersIniFile();
    void filesOfTheOrganisationAreNotRead();
    void groupIsFoundByItsNameAlone();
    void whatCannotBeReadIsLeftAlone_data();
    void whatCannotBeReadIsLeftAlone();
    void longestStoreIsStillRead();
    void hostileValueKeepsNoStoreFromOpening_data();
    void hostileValueKeepsNoStoreFromOpening();

private:
    QString storeFile()
    {
        const QString name = mProfile->fileName();
        QDir().mkpath(QFileInfo(name).path());
        return name;
    }
    static void create(const QString& kind, const QString& name);
    void write(const QByteArray& content)
    {
        QFile file(storeFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64{content.size()});
    }
    std::unique_ptr<QSettings> openStore()
    {
        return std::unique_ptr<QSettings>(settings::openStore(nullptr));
    }

    std::unique_ptr<TemporaryProfile> mProfile;
};

void TestSettingsStore::storeIsTheUsersIniFile()
{
    mProfile->setValue("network/ecu_ip", "10.0.0.1");
    const auto store = openStore();
    QCOMPARE(store->fileName(), mProfile->fileName());
    QVERIFY(store->fileName().endsWith(QStringLiteral("/maltrex/tarvio.ini")));
    QCOMPARE(store->value("network/ecu_ip").toString(), QStringLiteral("10.0.0.1"));
    store->setValue("network/ecu_ip", "10.0.0.2");
    store->sync();
    QCOMPARE(mProfile->value("network/ecu_ip").toString(), QStringLiteral("10.0.0.2"));
}

// A file that other programs share could hold anything, and could be no file at all.
void TestSettingsStore::filesOfTheOrganisationAreNotRead()
{
    mProfile->setValue("network/ecu_ip", "10.0.0.1");
    const QString shared = QFileInfo(mProfile->fileName()).path() + ".ini";
    QCOMPARE(::mkfifo(qPrintable(shared), 0600), 0);
    QCOMPARE(openStore()->value("network/ecu_ip").toString(), QStringLiteral("10.0.0.1"));
    QVERIFY(QFile::remove(shared));
    QSettings(shared, QSettings::IniFormat).setValue("network/ecu_subnet", "10.0.0.9");
    QCOMPARE(openStore()->value("network/ecu_subnet"), QVariant());
}

void TestSettingsStore::groupIsFoundByItsNameAlone()
{
    mProfile->setValue("network_imported/ecu_ip", "10.0.0.1");
    const auto store = openStore();
    QVERIFY(!settings::hasGroup(*store, QStringLiteral("network")));
    QVERIFY(settings::hasGroup(*store, QStringLiteral("network_imported")));
}

void TestSettingsStore::whatCannotBeReadIsLeftAlone_data()
{
    QTest::addColumn<QString>("kind");

    for (const char* kind : {"folder", "pipe", "endless device", "file of a gigabyte"})
        QTest::newRow(kind) << kind;
}

void TestSettingsStore::create(const QString& kind, const QString& name)
{
    QFile file(name);
    if (kind == "folder")
        QVERIFY(QDir().mkpath(name));
    else if (kind == "pipe")
        QCOMPARE(::mkfifo(qPrintable(name), 0600), 0);
    else if (kind == "endless device")
        QVERIFY(QFile::link(QStringLiteral("/dev/zero"), name));
    else
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(1'000'000'000));
}

void TestSettingsStore::whatCannotBeReadIsLeftAlone()
{
    QFETCH(QString, kind);
    const QString name = storeFile();
    create(kind, name);
    const auto lookOf = [](const QFileInfo& file) {
        return QVariantList{file.isFile(), file.isDir(), file.isSymLink(), file.size()};
    };
    const QVariantList before = lookOf(QFileInfo(name));
    const auto store = openStore();
    QVERIFY(store->childGroups().isEmpty());
    store->setValue("network/ecu_ip", "10.0.0.1");
    QVERIFY(settings::hasGroup(*store, QStringLiteral("network")));
    store->sync();
    QCOMPARE(store->value("network/ecu_ip").toString(), QStringLiteral("10.0.0.1"));
    QCOMPARE(lookOf(QFileInfo(name)), before);
}

void TestSettingsStore::longestStoreIsStillRead()
{
    const QByteArray group("[network]\necu_ip=10.0.0.1\n;");
    write(group + QByteArray(int(settings::kMaxStoreSize) - group.size(), 'x'));
    QCOMPARE(openStore()->value("network/ecu_ip").toString(), QStringLiteral("10.0.0.1"));
}

// Qt reads such a value into the memory that it claims to need.
void TestSettingsStore::hostileValueKeepsNoStoreFromOpening_data()
{
    QTest::addColumn<QByteArray>("value");

    QTest::newRow("list") << QByteArray("\\0\\0\\0\\x9\\x7f\\xff\\xff\\xff");
    QTest::newRow("list of texts") << QByteArray("\\0\\0\\0\\xb\\x7f\\xff\\xff\\xff");
    QTest::newRow("map") << QByteArray("\\0\\0\\0\\x8\\x7f\\xff\\xff\\xff");
    QTest::newRow("text") << QByteArray("\\0\\0\\0\\xa\\x7f\\xff\\xff\\xfe");
    QTest::newRow("bytes") << QByteArray("\\0\\0\\0\\xc\\x7f\\xff\\xff\\xff");
    QTest::newRow("unknown type") << QByteArray("\\0\\0\\xff\\xff");
}

void TestSettingsStore::hostileValueKeepsNoStoreFromOpening()
{
    QFETCH(QByteArray, value);
    write("[main_window]\ngeometry=\"@Variant(" + value + ")\"\n");
    const auto store = openStore();
    QVERIFY(store);
    QCOMPARE(store->value("main_window/geometry").toByteArray(), QByteArray());
}

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "test_settings_store.moc"
