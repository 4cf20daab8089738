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
};

namespace {

struct Recorder
{
    QStringList restored;

    WindowState::Restore remember(const QString& name)
    {
        return [this, name](const QByteArray& bytes) {
            restored << name + '=' + QString::fromLatin1(bytes);
        };
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
    state.add(
        "geometry", [] { return QByteArray("g"); }, recorder.remember("geometry"));
    QVERIFY(!state.restore(store));
    QVERIFY(recorder.restored.isEmpty());
}

void TestWindowState::partsComeBackInTheOrderTheyWereAdded()
{
    TemporaryProfile profile;
    QSettings store = openStore();
    Recorder recorder;
    WindowState state;
    state.add(
        "geometry", [] { return QByteArray("g"); }, recorder.remember("geometry"));
    state.add(
        "docks", [] { return QByteArray("d"); }, recorder.remember("docks"));
    state.save(store);
    QVERIFY(state.restore(store));
    QCOMPARE(recorder.restored, QStringList({"geometry=g", "docks=d"}));
}

void TestWindowState::partWhoseKeyIsMissingIsLeftAlone()
{
    TemporaryProfile profile;
    profile.setValue("main_window/geometry", QByteArray("g"));
    QSettings store = openStore();
    Recorder recorder;
    WindowState state;
    state.add(
        "geometry", [] { return QByteArray(); }, recorder.remember("geometry"));
    state.add(
        "docks", [] { return QByteArray(); }, recorder.remember("docks"));
    QVERIFY(state.restore(store));
    QCOMPARE(recorder.restored, QStringList({"geometry=g"}));
}

QTEST_MAIN(TestWindowState)
#include "test_window_state.moc"
