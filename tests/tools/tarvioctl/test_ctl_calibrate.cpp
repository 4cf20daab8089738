#include "tests/support/SimulatorProcess.h"
#include "tests/tools/tarvioctl/CtlProcess.h"

#include <QtTest>

/// Automatic calibration, as a user runs it.
class TestCtlCalibrate : public QObject
{
    Q_OBJECT

private slots:
    void endIsToldAndIsTheStatus_data()
    {
        QTest::addColumn<QStringList>("ecu");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("errorStart");

        QTest::newRow("finished") << QStringList{"--calibration-seconds", "0"} << 0
                                  << "sensor 3: calibrated\n"
                                  << "";
        QTest::newRow("aborted") << QStringList{"--calibration", "abort", "--calibration-seconds",
                                                "0"}
                                 << 1 << ""
                                 << "The ECU has aborted the calibration of sensor 3: ";
        QTest::newRow("refused") << QStringList{"--status", "5=7"} << 1 << ""
                                 << "The ECU does not answer as it should (ECU error (7)): ";
    }

    void endIsToldAndIsTheStatus()
    {
        QFETCH(QStringList, ecu);
        QFETCH(QString, errorStart);
        const SimulatorProcess simulator(QStringList{"--streams", "off"} + ecu);
        const CtlResult result =
            CtlProcess::run(QStringList{"calibrate", "3"} + ecuOptions(simulator.controlPort()));
        QTEST(result.exitStatus, "status");
        QTEST(result.output, "output");
        QVERIFY2(result.errorOutput.left(errorStart.size()) == errorStart,
                 qPrintable(result.errorOutput));
        QCOMPARE(result.errorOutput.count(QLatin1Char('\n')), errorStart.isEmpty() ? 0 : 1);
    }

    void rightSensorIsCalibrated()
    {
        SimulatorProcess simulator({"--streams", "off", "--calibration-seconds", "0", "--verbose"});
        CtlProcess::run(QStringList{"calibrate", "12"} + ecuOptions(simulator.controlPort()));
        QVERIFY(simulator.waitForOutput(QStringLiteral("start auto calibration of sensor 12")));
    }

    void interruptionSaysThatTheEcuGoesOn()
    {
        SimulatorProcess simulator({"--streams", "off", "--calibration", "never", "--verbose"});
        CtlProcess process(QStringList{"calibrate", "1"} + ecuOptions(simulator.controlPort()));
        QVERIFY(simulator.waitForOutput(QStringLiteral("start auto calibration")));
        process.interrupt();
        const CtlResult result = process.waitForEnd();
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(result.errorOutput.startsWith(QStringLiteral("No longer waited for: ")));
    }

    void ecuThatDiesInTheMiddleIsTold()
    {
        SimulatorProcess simulator({"--streams", "off", "--calibration", "never", "--verbose"});
        CtlProcess process(QStringList{"calibrate", "1"} + ecuOptions(simulator.controlPort(), 50));
        QVERIFY(simulator.waitForOutput(QStringLiteral("start auto calibration")));
        simulator.stop();
        const CtlResult result = process.waitForEnd();
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(result.errorOutput.contains(QStringLiteral("tarvioctl doctor")));
    }

    void noSensorIsWrongUsage()
    {
        for (const char* sensor : {"0", "13", "front"}) {
            const CtlResult result =
                CtlProcess::run({"calibrate", QLatin1String(sensor), "--ecu", "127.0.0.1"});
            QCOMPARE(result.exitStatus, 2);
            QCOMPARE(result.errorOutput,
                     QStringLiteral("A sensor is a number from 1 to 12, not \"%1\".\n")
                         .arg(QLatin1String(sensor)));
        }
    }
};

QTEST_GUILESS_MAIN(TestCtlCalibrate)
#include "test_ctl_calibrate.moc"
