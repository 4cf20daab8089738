#include "tests/support/LoopbackPeer.h"
#include "tests/tools/tarvioctl/CtlProcess.h"

#include <QTemporaryDir>
#include <QtTest>

/// What a program says that was built where libpcap is not.
class TestCtlWithoutLibpcap : public QObject
{
    Q_OBJECT

private slots:
    void capturesAreRefusedPlainly_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("record") << "record";
        QTest::newRow("replay") << "replay";
    }

    void capturesAreRefusedPlainly()
    {
        QFETCH(QString, command);
        const QTemporaryDir folder;
        const CtlResult result =
            CtlProcess::run({command, folder.filePath("a.pcap"), "--receive-port",
                             QString::number(freeUdpPort()), "--fsp-port", "0"});
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.errorOutput,
                 QStringLiteral("This program was built without libpcap and knows no capture "
                                "files: install libpcap-dev and build it again.\n"));
    }
};

QTEST_GUILESS_MAIN(TestCtlWithoutLibpcap)
#include "test_ctl_without_libpcap.moc"
