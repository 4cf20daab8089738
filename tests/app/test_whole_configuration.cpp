#include "app/OrvgConnectionSettingsDialog.h"
#include "orv_decoder/metatypes.h"
#include "tests/app/WholeWindow.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/modal_dialogs.h"
#include "tests/support/screenshots.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QtTest>

namespace {

// How many parts the simulated ECU was asked for. The watch asks for its version whenever it likes.
auto readParts(const QString& output)
{
    return output.count(QStringLiteral("read ")) -
           output.count(QStringLiteral("read firmware version"));
}

} // namespace

/// The window against the simulated ECU.
class TestWholeConfiguration : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { orv::registerMetaTypes(); }
    void init() { mWindow = std::make_unique<WholeWindow>(); }
    void cleanup() { mWindow.reset(); }

    void firstAnswerReadsEverythingWithoutABox();
    void readAllShowsWhatTheEcuHolds();
    void answerNoLeavesEverythingAndSendsNothing();
    void transmitAllGivesTheEcuEveryByte();
    void onePartFails_data();
    void onePartFails();
    void failedPartIsNamedInOneBox();
    void noEcuAtAll();
    void failedAutomaticReadShowsNoBox();
    void probeWithoutAnAnswerShowsNoBoxAndReadsNothing();

    void acceptedConnectionMovesTheLiveStreams();
    void acceptedConnectionTalksToTheOtherEcu();
    void settingsAreReadFromTheTypedEcuAndTransmittedToTheSavedOne();

private:
    void capture(bool on);
    void inConnectionDialog(const std::function<void(OrvgConnectionSettingsDialog&)>& act);

    std::unique_ptr<WholeWindow> mWindow;
};

void TestWholeConfiguration::capture(bool on)
{
    mWindow->window().findChild<QAction*>(QStringLiteral("actionCapture"))->setChecked(on);
}

void TestWholeConfiguration::inConnectionDialog(
    const std::function<void(OrvgConnectionSettingsDialog&)>& act)
{
    whenOpened<OrvgConnectionSettingsDialog>(&mWindow->window(), act);
    mWindow->trigger("actionConnection");
}

void TestWholeConfiguration::firstAnswerReadsEverythingWithoutABox()
{
    const MessageBoxWatcher watcher;
    mWindow = std::make_unique<WholeWindow>();
    QVERIFY(watcher.boxes().isEmpty());
    QVERIFY(mWindow->message().startsWith(QStringLiteral("ECU (re)connected. Firmware version: ")));
    QVERIFY(mWindow->ecu().write(configurationOfSeed(1)));
    mWindow->trigger("actionTransmitToECU");
    QVERIFY(mWindow->ecu().read() == configurationOfSeed(0));
}

void TestWholeConfiguration::readAllShowsWhatTheEcuHolds()
{
    const QString former = mWindow->configuration();
    QVERIFY(mWindow->ecu().write(configurationOfSeed(1)));
    const MessageBoxWatcher watcher(QMessageBox::Yes);
    mWindow->trigger("actionSyncFromECU");
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(mWindow->message(), QStringLiteral("ECU data sync: SUCCESS!"));
    QVERIFY(mWindow->configuration() != former);
    QVERIFY(mWindow->ecu().write(configurationOfSeed(0)));
    mWindow->trigger("actionSyncFromECU");
    QCOMPARE(mWindow->configuration(), former);
}

void TestWholeConfiguration::answerNoLeavesEverythingAndSendsNothing()
{
    mWindow = std::make_unique<WholeWindow>(QStringList{"--verbose"});
    const QString former = mWindow->configuration();
    QVERIFY(mWindow->ecu().write(configurationOfSeed(1)));
    QVERIFY(mWindow->simulator().waitForOutput(QStringLiteral("write sensor positions")));
    const auto before = readParts(mWindow->simulator().output());
    const MessageBoxWatcher watcher(QMessageBox::No);
    mWindow->trigger("actionSyncFromECU");
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(mWindow->configuration(), former);
    mWindow->trigger("actionTransmitToECU");
    QVERIFY(mWindow->ecu().read() == configurationOfSeed(0));
    mWindow->stopSimulator();
    // The test's own: sequence, twelve sensors, positions.
    QCOMPARE(readParts(mWindow->simulator().output()), before + 14);
}

