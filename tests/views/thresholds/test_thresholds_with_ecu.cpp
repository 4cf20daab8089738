#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/ManualClock.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/PatientReceive.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/patience.h"
#include "views/thresholds/OrvgThreshItemModel.h"
#include "views/thresholds/OrvgThresholdView.h"

#include <QTableView>
#include <QToolButton>
#include <QtTest>

#include <optional>

namespace {

constexpr int kSensor = 3;
constexpr std::uint8_t kLoudest = 0xDF; // 4096 us at the highest level

// The view and the ECU at the other end of a real control channel.
class Bench
{
public:
    explicit Bench(const QStringList& options = {})
        : ecu(options), socket("127.0.0.1", ecu.controlPort()), client(&socket)
    {
        view.setCtrlClient(&client);
        table().setCurrentIndex(model().index(kSensor, 0));
    }

    QTableView& table() { return *view.findChild<QTableView*>(); }
    OrvgThreshItemModel& model() { return static_cast<OrvgThreshItemModel&>(*table().model()); }
    void click(const char* button) { view.findChild<QToolButton*>(QLatin1String(button))->click(); }

    /// Until the calibration has ended and what follows has come from the event loop.
    void runToTheEnd()
    {
        clock.runTo(60'000);
        QCoreApplication::processEvents();
    }

    void calibrate()
    {
        click("mCalibrateTb");
        runToTheEnd();
    }

    void raiseCurve()
    {
        for (int column = 0; column < 12; ++column)
            model().setData(model().index(kSensor, column), QPoint(6, 31));
    }

    orv::SensorThreshold heldByEcu(std::uint8_t sensor)
    {
        orv::SensorThreshold record;
        client.readThresholds(sensor, record);
        return record;
    }

    SimulatorProcess ecu;
    orv::OrvCtrlSocket socket;
    orv::OrvCtrlClient client;
    ManualClock clock;
    OrvgThresholdView view{nullptr, &clock};
};

// Whether the sensor hears its own echo in one of its next `count` measurements; nothing when the
// stream ends or is no such stream.
std::optional<bool> hearsItself(LoopbackPeer& receiver, std::uint8_t sensor, int count)
{
    while (count > 0) {
        const auto datagram = receiver.receive(int{kAnswerPatienceMs});
        if (!datagram)
            return std::nullopt;
        const auto result = orv::decodeDatagram<orv::OrvMeasurementResult>(*datagram);
        if (!result)
            return std::nullopt;
        if (result->role(sensor) != orv::OrvSensorRole::Sending)
            continue;
        if (!result->echoesOf(sensor).empty())
            return true;
        --count;
    }
    return false;
}

} // namespace

class ThresholdsWithEcuTest : public QObject
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
        bench.click("mReadAllTb");
        const orv::SensorThreshold neighbour = bench.model().record(kSensor + 1);
        QVERIFY(bench.model().record(kSensor).valid);
        QVERIFY(bench.model().record(kSensor).entries[0] != kLoudest);
        bench.raiseCurve();
        bench.view.onScaleChanged(0);
        bench.click("mWriteTb");
        QCOMPARE(bench.heldByEcu(kSensor), bench.model().record(kSensor));
        QCOMPARE(bench.heldByEcu(kSensor + 1), neighbour);
        bench.model().setData(bench.model().index(kSensor, 5), QPoint(0, 0));
        bench.click("mReadTb");
        QCOMPARE(bench.model().record(kSensor).entries[5], kLoudest);
        QCOMPARE(bench.model().record(kSensor).scale, std::uint8_t{0});
        QCOMPARE(mBoxes->boxes().size(), 2); // the questions before the two reads
    }

    void allSensorsAreWrittenAndReadBack()
    {
        Bench bench;
        for (int row = 0; row < 12; ++row)
            bench.model().setData(bench.model().index(row, 0), QPoint(row % 8, row + 1));
        bench.click("mWriteAllTb");
        OrvgThresholdView other;
        other.setCtrlClient(&bench.client);
        QVERIFY(other.onReceiveAll(true));
        const auto& model =
            static_cast<OrvgThreshItemModel&>(*other.findChild<QTableView*>()->model());
        for (int row = 0; row < 12; ++row)
            QCOMPARE(model.record(row).entries, bench.model().record(row).entries);
        QVERIFY(mBoxes->boxes().isEmpty());
    }

    void echoVanishesUnderARaisedCurve()
    {
        LoopbackPeer receiver;
        Bench bench({"--scene", "wall", "--wall-distance", "3000", "--receive-port",
                     QString::number(receiver.port())});
        QCOMPARE(hearsItself(receiver, kSensor, 3), std::optional(true));
        bench.raiseCurve();
        bench.click("mWriteTb");
        while (receiver.receive(0)) {
        }
        QCOMPARE(hearsItself(receiver, kSensor, 3), std::optional(false));
        QVERIFY(mBoxes->boxes().isEmpty());
    }

    void calibrationThatFinishesBringsNewThresholds()
    {
        Bench bench({"--calibration", "finish", "--calibration-seconds", "0"});
        bench.raiseCurve();
        bench.click("mWriteTb");
        bench.calibrate();
        QVERIFY(mBoxes->boxes().isEmpty());
        QVERIFY(bench.model().record(kSensor).entries[11] != kLoudest);
        QCOMPARE(bench.model().record(kSensor), bench.heldByEcu(kSensor));
    }

    void calibrationWithoutSuccessIsTold_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::newRow("aborted") << "abort"
                                 << "Calibration error"
                                 << "Calibration was aborted!\nPlease check sensor connection.";
        QTest::newRow("never ends") << "never"
                                    << "Calibration error"
                                    << "Calibration time out.";
    }

    void calibrationWithoutSuccessIsTold()
    {
        QFETCH(QString, mode);
        Bench bench({"--calibration", mode, "--calibration-seconds", "0"});
        const auto before = bench.model().records();
        bench.calibrate();
        QCOMPARE(mBoxes->boxes().size(), 1);
        QTEST(mBoxes->boxes()[0].title, "title");
        QTEST(mBoxes->boxes()[0].text, "text");
        QCOMPARE(bench.model().records(), before);
    }

    void calibrationWhoseExchangeFailsIsTold()
    {
        Bench bench({"--calibration", "fail", "--calibration-seconds", "0"});
        bench.calibrate();
        QCOMPARE(mBoxes->boxes().size(), 1);
        QCOMPARE(mBoxes->boxes()[0].title, QString("Communication error"));
        QCOMPARE(mBoxes->boxes()[0].text, QString("ECU error (6)"));
    }

    void ecuThatDiesMeanwhileIsTold()
    {
        Bench bench({"--calibration", "never"});
        bench.click("mCalibrateTb");
        bench.ecu.stop();
        mPatience.reset();
        bench.runToTheEnd();
        QCOMPARE(mBoxes->boxes().size(), 1);
        QCOMPARE(mBoxes->boxes()[0].title, QString("Communication error"));
        QCOMPARE(mBoxes->boxes()[0].text, QString("socket: receive timeout"));
    }

    void statusOfTheEcuIsTold()
    {
        Bench bench({"--status", "1=3"});
        const auto before = bench.model().records();
        bench.click("mReadTb");
        QCOMPARE(mBoxes->boxes().size(), 2);
        QCOMPARE(mBoxes->boxes()[1].text, QString("ECU error (3)"));
        QCOMPARE(bench.model().records(), before);
    }

private:
    std::unique_ptr<MessageBoxWatcher> mBoxes;
    std::optional<PatientReceive> mPatience;
};

QTEST_MAIN(ThresholdsWithEcuTest)
#include "test_thresholds_with_ecu.moc"
