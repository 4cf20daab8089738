#include "app/OrvgConnectionSettingsDialog.h"
#include "app/OrvgIpControlWidget.h"
#include "ecu/store/ConnectionSettings.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "tests/support/CursorWatchingSocket.h"
#include "tests/support/LoopbackEcu.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/PatientReceive.h"
#include "tests/support/ScriptedControlSocket.h"
#include "tests/support/key_batches.h"
#include "tests/support/modal_dialogs.h"
#include "tests/support/screenshots.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr std::uint8_t kNetworkCommand = 3;

using Bytes = std::vector<std::uint8_t>;

// 10.0.0.2, 255.0.0.0, 10.0.0.1, host 10.0.0.9, ports 4001 (signals), 4002 (control), 4003.
const Bytes kEcuRecord = {10, 0,  0, 2, 255, 0,    0,    0,    10,   0,    0,
                          1,  10, 0, 0, 9,   0xA1, 0x0F, 0xA2, 0x0F, 0xA3, 0x0F};

} // namespace

class TestConnectionDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void opensAtItsSizeWithTheStoredValues();
    void emptyStoreLeavesTheAddressesEmpty();
    void typingStartsWithANewAddress();
    void incompleteAddressCanNeitherBeAcceptedNorTransmitted_data();
    void incompleteAddressCanNeitherBeAcceptedNorTransmitted();
    void everyIncompleteAddressIsNamed();
    void incompleteAddressIsNotStoredInAnyOtherWay();
    void onePortForBothStreamsIsToldAtOk();
    void onePortIsEnoughWithoutFreespaces();
    void hasTheTextsOfItsForm();
    void tabGoesFromFieldToField();
    void portsAcceptOneTo65535();
    void storedFreespacePortOfZeroUnchecksTheGroup();
    void waitingImportIsMarkedAndOffered();
    void okStoresAnImportAndForgetsIt();
    void cancelKeepsAnImport();
    void dialogAcceptedUnchangedChangesNothing();
    void uncheckedFreespacesAreStoredAsZero();
    void hostileImportIsShownAsEmptyFieldsAndDefaultPorts();

    void readAsksTheTypedAddressWithoutSavingIt();
    void readFillsEveryField();
    void freespacePortOfZeroReadFromTheEcuUnchecksTheGroup();
    void failedReadTellsWhyAndKeepsTheFields();
    void clientHasItsOwnSocketBackAfterEveryRead_data();
    void clientHasItsOwnSocketBackAfterEveryRead();
    void temporarySocketsAreReleased();
    void readThroughAnotherKindOfSocketUsesThatSocket();

    void transmitTellsTheSavedEcuWhateverIsTyped();
    void transmitSendsZeroForUncheckedFreespaces();
    void failedTransmitTellsWhy();
    void waitCursorIsShownWhileTheEcuIsTalkedTo_data();
    void waitCursorIsShownWhileTheEcuIsTalkedTo();

private:
    template<typename Widget>
    Widget* child(const char* name) const
    {
        auto* found = mDialog->findChild<Widget*>(QLatin1String(name));
        Q_ASSERT(found);
        return found;
    }
    void open();
    void click(const char* button) { child<QPushButton>(button)->click(); }
    QPushButton* ok() const
    {
        return child<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok);
    }
    QString address(const char* control) const
    {
        return child<OrvgIpControlWidget>(control)->text();
    }
    int port(const char* spinBox) const { return child<QSpinBox>(spinBox)->value(); }
    QVariant stored(const char* path) const { return mStore->value(QLatin1String(path)); }

    QTemporaryDir mFolder;
    std::unique_ptr<QSettings> mStore;
    std::optional<PatientReceive> mPatience;
    std::unique_ptr<LoopbackEcu> mSavedEcu;
    std::unique_ptr<orv::OrvCtrlSocket> mSocket;
    std::unique_ptr<orv::OrvCtrlClient> mClient;
    std::unique_ptr<OrvgConnectionSettingsDialog> mDialog;
};

