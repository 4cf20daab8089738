#include "orv_decoder/OrvCtrlSocket.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/PatientReceive.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/views/positions/PositionViewFixture.h"

#include <optional>

namespace {

/// A position view and the ECU at the other end of a real control channel.
class Bench : public PositionViewFixture
{
public:
    explicit Bench(const QStringList& options = {})
        : ecu(options), channel("127.0.0.1", ecu.controlPort())
    {
        client.setSocket(&channel);
    }

    void type(int row, int column, const QString& value)
    {
        QDoubleSpinBox* editor = openEditor(row, column);
        QTest::keyClicks(editor, value);
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(!table().indexWidget(table().currentIndex()));
    }

    QVariant shown(int row, int column) { return model().index(row, column).data(); }

    SimulatorProcess ecu;
    orv::OrvCtrlSocket channel;
};

} // namespace

class PositionsWithEcuTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mBoxes = std::make_unique<MessageBoxWatcher>(QMessageBox::Yes);
        mPatience.emplace();
    }
    void cleanup() { mBoxes.reset(); }

    void whatIsEditedAndWrittenIsReadBack()
    {
        Bench bench;
        QTest::mouseClick(&bench.readButton(), Qt::LeftButton);
        QVERIFY(bench.view.positions() != orv::SensorMountPositions());
        bench.type(0, 0, "-1234");
        bench.type(2, 5, "65535");
        bench.type(3, 11, "123.45");
        const orv::SensorMountPositions edited = bench.view.positions();
        QTest::mouseClick(&bench.writeButton(), Qt::LeftButton);
        bench.model().setPositions({});
        QTest::mouseClick(&bench.readButton(), Qt::LeftButton);
        QCOMPARE(bench.view.positions(), edited);
        QCOMPARE(bench.shown(0, 0), QVariant(-1234));
        QCOMPARE(bench.shown(2, 5), QVariant(65535U));
        QCOMPARE(bench.shown(3, 11), QVariant(123.45));
        QCOMPARE(mBoxes->boxes().size(), 2); // the questions before the two reads
    }

    void refusalOfTheEcuIsToldAndKeepsTheTable()
    {
        Bench bench({"--status", "4=7"});
        bench.model().setPositions(PositionViewFixture::aCar());
        QTest::mouseClick(&bench.writeButton(), Qt::LeftButton);
        expectLastBox("ECU error (7)");
        QTest::mouseClick(&bench.readButton(), Qt::LeftButton);
        expectLastBox("ECU error (7)");
        QCOMPARE(mBoxes->boxes().size(), 3);
        QCOMPARE(bench.view.positions(), PositionViewFixture::aCar());
    }

    void silentEcuIsToldAndKeepsTheTable()
    {
        Bench bench;
        bench.model().setPositions(PositionViewFixture::aCar());
        bench.ecu.stop();
        mPatience.reset();
        QTest::mouseClick(&bench.writeButton(), Qt::LeftButton);
        expectLastBox("socket: receive timeout");
        QCOMPARE(bench.view.positions(), PositionViewFixture::aCar());
    }

private:
    void expectLastBox(const QString& text)
    {
        QVERIFY(!mBoxes->boxes().isEmpty());
        QCOMPARE(mBoxes->boxes().last().icon, QMessageBox::Warning);
        QCOMPARE(mBoxes->boxes().last().title, QString("Communication error"));
        QCOMPARE(mBoxes->boxes().last().text, text);
    }

    std::unique_ptr<MessageBoxWatcher> mBoxes;
    std::optional<PatientReceive> mPatience;
};

QTEST_MAIN(PositionsWithEcuTest)
#include "test_positions_with_ecu.moc"
