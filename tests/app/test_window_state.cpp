#include "app/WindowState.h"
#include "tests/support/TemporaryProfile.h"

#include <QSettings>
#include <QtTest>

class TestWindowState : public QObject
{
    Q_OBJECT

private slots:
    void storeWithoutStateRestoresNothing();
    void partsComeBackInTheOrderTheyWereAdded();
    void partWhoseKeyIsMissingIsLeftAlone();
    void partThatIsNotSoundIsLeftAlone();
    void valueOfAnotherTypeIsLeftAlone_data();
    void valueOfAnotherTypeIsLeftAlone();
};

namespace {

struct Recorder
{
    QStringList restored;

    WindowState::Part part(const QString& key, const QByteArray& saved)
    {
        return {.key = key,
                .save = [saved] { return saved; },
                .isSound = [](const QByteArray& state) { return !state.startsWith("damaged"); },
                .restore =
                    [this, key](const QByteArray& bytes) {
                        restored << key + '=' + QString::fromLatin1(bytes);
                    }};
    }
};

QSettings openStore()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, "maltrex", "tarvio");
}

} // namespace

void TestWindowState::storeWithoutStateRestoresNothing()
{
    TemporaryProfile profile;
    QSettings store = openStore();
    Recorder recorder;
    WindowState state;
    state.add(recorder.part("geometry", "g"));
    state.restore(store);
    QVERIFY(recorder.restored.isEmpty());
}

void TestWindowState::partsComeBackInTheOrderTheyWereAdded()
{
    TemporaryProfile profile;
    QSettings store = openStore();
    Recorder recorder;
    WindowState state;
    state.add(recorder.part("geometry", "g"));
    state.add(recorder.part("docks", "d"));
    state.save(store);
    state.restore(store);
    QCOMPARE(recorder.restored, QStringList({"geometry=g", "docks=d"}));
}

void TestWindowState::partWhoseKeyIsMissingIsLeftAlone()
{
    TemporaryProfile profile;
    profile.setValue("main_window/geometry", QByteArray("g"));
    QSettings store = openStore();
    Recorder recorder;
    WindowState state;
    state.add(recorder.part("geometry", {}));
    state.add(recorder.part("docks", {}));
    state.restore(store);
    QCOMPARE(recorder.restored, QStringList({"geometry=g"}));
}

void TestWindowState::partThatIsNotSoundIsLeftAlone()
{
    TemporaryProfile profile;
    profile.setValue("main_window/geometry", QByteArray("damaged"));
    profile.setValue("main_window/docks", QByteArray("d"));
    QSettings store = openStore();
    Recorder recorder;
    WindowState state;
    state.add(recorder.part("geometry", {}));
    state.add(recorder.part("docks", {}));
    state.restore(store);
    QCOMPARE(recorder.restored, QStringList({"docks=d"}));
}

void TestWindowState::valueOfAnotherTypeIsLeftAlone_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("list") << QVariant(QStringList{"g", "h"});
    QTest::newRow("map") << QVariant(QVariantMap{{"g", 1}});
    QTest::newRow("nothing") << QVariant(QByteArray());
    QTest::newRow("size") << QVariant(QSize(3, 4));
}

void TestWindowState::valueOfAnotherTypeIsLeftAlone()
{
    QFETCH(QVariant, value);
    TemporaryProfile profile;
    profile.setValue("main_window/geometry", value);
    QSettings store = openStore();
    Recorder recorder;
    WindowState state;
    state.add(recorder.part("geometry", {}));
    state.restore(store);
    QVERIFY(recorder.restored.isEmpty());
}

QTEST_MAIN(TestWindowState)
#include "test_window_state.moc"