void TestConnectionDialog::init()
{
    const QString file = mFolder.filePath(QStringLiteral("store.ini"));
    mStore.reset();
    QFile::remove(file);
    mStore = std::make_unique<QSettings>(file, QSettings::IniFormat);
    settings::writeDefaultNetwork(*mStore);
    mPatience.emplace();
    mSavedEcu = std::make_unique<LoopbackEcu>();
    mSocket = std::make_unique<orv::OrvCtrlSocket>("127.0.0.1", mSavedEcu->port());
    mClient = std::make_unique<orv::OrvCtrlClient>(mSocket.get());
}

void TestConnectionDialog::cleanup()
{
    mDialog.reset();
}

void TestConnectionDialog::open()
{
    mDialog = std::make_unique<OrvgConnectionSettingsDialog>(mClient.get(), mStore.get());
    mDialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(mDialog.get()));
    QApplication::setActiveWindow(mDialog.get());
}

void TestConnectionDialog::opensAtItsSizeWithTheStoredValues()
{
    open();
    QCOMPARE(mDialog->size(), QSize(300, 385));
    QCOMPARE(mDialog->windowTitle(), QStringLiteral("Connection Settings"));
    QCOMPARE(address("ecuIpControl"), QStringLiteral("192.168.1.3"));
    QCOMPARE(address("subnetControl"), QStringLiteral("255.255.255.0"));
    QCOMPARE(address("gatewayControl"), QStringLiteral("192.168.1.1"));
    QCOMPARE(port("controlPort"), 50002);
    QCOMPARE(address("hostIpControl"), QStringLiteral("192.168.1.5"));
    QCOMPARE(port("mReceivingPort"), 50001);
    QCOMPARE(port("mFreespacesPort"), 50003);
    QVERIFY(child<QGroupBox>("mFreespacesGB")->isChecked());
    saveScreenshot(*mDialog, QStringLiteral("connection-settings"));
}

void TestConnectionDialog::emptyStoreLeavesTheAddressesEmpty()
{
    mStore->clear();
    open();
    for (const char* control : {"ecuIpControl", "subnetControl", "gatewayControl", "hostIpControl"})
        QCOMPARE(address(control), QStringLiteral("..."));
    QVERIFY(!ok()->isEnabled());
    QCOMPARE(port("controlPort"), 50002);
    QCOMPARE(port("mReceivingPort"), 50001);
    QCOMPARE(port("mFreespacesPort"), 50003);
    QVERIFY(child<QGroupBox>("mFreespacesGB")->isChecked());
}

void TestConnectionDialog::typingStartsWithANewAddress()
{
    mStore->setValue(QStringLiteral("network/ecu_ip"), QStringLiteral("127.0.0.1"));
    open();
    typeAtOnce(mDialog->windowHandle(), QStringLiteral("192.168.1.5"));
    QCOMPARE(address("ecuIpControl"), QStringLiteral("192.168.1.5"));
    QCOMPARE(address("subnetControl"), QStringLiteral("255.255.255.0"));
}

void TestConnectionDialog::incompleteAddressCanNeitherBeAcceptedNorTransmitted_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("octet");
    QTest::addColumn<QString>("toolTip");

    QTest::newRow("ECU") << "ecuIpControl" << 0 << "Still wanted: ECU IP address";
    QTest::newRow("subnet") << "subnetControl" << 1 << "Still wanted: ECU subnet mask";
    QTest::newRow("gateway") << "gatewayControl" << 2 << "Still wanted: ECU default gateway";
    QTest::newRow("host") << "hostIpControl" << 3 << "Still wanted: Host IP address";
}

void TestConnectionDialog::incompleteAddressCanNeitherBeAcceptedNorTransmitted()
{
    QFETCH(QString, control);
    QFETCH(int, octet);
    open();
    QVERIFY(ok()->isEnabled() && child<QPushButton>("transmitButton")->isEnabled());
    QCOMPARE(ok()->toolTip(), QString());
    QLineEdit* field = mDialog->findChild<QWidget*>(control)->findChildren<QLineEdit*>().at(octet);
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QVERIFY(!ok()->isEnabled());
    QVERIFY(!child<QPushButton>("transmitButton")->isEnabled());
    QTEST(ok()->toolTip(), "toolTip");
    QVERIFY(child<QPushButton>("readButton")->isEnabled());
    QTest::keyClick(field, Qt::Key_7);
    QVERIFY(ok()->isEnabled() && child<QPushButton>("transmitButton")->isEnabled());
    QCOMPARE(ok()->toolTip(), QString());
}

