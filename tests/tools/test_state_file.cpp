#include "tools/ecu_simulator/StateFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace ecusim;

namespace {

EcuState changedState()
{
    EcuState state = defaultEcuState();
    state.sequence.resize(2);
    state.sequence[1].code = 1;
    state.keptThresholds[5].entries[0] = 0x42;
    state.keptThresholds[5].scale = 4;
    state.positions[11].x = -1234;
    state.keptNetwork = orv::EcuNetworkSettings{
        .valid = true, .ecuIp = 0x0200007F, .controlPort = 4000, .freespacePort = 0};
    return state;
}

void write(const QString& path, const QByteArray& text)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

} // namespace

class TestStateFile : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        QVERIFY(mFolder->isValid());
        mPath = mFolder->filePath(QStringLiteral("ecu.json"));
    }

    void savedStateComesBack()
    {
        const EcuState saved = changedState();
        QVERIFY(StateFile(mPath).save(saved));
        EcuState loaded = defaultEcuState();
        QVERIFY(StateFile(mPath).load(loaded));
        QVERIFY(loaded.sequence == saved.sequence);
        QVERIFY(loaded.keptThresholds == saved.keptThresholds);
        QVERIFY(loaded.thresholds == saved.keptThresholds);
        QVERIFY(loaded.positions == saved.positions);
        QVERIFY(loaded.keptNetwork == saved.keptNetwork);
    }

    void emptySequenceComesBack()
    {
        EcuState state = defaultEcuState();
        state.sequence.clear();
        QVERIFY(StateFile(mPath).save(state));
        EcuState loaded = defaultEcuState();
        QVERIFY(StateFile(mPath).load(loaded));
        QVERIFY(loaded.sequence.empty());
    }

    void temporaryThresholdsAreNotSaved()
    {
        EcuState state = defaultEcuState();
        state.thresholds[0].entries[0] = 0x11;
        QVERIFY(StateFile(mPath).save(state));
        EcuState loaded = defaultEcuState();
        QVERIFY(StateFile(mPath).load(loaded));
        QVERIFY(loaded.thresholds == defaultEcuState().thresholds);
    }

    void missingFileLeavesTheDefaults()
    {
        EcuState state = defaultEcuState();
        QVERIFY(StateFile(mPath).load(state));
        QVERIFY(state.sequence == defaultEcuState().sequence);
    }

    void savingReplacesTheWholeFile()
    {
        write(mPath, QByteArray(100000, 'x'));
        QVERIFY(StateFile(mPath).save(defaultEcuState()));
        EcuState state;
        QVERIFY(StateFile(mPath).load(state));
    }

    void folderThatDoesNotExistIsReported()
    {
        StateFile file(mFolder->filePath(QStringLiteral("nowhere/ecu.json")));
        QVERIFY(!file.save(defaultEcuState()));
        QVERIFY(file.errorString().contains(QLatin1String("nowhere/ecu.json: ")));
    }

    void junkIsRefusedAndChangesNothing_data()
    {
        const QString good = QString::fromLatin1(encodeState(changedState()));
        const auto replaced = [&good](const char* from, const char* to) {
            QString text = good;
            text.replace(QLatin1String(from), QLatin1String(to));
            return text.toLatin1();
        };
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("no JSON") << QByteArray("\x00\xFFgarbage", 9);
        QTest::newRow("an array") << QByteArray("[1]");
        QTest::newRow("another format")
            << replaced("\"tarvioEcuState\": 1", "\"tarvioEcuState\": 2");
        QTest::newRow("no sequence") << replaced("measurementSequence", "other");
        QTest::newRow("step cut short") << replaced("\"01000e00", "\"01000e");
        QTest::newRow("no thresholds") << replaced("thresholds", "other");
        QTest::newRow("wrong sensor") << replaced("\"055f", "\"065f").replace("\"0542", "\"0642");
        QTest::newRow("no positions") << replaced("sensorPositions", "other");
        QTest::newRow("network cut short") << replaced("\"7f000002", "\"7f0000");
        QTest::newRow("cut in the middle") << good.left(good.size() / 2).toLatin1();
    }

    void junkIsRefusedAndChangesNothing()
    {
        QFETCH(QByteArray, text);
        write(mPath, text);
        EcuState state = defaultEcuState();
        StateFile file(mPath);
        QVERIFY(!file.load(state));
        QVERIFY(file.errorString().startsWith(mPath));
        QVERIFY(state.sequence == defaultEcuState().sequence);
        QVERIFY(state.keptThresholds == defaultEcuState().keptThresholds);
        QVERIFY(state.positions == defaultEcuState().positions);
        QVERIFY(!state.keptNetwork);
    }

private:
    std::unique_ptr<QTemporaryDir> mFolder;
    QString mPath;
};

QTEST_GUILESS_MAIN(TestStateFile)
#include "test_state_file.moc"
