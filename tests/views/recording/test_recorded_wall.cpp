#include "orv_decoder/OrvDecoder.h"
#include "orv_decoder/OrvUdpSocket.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/PatientReceive.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/patience.h"
#include "tests/views/recording/RecordingFixture.h"

#include <QtTest>

#include <map>

namespace {

constexpr std::uint8_t kSensor = 5;
constexpr double kWindowUs = 204.8;

// A recording of the simulated ECU before a wall, fed from its stream.
class Run
{
public:
    explicit Run(const QString& wallDistanceMm)
        : mDecoder(&mStream, orv::OrvDecoderMode::Synchronous)
        , mSimulator({"--scene", "wall", "--wall-distance", wallDistanceMm, "--rate", "1000",
                      "--receive-port", QString::number(mStream.port()), "--fsp-port", "0"})
        , mSocket("127.0.0.1", mSimulator.controlPort())
        , mClient(&mSocket)
        , mDialog(&mClient, nullptr)
    {}

    bool isReady() const { return mSimulator.isListening() && mStream.isOpen(); }

    /// Lets the sensor send in every measurement.
    bool measureWithOneSensor()
    {
        const std::vector<orv::MseqStep> steps = {{.valid = true, .activeMask = 1U << kSensor}};
        const bool isWritten = mClient.writeMeasurementSequence(steps);
        mStream.reopen(0); // what waits was measured before
        return isWritten;
    }

    /// False when the stream ends before the recording does.
    bool record()
    {
        mDialog.findChild<QComboBox*>("mSensorCb")->setCurrentIndex(kSensor);
        mDialog.onRecordClicked();
        const auto* stop = mDialog.findChild<QPushButton*>("mStopPb");
        for (bool isFirst = true; stop->isEnabled(); isFirst = false) {
            orv::OrvMeasurementResult result;
            if (!mDecoder.take(result, kAnswerPatienceMs))
                return false;
            // The first result starts the recording and is not a part of it.
            if (!isFirst)
                keep(result);
            mDialog.onNewMeasResult(result);
        }
        return true;
    }

    const QVector<MessageBoxWatcher::Box>& boxes() const { return mWatcher.boxes(); }
    int results() const { return mResults; }
    int samples() const { return mSampleCount; }

    QByteArray receivedAsCsv() const
    {
        QByteArray csv;
        for (const auto& [timeOfFlight, magnitudes] : mReceived)
            csv += QByteArray::number(timeOfFlight) + magnitudes + '\n';
        return csv;
    }

    QByteArray savedCsv() const
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath("curve.csv"));
        mDialog.findChild<OrvgPlotWidget*>("mPlot")->save(file.fileName());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }

private:
    void keep(const orv::OrvMeasurementResult& result)
    {
        ++mResults;
        const auto heard = result.echoes.find(kSensor);
        if (heard == result.echoes.end())
            return;
        for (const orv::OrvSensorEcho& echo : heard->second) {
            mReceived[echo.timeOfFlight] += "," + QByteArray::number(echo.magnitude);
            ++mSampleCount;
        }
    }

    PatientReceive mPatience;
    orv::OrvUdpSocket mStream{freeUdpPort()};
    orv::OrvDecoder<orv::OrvMeasurementResult> mDecoder;
    SimulatorProcess mSimulator;
    orv::OrvCtrlSocket mSocket;
    orv::OrvCtrlClient mClient;
    MessageBoxWatcher mWatcher;
    OrvgCurveRecordingDialog mDialog;
    std::map<int, QByteArray> mReceived;
    int mResults = 0;
    int mSampleCount = 0;
};

// The time of flight of the first line with the largest magnitude.
double timeOfLargestPeak(const QByteArray& csv)
{
    double time = -1;
    int largest = -1;
    for (const QByteArray& line : csv.trimmed().split('\n')) {
        const QList<QByteArray> cells = line.split(',');
        for (const QByteArray& magnitude : cells.mid(1)) {
            if (magnitude.toInt() <= largest)
                continue;
            largest = magnitude.toInt();
            time = cells.front().toDouble();
        }
    }
    return time;
}

} // namespace

class RecordedWallTest : public QObject
{
    Q_OBJECT

private slots:
    void largestPeakOfARecordingLiesAtTheWall_data()
    {
        QTest::addColumn<QString>("distanceMm");
        QTest::addColumn<double>("timeOfFlightUs");
        QTest::addColumn<bool>("isLouderThanTheBlockedLevel");
        // Forth and back at 343 m/s.
        QTest::newRow("near") << "800" << 4664.7 << true;
        QTest::newRow("middle") << "2500" << 14577.3 << false;
        QTest::newRow("far") << "4500" << 26239.1 << false;
    }
    void largestPeakOfARecordingLiesAtTheWall()
    {
        QFETCH(QString, distanceMm);
        QFETCH(double, timeOfFlightUs);
        Run run(distanceMm);
        QVERIFY(run.isReady());
        QVERIFY(run.measureWithOneSensor());

        QVERIFY(run.record());

        QTRY_COMPARE(run.boxes().size(), 1);
        QCOMPARE(run.boxes().front().title, QString("Timings"));
        QCOMPARE(run.results(), 145 * 3 + 16 + 1);
        const QByteArray csv = run.savedCsv();
        QCOMPARE(csv, run.receivedAsCsv());
        const double peak = timeOfLargestPeak(csv);
        QVERIFY2(qAbs(peak - timeOfFlightUs) <= kWindowUs, qPrintable(QString::number(peak)));
        // A wall that can be blocked is heard near its own position only.
        QVERIFY(run.samples() > 0);
        const bool isHeardMostly = run.samples() > run.results() / 2;
        QTEST(isHeardMostly, "isLouderThanTheBlockedLevel");
    }
};

QTEST_MAIN(RecordedWallTest)
#include "test_recorded_wall.moc"