void TestConnectionDialog::everyIncompleteAddressIsNamed()
{
    mStore->remove(QStringLiteral("network/ecu_ip"));
    mStore->setValue(QStringLiteral("network/host_ip"), QStringLiteral("192..1.5"));
    open();
    QVERIFY(!ok()->isEnabled());
    QVERIFY(!child<QPushButton>("transmitButton")->isEnabled());
    QCOMPARE(ok()->toolTip(), QStringLiteral("Still wanted: ECU IP address, Host IP address"));
}

void TestConnectionDialog::incompleteAddressIsNotStoredInAnyOtherWay()
{
    open();
    child<OrvgIpControlWidget>("hostIpControl")->setText(QStringLiteral("192.168.1"));
    QTest::keyClick(child<QSpinBox>("controlPort"), Qt::Key_Return);
    mDialog->accept();
    QVERIFY(mDialog->isVisible());
    QCOMPARE(stored("network/host_ip").toString(), QStringLiteral("192.168.1.5"));
}

void TestConnectionDialog::onePortForBothStreamsIsToldAtOk()
{
    open();
    child<QSpinBox>("mFreespacesPort")->setValue(50001);
    const MessageBoxWatcher watcher;
    ok()->click();
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().icon, QMessageBox::Warning);
    QCOMPARE(watcher.boxes().first().title, QStringLiteral("Connection Settings"));
    QCOMPARE(watcher.boxes().first().text,
             QStringLiteral("Signals and freespaces cannot both be received on port 50001.\n"
                            "Please choose another port for one of them."));
    QVERIFY(mDialog->isVisible());
    QVERIFY(!mStore->contains(QStringLiteral("network/fsp_port")));
    child<QSpinBox>("mFreespacesPort")->setValue(50002);
    ok()->click();
    QCOMPARE(mDialog->result(), int(QDialog::Accepted));
    QCOMPARE(stored("network/fsp_port").toInt(), 50002);
    QCOMPARE(watcher.boxes().size(), 1);
}

void TestConnectionDialog::onePortIsEnoughWithoutFreespaces()
{
    open();
    child<QSpinBox>("mFreespacesPort")->setValue(50001);
    child<QGroupBox>("mFreespacesGB")->setChecked(false);
    ok()->click();
    QCOMPARE(mDialog->result(), int(QDialog::Accepted));
}

void TestConnectionDialog::hasTheTextsOfItsForm()
{
    open();
    QStringList labels;
    for (const QLabel* label : mDialog->findChildren<QLabel*>()) {
        if (label->text() != QStringLiteral("."))
            labels.append(label->text());
    }
    labels.sort();
    QCOMPARE(labels, QStringList({"ECU IP address:", "ECU control port:", "ECU default gateway:",
                                  "ECU subnet mask:", "Host IP address:", "Receiving port:",
                                  "Signal receiving port:"}));
    QCOMPARE(child<QGroupBox>("mFreespacesGB")->title(), QStringLiteral("Freespaces"));
    QCOMPARE(child<QGroupBox>("groupBox")->title(), QStringLiteral("ECU settings"));
    QCOMPARE(child<QPushButton>("readButton")->text(), QStringLiteral("Read"));
    QCOMPARE(child<QPushButton>("transmitButton")->text(), QStringLiteral("Transmit"));
}

void TestConnectionDialog::tabGoesFromFieldToField()
{
    open();
    child<QWidget>("ecuIpControl")->setFocus();
    QStringList visited;
    for (int count = 0; count < 24; ++count) {
        QWidget* focused = QApplication::focusWidget();
        auto* control = qobject_cast<OrvgIpControlWidget*>(focused->parentWidget());
        const QString name = control ? control->objectName() : focused->objectName();
        if (visited.isEmpty() || visited.last() != name)
            visited.append(name);
        QTest::keyClick(focused, Qt::Key_Tab);
    }
    QCOMPARE(visited.mid(0, 10),
             QStringList({"ecuIpControl", "subnetControl", "gatewayControl", "controlPort",
                          "hostIpControl", "mReceivingPort", "mFreespacesGB", "mFreespacesPort",
                          "readButton", "transmitButton"}));
}

