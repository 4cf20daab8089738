#include "ecu/qt_compatibility.h"
#include "ecu/store/ini_format.h"
#include "ecu/store/settings_store.h"
#include "tests/support/FullDisk.h"
#include "tests/support/OrdinaryUser.h"
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

    void valuesOfAllKindsComeBack();
    void fullDiskKeepsTheFormerStore_data();
    void fullDiskKeepsTheFormerStore();
    void diskThatFillsUpAtTheLastBytesIsSeen();
    void storeThatOpensNoFileIsNotWritten();
    void roomThatComesBackIsUsed();
    void readOnlyFileIsNotWritten();
    void valuesThatAnotherProgramWroteMeanwhileStay();
    void hostileValueThatComesMeanwhileIsLeftOut();

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
    // Another store on the file would write what waits in the first: the name has to be known.
    static QByteArray contentOf(const QString& name)
    {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
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

void TestSettingsStore::valuesOfAllKindsComeBack()
{
    const QVariantMap values{{"network/ecu_ip", "10.0.0.1"},
                             {"network/control_port", 50002},
                             {"main_window/state", QByteArray("\0\xff\n\"=;%", 7)},
                             {"main_window/geometry", QByteArray()},
                             {"General/key", QString::fromUtf8("\xc3\xa4 \\ \n,")},
                             {"top level", QStringList{"a", "b"}},
                             {"a/b/c", QRect(1, 2, 3, 4)}};
    {
        const auto store = openStore();
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            store->setValue(value.key(), value.value());
        QVERIFY(settings::writeStore(*store));
    }
    // Under another name Qt cannot know what it has written.
    const QString other = QFileInfo(storeFile()).path() + "/other.ini";
    QVERIFY(QFile::copy(storeFile(), other));
    const QSettings read(other, QSettings::IniFormat);
    QCOMPARE(read.allKeys().size(), values.size());
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        QVariant found = read.value(value.key());
        QVERIFY2(qt_compatibility::convertToTypeOf(value.value(), found), qPrintable(value.key()));
        QCOMPARE(found, value.value());
    }
}

void TestSettingsStore::fullDiskKeepsTheFormerStore_data()
{
    QTest::addColumn<int>("room");

    // The file of one address is 26 bytes long, Qt's lock file less than 200.
    QTest::newRow("for nothing") << 0;
    QTest::newRow("for a lock file") << 300;
    QTest::newRow("for a part") << 600;
    QTest::newRow("for all but one byte") << 26 + 1016 - 1;
}

void TestSettingsStore::fullDiskKeepsTheFormerStore()
{
    QFETCH(int, room);
    const QString name = storeFile();
    const auto store = openStore();
    store->setValue("network/ecu_ip", "10.0.0.1");
    QVERIFY(settings::writeStore(*store));
    const QByteArray former("[network]\necu_ip=10.0.0.1\n");
    QCOMPARE(contentOf(name), former);
    store->setValue("network/long", QString(1010, 'x'));
    {
        const FullDisk disk{rlim_t(room)};
        QVERIFY(!settings::writeStore(*store));
        store->sync();
    }
    QCOMPARE(contentOf(name), former);
    QCOMPARE(store->value("network/long").toString().size(), 1010);
}

// As much as it takes before it has to write.
void TestSettingsStore::diskThatFillsUpAtTheLastBytesIsSeen()
{
    QFile full(QStringLiteral("/dev/full"));
    QVERIFY(full.open(QIODevice::WriteOnly));
    QVERIFY(!settings::writeIni(full, {{"network/ecu_ip", "10.0.0.1"}}));
}

void TestSettingsStore::storeThatOpensNoFileIsNotWritten()
{
    const QString name = storeFile();
    create("pipe", name);
    const auto store = openStore();
    QVERIFY(settings::writeStore(*store));
    store->setValue("network/ecu_ip", "10.0.0.1");
    QVERIFY(!settings::writeStore(*store));
    QCOMPARE(settings::storeFileName(), name);
}

void TestSettingsStore::roomThatComesBackIsUsed()
{
    const QString name = storeFile();
    const auto store = openStore();
    store->setValue("network/long", QString(1000, 'x'));
    {
        const FullDisk disk(300);
        QVERIFY(!settings::writeStore(*store));
        store->sync();
        QCOMPARE(store->status(), QSettings::AccessError);
    }
    QVERIFY(settings::writeStore(*store));
    QVERIFY(contentOf(name).contains("xxx"));
}

void TestSettingsStore::readOnlyFileIsNotWritten()
{
    write("[network]\necu_ip=10.0.0.1\n");
    QCOMPARE(::chmod(qPrintable(storeFile()), 0400), 0);
    const OrdinaryUser user;
    const QString name = storeFile();
    const auto store = openStore();
    QVERIFY(settings::writeStore(*store));
    store->setValue("network/ecu_ip", "10.0.0.2");
    QVERIFY(!settings::writeStore(*store));
    QCOMPARE(contentOf(name), QByteArray("[network]\necu_ip=10.0.0.1\n"));
}

void TestSettingsStore::valuesThatAnotherProgramWroteMeanwhileStay()
{
    write("[network]\necu_ip=10.0.0.1\n");
    const QString name = storeFile();
    const auto store = openStore();
    write("[network]\necu_ip=10.0.0.1\nhost_ip=10.0.0.3\n");
    store->setValue("network/ecu_ip", "10.0.0.2");
    QVERIFY(settings::writeStore(*store));
    QCOMPARE(contentOf(name), QByteArray("[network]\necu_ip=10.0.0.2\nhost_ip=10.0.0.3\n"));
}

void TestSettingsStore::hostileValueThatComesMeanwhileIsLeftOut()
{
    write("[network]\necu_ip=10.0.0.1\n");
    const QString name = storeFile();
    const auto store = openStore();
    write("[main_window]\ngeometry=\"@Variant(\\0\\0\\0\\x9\\x7f\\xff\\xff\\xff)\"\n");
    store->setValue("network/ecu_ip", "10.0.0.2");
    store->sync();
    QVERIFY2(contentOf(name).endsWith("[network]\necu_ip=10.0.0.2\n"), contentOf(name));
    QVERIFY2(!contentOf(name).contains("@Variant"), contentOf(name));
    // What is left of it in Qt 6 is an empty list; in Qt 5, nothing, and that is told.
    const bool isKept = contentOf(name).contains("@Invalid()");
    QCOMPARE(store->status(), isKept ? QSettings::NoError : QSettings::FormatError);
}

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "test_settings_store.moc"