void TestWholeConfiguration::transmitAllGivesTheEcuEveryByte()
{
    QVERIFY(mWindow->ecu().write(configurationOfSeed(1)));
    const MessageBoxWatcher watcher;
    mWindow->trigger("actionTransmitToECU");
    QVERIFY(watcher.boxes().isEmpty());
    QCOMPARE(mWindow->message(), QStringLiteral("Setting successfully transmitted to ECU!"));
    QVERIFY(mWindow->ecu().read() == configurationOfSeed(0));
}

void TestWholeConfiguration::onePartFails_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("name");

    QTest::newRow("thresholds") << 1 << "thresholds";
    QTest::newRow("measurement sequence") << 0 << "measurement sequence";
    QTest::newRow("sensor positions") << 4 << "sensor positions";
}

void TestWholeConfiguration::onePartFails()
{
    QFETCH(int, command);
    QFETCH(QString, name);
    mWindow =
        std::make_unique<WholeWindow>(QStringList{"--status", QStringLiteral("%1=5").arg(command)});
    QVERIFY(!mWindow->ecu().write(configurationOfSeed(1)));
    const MessageBoxWatcher watcher(QMessageBox::Yes);
    mWindow->trigger("actionTransmitToECU");
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes()[0].title, QStringLiteral("Communication error"));
    QCOMPARE(watcher.boxes()[0].text,
             QStringLiteral("Some communication errors are detected during transmitting. \n\n") +
                 name);
    const EcuConfiguration held = mWindow->ecu().read();
    const EcuConfiguration shown = configurationOfSeed(0);
    QCOMPARE(held.sequence == shown.sequence, command != 0);
    QCOMPARE(held.thresholds == shown.thresholds, command != 1);
    QCOMPARE(held.positions == shown.positions, command != 4);

    mWindow->trigger("actionSyncFromECU");
    QCOMPARE(watcher.boxes().size(), 3);
    QCOMPARE(watcher.boxes()[2].title, QStringLiteral("Communication error"));
    QCOMPARE(watcher.boxes()[2].text,
             QStringLiteral("Some communication errors are detected during reading \n\n") + name);
}

void TestWholeConfiguration::failedPartIsNamedInOneBox()
{
    mWindow = std::make_unique<WholeWindow>(QStringList{"--status", "4=5"});
    QString text;
    whenOpened<QMessageBox>(&mWindow->window(), [&text](QMessageBox& box) {
        text = box.text();
        saveScreenshot(box, QStringLiteral("transmit-failed"));
        box.accept();
    });
    mWindow->trigger("actionTransmitToECU");
    QVERIFY(text.endsWith(QStringLiteral("\n\nsensor positions")));
}

void TestWholeConfiguration::noEcuAtAll()
{
    const QString former = mWindow->configuration();
    mWindow->stopSimulator();
    const MessageBoxWatcher watcher(QMessageBox::Yes);
    mWindow->trigger("actionSyncFromECU");
    QCOMPARE(watcher.boxes().size(), 2);
    QCOMPARE(watcher.boxes()[0].title, QStringLiteral("Sync from ECU"));
    QCOMPARE(watcher.boxes()[1].text,
             QStringLiteral("Some communication errors are detected during reading \n\n"
                            "thresholds\nmeasurement sequence\nsensor positions"));
    QCOMPARE(mWindow->configuration(), former);

    mWindow->trigger("actionTransmitToECU");
    QCOMPARE(watcher.boxes().size(), 3);
    QCOMPARE(watcher.boxes()[2].text,
             QStringLiteral("Some communication errors are detected during transmitting. \n\n"
                            "thresholds\nmeasurement sequence\nsensor positions"));
}

void TestWholeConfiguration::failedAutomaticReadShowsNoBox()
{
    const MessageBoxWatcher watcher;
    mWindow = std::make_unique<WholeWindow>(
        QStringList{"--status", "0=5", "--status", "1=5", "--status", "4=5"});
    QVERIFY(watcher.boxes().isEmpty());
    QVERIFY(mWindow->message().startsWith(QStringLiteral("ECU (re)connected. Firmware version: ")));
}