void TestConnectionDialog::portsAcceptOneTo65535()
{
    open();
    for (const char* name : {"controlPort", "mReceivingPort", "mFreespacesPort"}) {
        QCOMPARE(child<QSpinBox>(name)->minimum(), 1);
        QCOMPARE(child<QSpinBox>(name)->maximum(), 65535);
    }
}

void TestConnectionDialog::storedFreespacePortOfZeroUnchecksTheGroup()
{
    mStore->setValue(QStringLiteral("network/fsp_port"), 0);
    open();
    QVERIFY(!child<QGroupBox>("mFreespacesGB")->isChecked());
    QCOMPARE(port("mFreespacesPort"), 1);
}

void TestConnectionDialog::waitingImportIsMarkedAndOffered()
{
    mStore->setValue(QStringLiteral("network/fsp_port"), 50123);
    mStore->setValue(QStringLiteral("network_imported/ecu_ip"), QStringLiteral("10.0.0.7"));
    open();
    QCOMPARE(mDialog->windowTitle(), QStringLiteral("*IMPORTED*Connection Settings"));
    QCOMPARE(address("ecuIpControl"), QStringLiteral("10.0.0.7"));
    QCOMPARE(port("mFreespacesPort"), 50123);
}

void TestConnectionDialog::okStoresAnImportAndForgetsIt()
{
    mStore->setValue(QStringLiteral("network_imported/ecu_ip"), QStringLiteral("10.0.0.7"));
    open();
    child<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok)->click();
    QCOMPARE(mDialog->result(), int(QDialog::Accepted));
    QCOMPARE(stored("network/ecu_ip").toString(), QStringLiteral("10.0.0.7"));
    QVERIFY(!mStore->childGroups().contains(QStringLiteral("network_imported")));
}

void TestConnectionDialog::cancelKeepsAnImport()
{
    mStore->setValue(QStringLiteral("network_imported/ecu_ip"), QStringLiteral("10.0.0.7"));
    open();
    child<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Cancel)->click();
    QCOMPARE(mDialog->result(), int(QDialog::Rejected));
    QCOMPARE(stored("network/ecu_ip").toString(), QStringLiteral("192.168.1.3"));
    QCOMPARE(stored("network_imported/ecu_ip").toString(), QStringLiteral("10.0.0.7"));
}

void TestConnectionDialog::dialogAcceptedUnchangedChangesNothing()
{
    open();
    mDialog->accept();
    QCOMPARE(stored("network/ecu_ip").toString(), QStringLiteral("192.168.1.3"));
    QCOMPARE(stored("network/ecu_subnet").toString(), QStringLiteral("255.255.255.0"));
    QCOMPARE(stored("network/ecu_gateway").toString(), QStringLiteral("192.168.1.1"));
    QCOMPARE(stored("network/control_port").toInt(), 50002);
    QCOMPARE(stored("network/host_ip").toString(), QStringLiteral("192.168.1.5"));
    QCOMPARE(stored("network/receive_port").toInt(), 50001);
    QCOMPARE(stored("network/fsp_port").toInt(), 50003);
}

void TestConnectionDialog::uncheckedFreespacesAreStoredAsZero()
{
    open();
    child<QGroupBox>("mFreespacesGB")->setChecked(false);
    mDialog->accept();
    QCOMPARE(stored("network/fsp_port"), QVariant(0));
}

void TestConnectionDialog::hostileImportIsShownAsEmptyFieldsAndDefaultPorts()
{
    mStore->setValue(QStringLiteral("network_imported/ecu_ip"), QStringLiteral("999.-1.x.0x7f"));
    mStore->setValue(QStringLiteral("network_imported/control_port"), QStringLiteral("70000"));
    mStore->setValue(QStringLiteral("network_imported/receive_port"), QStringLiteral("port"));
    open();
    QCOMPARE(address("ecuIpControl"), QStringLiteral("..."));
    QCOMPARE(port("controlPort"), 50002);
    QCOMPARE(port("mReceivingPort"), 50001);
}

