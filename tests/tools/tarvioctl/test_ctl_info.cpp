#include "tests/support/LoopbackPeer.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/tools/tarvioctl/CtlProcess.h"

#include <QtTest>

/// How the program is called, with the one command that only asks.
class TestCtlInfo : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhoAnswers()
    {
        const SimulatorProcess ecu(
            {"--streams", "off", "--receive-port", "4001", "--fsp-port", "0"});
        const CtlResult result =
            CtlProcess::run(QStringList{"info"} + ecuOptions(ecu.controlPort()));
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.errorOutput, QString());
        const QStringList lines = result.output.split(QLatin1Char('\n'));
        QCOMPARE(
            lines.mid(0, 5),
            (QStringList{"Firmware:       2.14.0",
                         "ECU address:    127.0.0.1, mask 255.255.255.0, gateway 0.0.0.0",
                         QStringLiteral("Control port:   %1").arg(ecu.controlPort()),
                         "Sends to:       127.0.0.1, measurements to port 4001, freespaces to none",
                         "Sequence:       12 steps"}));
        QVERIFY(lines.value(5).startsWith(QStringLiteral("Answers within: ")));
    }

    void ecuThatIsNotThereIsOneSentence()
    {
        const CtlResult result =
            CtlProcess::run(QStringList{"info"} + ecuOptions(freeUdpPort(), 20));
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.output, QString());
        QCOMPARE(result.errorOutput,
                 QStringLiteral("The ECU does not answer as it should (socket: receive timeout): "
                                "see \"tarvioctl doctor\".\n"));
    }

    void refusedPartIsNoHalfAnswer()
    {
        const SimulatorProcess ecu({"--streams", "off", "--status", "3=7"});
        const CtlResult result =
            CtlProcess::run(QStringList{"info"} + ecuOptions(ecu.controlPort()));
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(result.errorOutput.contains(QStringLiteral("ECU error (7)")));
    }

    void withoutOptionsTheWindowsSettingsHold()
    {
        const SimulatorProcess ecu({"--streams", "off"});
        TemporaryProfile profile;
        profile.setNetwork(ecu.controlPort(), 4001, 4003);
        const CtlResult result =
            CtlProcess::run({"info", "--timeout", QString::number(kAnswerPatienceMs)});
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.errorOutput,
                 QStringLiteral("ECU 127.0.0.1, control port %1, as stored by Tarvio.\n")
                     .arg(ecu.controlPort()));
    }

    void controlPortThatNobodyHasSaidIsToldAsTheDefault()
    {
        TemporaryProfile profile;
        profile.setValue(QStringLiteral("network/control_port"), QStringLiteral("none"));
        const CtlResult result = CtlProcess::run({"info", "--ecu", "127.0.0.1", "--timeout", "20"});
        QVERIFY2(result.errorOutput.startsWith(QStringLiteral(
                     "Control port 50002, by default: Tarvio has stored nothing else.\n")),
                 qPrintable(result.errorOutput));
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("told");

        QTest::newRow("nothing")
            << QStringList() << "Usage: tarvioctl COMMAND [options]: tarvioctl --help lists them.";
        QTest::newRow("unknown command")
            << QStringList{"fly"} << "There is no command \"fly\": tarvioctl --help lists them.";
        QTest::newRow("unknown option")
            << QStringList{"info", "--fly"}
            << "Unknown option 'fly': tarvioctl info --help tells what there is.";
        QTest::newRow("too many") << QStringList{"info", "x"} << "Usage: tarvioctl info";
        QTest::newRow("no address") << QStringList{"info", "--ecu", "1.2.3"}
                                    << "--ecu takes an IPv4 address, not \"1.2.3\".";
        QTest::newRow("no port") << QStringList{"info", "--control-port", "0"}
                                 << "--control-port takes a whole number from 1 to 65535, not "
                                    "\"0\".";
        QTest::newRow("no ECU known")
            << QStringList{"info"} << "Nobody has said where the ECU is: give --ecu ADDRESS.";
    }

    void wrongUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, told);
        const TemporaryProfile empty;
        const CtlResult result = CtlProcess::run(arguments);
        QCOMPARE(result.exitStatus, 2);
        QCOMPARE(result.output, QString());
        QCOMPARE(result.errorOutput, told + QLatin1Char('\n'));
    }

    void helpListsEveryCommand()
    {
        const CtlResult result = CtlProcess::run({"--help"});
        QCOMPARE(result.exitStatus, 0);
        QVERIFY(result.output.contains(QStringLiteral("\n  info ")));
        const CtlResult ofCommand = CtlProcess::run({"info", "--help"});
        QCOMPARE(ofCommand.exitStatus, 0);
        QVERIFY(ofCommand.output.contains(QStringLiteral("--ecu <address>")));
        QVERIFY2(ofCommand.output.startsWith(QStringLiteral("Usage: tarvioctl info [options]\n")),
                 qPrintable(ofCommand.output));
    }

    void versionIsTheProjects()
    {
        QCOMPARE(CtlProcess::run({"--version"}).output,
                 QStringLiteral("tarvioctl " TARVIO_VERSION "\n"));
    }
};

QTEST_GUILESS_MAIN(TestCtlInfo)
#include "test_ctl_info.moc"