void TestWholeConfiguration::probeWithoutAnAnswerShowsNoBoxAndReadsNothing()
{
    MessageBoxWatcher watcher(QMessageBox::Yes);
    mWindow = std::make_unique<WholeWindow>(QStringList{"--status", "2=5"});
    QVERIFY(watcher.boxes().isEmpty());
    QCOMPARE(mWindow->message(), QString());
    const QString untouched = mWindow->configuration();
    mWindow->trigger("actionSyncFromECU");
    QVERIFY(mWindow->configuration() != untouched);
}

void TestWholeConfiguration::acceptedConnectionMovesTheLiveStreams()
{
    QSignalSpy results(&mWindow->window(), &TarvioWindow::measResultReceived);
    QSignalSpy freespaces(&mWindow->window(), &TarvioWindow::freespaceReceived);
    const std::uint16_t newReceivePort = freeUdpPort();
    const std::uint16_t newFreespacePort = freeUdpPort();
    capture(true);
    inConnectionDialog([=](OrvgConnectionSettingsDialog& dialog) {
        dialog.findChild<QSpinBox*>(QStringLiteral("mReceivingPort"))->setValue(newReceivePort);
        dialog.findChild<QSpinBox*>(QStringLiteral("mFreespacesPort"))->setValue(newFreespacePort);
        dialog.accept();
    });
    LoopbackPeer ecu;
    ecu.sendTo(mWindow->receivePort(), {1, 0, 0, 0, 1, 0, 2, 0, 0});
    ecu.sendTo(mWindow->freespacePort(), {0});
    ecu.sendTo(newReceivePort, {2, 0, 0, 0, 1, 0, 2, 0, 0});
    ecu.sendTo(newFreespacePort, {0});
    QTRY_COMPARE(results.size(), 1);
    QTRY_COMPARE(freespaces.size(), 1);
    QCOMPARE(results.first().first().value<orv::OrvMeasurementResult>().measurementWord, 2U);
}

void TestWholeConfiguration::acceptedConnectionTalksToTheOtherEcu()
{
    const SimulatorProcess other({QStringLiteral("--streams"), QStringLiteral("off")});
    inConnectionDialog([&other](OrvgConnectionSettingsDialog& dialog) {
        dialog.findChild<QSpinBox*>(QStringLiteral("controlPort"))->setValue(other.controlPort());
        dialog.accept();
    });
    const MessageBoxWatcher watcher;
    mWindow->trigger("actionTransmitToECU");
    QVERIFY(watcher.boxes().isEmpty());
    QVERIFY(EcuAccess(other.controlPort()).read() == configurationOfSeed(0));
}

void TestWholeConfiguration::settingsAreReadFromTheTypedEcuAndTransmittedToTheSavedOne()
{
    const SimulatorProcess typed(
        {"--streams", "off", "--receive-port", "4001", "--fsp-port", "4003"});
    const MessageBoxWatcher watcher;
    inConnectionDialog([&typed](OrvgConnectionSettingsDialog& dialog) {
        dialog.findChild<QSpinBox*>(QStringLiteral("controlPort"))->setValue(typed.controlPort());
        dialog.findChild<QPushButton*>(QStringLiteral("readButton"))->click();
        dialog.findChild<QPushButton*>(QStringLiteral("transmitButton"))->click();
        dialog.reject();
    });
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().title, QStringLiteral("Settings written"));
    orv::EcuNetworkSettings written;
    QVERIFY(mWindow->ecu().client().readNetworkSettings(written));
    QCOMPARE(written.receivePort, std::uint16_t{4001});
    QCOMPARE(written.freespacePort, std::uint16_t{4003});
    QCOMPARE(written.controlPort, typed.controlPort());
    QCOMPARE(mWindow->profile().value(QStringLiteral("network/control_port")).toInt(),
             int(mWindow->simulator().controlPort()));
}

QTEST_MAIN(TestWholeConfiguration)
#include "test_whole_configuration.moc"