void TestConnectionDialog::readAsksTheTypedAddressWithoutSavingIt()
{
    LoopbackEcu typedEcu;
    typedEcu.answerAll(kEcuRecord);
    open();
    child<OrvgIpControlWidget>("ecuIpControl")->setText(QStringLiteral("127.0.0.1"));
    child<QSpinBox>("controlPort")->setValue(typedEcu.port());
    click("readButton");
    QCOMPARE(typedEcu.requests().size(), std::size_t{1});
    QCOMPARE(typedEcu.requests().front().payload, Bytes{1});
    QVERIFY(mSavedEcu->requests().empty());
    QCOMPARE(stored("network/ecu_ip").toString(), QStringLiteral("192.168.1.3"));
    QCOMPARE(stored("network/control_port").toInt(), 50002);
}

void TestConnectionDialog::readFillsEveryField()
{
    ScriptedControlSocket socket;
    socket.queueReply(kNetworkCommand, kEcuRecord);
    mClient->setSocket(&socket);
    open();
    click("readButton");
    QCOMPARE(address("ecuIpControl"), QStringLiteral("10.0.0.2"));
    QCOMPARE(address("subnetControl"), QStringLiteral("255.0.0.0"));
    QCOMPARE(address("gatewayControl"), QStringLiteral("10.0.0.1"));
    QCOMPARE(address("hostIpControl"), QStringLiteral("10.0.0.9"));
    QCOMPARE(port("mReceivingPort"), 4001);
    QCOMPARE(port("controlPort"), 4002);
    QCOMPARE(port("mFreespacesPort"), 4003);
}

void TestConnectionDialog::freespacePortOfZeroReadFromTheEcuUnchecksTheGroup()
{
    Bytes record = kEcuRecord;
    record[20] = record[21] = 0;
    ScriptedControlSocket socket;
    socket.queueReply(kNetworkCommand, record);
    socket.queueReply(kNetworkCommand, kEcuRecord);
    mClient->setSocket(&socket);
    open();
    click("readButton");
    QVERIFY(!child<QGroupBox>("mFreespacesGB")->isChecked());
    click("readButton");
    QVERIFY(child<QGroupBox>("mFreespacesGB")->isChecked());
}

void TestConnectionDialog::failedReadTellsWhyAndKeepsTheFields()
{
    ScriptedControlSocket socket;
    socket.queueReply(kNetworkCommand, Bytes(21));
    mClient->setSocket(&socket);
    open();
    const MessageBoxWatcher watcher;
    click("readButton");
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().icon, QMessageBox::Warning);
    QCOMPARE(watcher.boxes().first().title, QStringLiteral("Communication error"));
    QCOMPARE(watcher.boxes().first().text, QStringLiteral("wrong data format"));
    QVERIFY(mDialog->isVisible());
    QCOMPARE(address("ecuIpControl"), QStringLiteral("192.168.1.3"));
}

void TestConnectionDialog::clientHasItsOwnSocketBackAfterEveryRead_data()
{
    QTest::addColumn<QString>("typedAddress");
    QTest::addColumn<bool>("ecuAnswers");
    QTest::addColumn<int>("boxes");

    QTest::newRow("answered") << "127.0.0.1" << true << 0;
    QTest::newRow("not answered") << "127.0.0.1" << false << 1;
    QTest::newRow("no address typed") << "" << true << 1;
}

void TestConnectionDialog::clientHasItsOwnSocketBackAfterEveryRead()
{
    QFETCH(QString, typedAddress);
    QFETCH(bool, ecuAnswers);
    LoopbackEcu typedEcu;
    if (ecuAnswers)
        typedEcu.answerAll(kEcuRecord);
    else
        mPatience.reset();
    open();
    child<OrvgIpControlWidget>("ecuIpControl")->setText(typedAddress);
    child<QSpinBox>("controlPort")->setValue(typedEcu.port());
    const MessageBoxWatcher watcher;
    click("readButton");
    QTEST(int(watcher.boxes().size()), "boxes");
    QCOMPARE(mClient->socket(), static_cast<orv::OrvCtrlSocketBase*>(mSocket.get()));
    QVERIFY(!QApplication::overrideCursor());
}

