#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "orv_decoder/OrvDecoder.h"
#include "orv_decoder/OrvUdpSocket.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/PatientReceive.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/patience.h"
#include "tests/support/screenshots.h"
#include "tests/views/freespace/picture.h"
#include "views/freespace/OrvgFreespacesView.h"
#include "views/positions/OrvgSensorPositionView.h"

#include <QTableWidget>
#include <QToolButton>
#include <QtTest>

#include <bitset>
#include <functional>

namespace {

constexpr std::uint8_t kSensor = 3;
constexpr int kPackageLimit = 500;

// The views, and the ECU at the other end of a real control channel and a real stream.
class Bench
{
public:
    explicit Bench(QStringList options)
        : fspPort(freeUdpPort())
        , streamSocket(fspPort)
        , decoder(&streamSocket, orv::OrvDecoderMode::Synchronous)
        , ecu(options << "--fsp-port" << QString::number(fspPort) << "--receive-port"
                      << QString::number(freeUdpPort()) << "--rate"
                      << "100")
        , controlSocket("127.0.0.1", ecu.controlPort())
        , client(&controlSocket)
    {
        positions.setCtrlClient(&client);
        positions.onReadSensorPositionTbClicked(true);
        view.resize(1000, 600);
        view.show();
    }

    OrvgFreespaceGraphicsView& picture() { return *view.findChild<OrvgFreespaceGraphicsView*>(); }
    void click(const char* button) { view.findChild<QToolButton*>(QLatin1String(button))->click(); }
    QString distance(int row, int column)
    {
        return view.findChild<QTableWidget*>()->item(row, column)->text();
    }

    orv::SensorMountPositions heldByEcu()
    {
        orv::SensorMountPositions held;
        client.readSensorPositions(held);
        return held;
    }

    // Shows packages until the condition holds for an entry; false when it never does.
    bool showUntil(const std::function<bool(const orv::OrvFreespaceEntry&)>& condition)
    {
        for (int i = 0; i < kPackageLimit; ++i) {
            orv::OrvFreespacePackage package;
            if (!decoder.take(package, kAnswerPatienceMs))
                return false;
            view.onNewFreespacePackage(package);
            if (std::any_of(package.entries.begin(), package.entries.end(), condition))
                return true;
        }
        return false;
    }

    bool showAllSensors()
    {
        std::bitset<orv::kSensorCount> seen;
        return showUntil([&seen](const orv::OrvFreespaceEntry& entry) {
            seen.set(entry.sensorId);
            return seen.all();
        });
    }

    PatientReceive patience;
    std::uint16_t fspPort;
    orv::OrvUdpSocket streamSocket;
    orv::OrvDecoder<orv::OrvFreespacePackage> decoder;
    SimulatorProcess ecu;
    orv::OrvCtrlSocket controlSocket;
    orv::OrvCtrlClient client;
    OrvgSensorPositionView positions;
    OrvgFreespacesView view{&positions};
};

} // namespace

class FreespacesWithEcuTest : public QObject
{
    Q_OBJECT

private slots:
    void reportingSensorsAreDrawnWithTheDistancesOfTheScene()
    {
        Bench bench({"--scene", "wall", "--wall-distance", "1500"});
        QVERIFY(bench.ecu.isListening());
        QVERIFY(bench.showAllSensors());
        QCOMPARE(picture::freespaces(bench.picture()).size(), 12);
        QCOMPARE(picture::itemsOf<OrvgSensorItem>(bench.picture()).size(), 12);
        for (int row = 0; row < 12; ++row) {
            QCOMPARE(bench.distance(row, 0), QString("1523 mm")); // 1500 / cos 10 degrees
            QCOMPARE(bench.distance(row, 1), QString("1500 mm"));
            QCOMPARE(bench.distance(row, 2), QString("1523 mm"));
        }
        QCOMPARE(bench.ecu.errorOutput(), QString());
    }

    void fieldWithoutObstacleIsDrawnFreeToItsEnd()
    {
        Bench bench({"--scene", "wall", "--wall-distance", "5000"});
        QVERIFY(bench.showAllSensors());
        for (int row = 0; row < 12; ++row) {
            for (int column = 0; column < 3; ++column)
                QCOMPARE(bench.distance(row, column), QString("4000 mm"));
        }
        // 3.5 m behind the tenth sensor
        const QPoint place = bench.picture().mapFromScene(-870 - 3487, -260 - 305);
        const QColor colour = bench.picture().viewport()->grab().toImage().pixelColor(place);
        QVERIFY2(colour.green() > colour.red() + 20, qPrintable(colour.name())); // not orange
    }

    void draggedSensorIsProgrammedAndReportsFromItsNewPlace()
    {
        Bench bench({"--scene", "car"});
        QVERIFY(bench.showAllSensors());
        saveScreenshot(bench.view, "freespace");

        bench.click("mModeButton");
        OrvgFreespaceGraphicsView& picture = bench.picture();
        const QPointF before = picture::sensor(picture, kSensor)->pos();
        const QPoint start = picture.mapFromScene(before) + QPoint(2, 0);
        picture::press(picture, start);
        picture::moveMouse(picture, start + QPoint(20, 0), Qt::LeftButton);
        picture::moveMouse(picture, start + QPoint(20, 10), Qt::LeftButton);
        picture::release(picture, start + QPoint(20, 10));
        saveScreenshot(bench.view, "freespace-edit");
        const orv::SensorMountPosition moved = bench.positions.positions()[kSensor];
        QCOMPARE(QPointF(moved.x, -moved.y), before + QPointF(400, 200));

        MessageBoxWatcher watcher;
        bench.click("mProgramButton");
        QCOMPARE(watcher.boxes().size(), 0);
        QVERIFY(bench.heldByEcu() == bench.positions.positions());

        bench.click("mModeButton");
        QVERIFY(bench.showUntil([&moved](const orv::OrvFreespaceEntry& entry) {
            return entry.sensorId == kSensor && entry.position.x == moved.x &&
                   entry.position.y == moved.y;
        }));
        QCOMPARE(picture::sensor(picture, kSensor)->pos(), before + QPointF(400, 200));
        QCOMPARE(bench.ecu.errorOutput(), QString());
    }
};

QTEST_MAIN(FreespacesWithEcuTest)
#include "test_freespaces_with_ecu.moc"