void TestConnectionDialog::temporarySocketsAreReleased()
{
    const auto openFiles = [] { return QDir(QStringLiteral("/proc/self/fd")).entryList().size(); };
    LoopbackEcu typedEcu;
    typedEcu.answerAll(kEcuRecord);
    open();
    const auto readOnce = [&] {
        child<OrvgIpControlWidget>("ecuIpControl")->setText(QStringLiteral("127.0.0.1"));
        child<QSpinBox>("controlPort")->setValue(typedEcu.port());
        click("readButton");
    };
    readOnce();
    const auto before = openFiles();
    for (int count = 0; count < 20; ++count)
        readOnce();
    QCOMPARE(openFiles(), before);
    QCOMPARE(typedEcu.requests().size(), std::size_t{21});
}

void TestConnectionDialog::readThroughAnotherKindOfSocketUsesThatSocket()
{
    ScriptedControlSocket socket;
    socket.queueReply(kNetworkCommand, kEcuRecord);
    mClient->setSocket(&socket);
    open();
    click("readButton");
    QCOMPARE(socket.requests().size(), std::size_t{1});
    QCOMPARE(mClient->socket(), static_cast<orv::OrvCtrlSocketBase*>(&socket));
}

void TestConnectionDialog::transmitTellsTheSavedEcuWhateverIsTyped()
{
    LoopbackEcu typedEcu;
    mSavedEcu->answerAll({});
    open();
    child<OrvgIpControlWidget>("ecuIpControl")->setText(QStringLiteral("127.0.0.1"));
    child<QSpinBox>("controlPort")->setValue(4002);
    child<QSpinBox>("mReceivingPort")->setValue(4001);
    const MessageBoxWatcher watcher;
    click("transmitButton");
    QVERIFY(typedEcu.requests().empty());
    QCOMPARE(mSavedEcu->requests().size(), std::size_t{1});
    QCOMPARE(mSavedEcu->requests().front().payload,
             (Bytes{0, 127, 0,   0, 1, 255,  255,  255,  0,    192,  168, 1,
                    1, 192, 168, 1, 5, 0xA1, 0x0F, 0xA2, 0x0F, 0x53, 0xC3}));
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().icon, QMessageBox::Information);
    QCOMPARE(watcher.boxes().first().title, QStringLiteral("Settings written"));
    QCOMPARE(watcher.boxes().first().text,
             QStringLiteral("Network settings are successfully transmitted.\n"
                            "Please reset the ECU to apply new settings"));
}

void TestConnectionDialog::transmitSendsZeroForUncheckedFreespaces()
{
    mSavedEcu->answerAll({});
    open();
    child<QGroupBox>("mFreespacesGB")->setChecked(false);
    const MessageBoxWatcher watcher;
    click("transmitButton");
    const Bytes payload = mSavedEcu->requests().front().payload;
    QCOMPARE(payload.size(), std::size_t{23});
    QCOMPARE(int(payload[21]), 0);
    QCOMPARE(int(payload[22]), 0);
}

void TestConnectionDialog::failedTransmitTellsWhy()
{
    mSavedEcu->answerAll({}, 5);
    open();
    const MessageBoxWatcher watcher;
    click("transmitButton");
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().title, QStringLiteral("Communication error"));
    QCOMPARE(watcher.boxes().first().text, QStringLiteral("ECU error (5)"));
    QVERIFY(mDialog->isVisible());
}

void TestConnectionDialog::waitCursorIsShownWhileTheEcuIsTalkedTo_data()
{
    QTest::addColumn<QByteArray>("button");

    QTest::newRow("read") << QByteArray("readButton");
    QTest::newRow("transmit") << QByteArray("transmitButton");
}

void TestConnectionDialog::waitCursorIsShownWhileTheEcuIsTalkedTo()
{
    QFETCH(QByteArray, button);
    CursorWatchingSocket socket;
    mClient->setSocket(&socket);
    open();
    bool isBoxWithoutWaitCursor = false;
    whenOpened<QMessageBox>(this, [&](QMessageBox& box) {
        isBoxWithoutWaitCursor = !QApplication::overrideCursor();
        box.accept();
    });
    click(button);
    QCOMPARE(socket.hadWaitCursor, std::vector<bool>{true});
    QVERIFY(isBoxWithoutWaitCursor);
    QVERIFY(!QApplication::overrideCursor());
}

QTEST_MAIN(TestConnectionDialog)
#include "test_connection_dialog.moc"
