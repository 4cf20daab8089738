#include "tests/app/faults/WindowUnderFault.h"

#include "app/OrvgConnectionSettingsDialog.h"
#include "app/OrvgIpControlWidget.h"
#include "app/OrvgStatusWidget.h"
#include "orv_decoder/metatypes.h"
#include "tests/support/EcuAccess.h"
#include "tests/support/modal_dialogs.h"
#include "views/positions/OrvgSensorPositionView.h"
#include "views/recording/OrvgCurveRecordingDialog.h"
#include "views/sequence/OrvgMseqView.h"
#include "views/thresholds/CalibrationDialog.h"
#include "views/thresholds/OrvgThresholdView.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QSpinBox>
#include <QStatusBar>
#include <QTableView>
#include <QtTest>

#include <chrono>

namespace {

constexpr int kFirstProbeMs = 100;
constexpr int kTickMs = 11;

// Twice as long as a calibration may take.
constexpr int kPatienceMs = 43000;

// One echo of sensor 1 at 5.12 ms.
const std::vector<std::uint8_t> kMeasurement = {1, 0, 0, 0, 1, 0, 2, 0, 1, 0, 1, 100, 0, 7, 0};

QString fieldsOf(const OrvgConnectionSettingsDialog& dialog)
{
    QStringList fields;
    for (const char* name : {"ecuIpControl", "subnetControl", "gatewayControl", "hostIpControl"})
        fields << dialog.findChild<OrvgIpControlWidget*>(name)->text();
    for (const char* name : {"controlPort", "mReceivingPort", "mFreespacesPort"})
        fields << dialog.findChild<QSpinBox*>(name)->text();
    return fields.join(' ');
}

} // namespace

WindowUnderFault::WindowUnderFault() : mReceivePort(freeUdpPort()), mFreespacePort(freeUdpPort())
{
    orv::registerMetaTypes();
    mProfile.setNetwork(mEcu.port(), mReceivePort, mFreespacePort);
    mClock.whileReceiving([this] { mEcu.serveWaiting(); });
    renewEcu();
}

WindowUnderFault::~WindowUnderFault() = default;

void WindowUnderFault::open()
{
    mWindow = std::make_unique<TarvioWindow>();
    mWindow->show();
    pass(0);
    pass(kFirstProbeMs);
}

void WindowUnderFault::renewEcu()
{
    mEcu.settle();
    ++mEcuSeed;
    const EcuConfiguration configuration = configurationOfSeed(mEcuSeed);
    ecusim::EcuState& ecu = mEcu.state();
    ecu.sequence = configuration.sequence;
    ecu.thresholds = ecu.keptThresholds = configuration.thresholds;
    ecu.positions = configuration.positions;
    ecu.network = networkOfSeed(mEcuSeed);
}

void WindowUnderFault::pass(int milliseconds)
{
    mClock.advance(std::chrono::milliseconds(milliseconds));
    QCoreApplication::processEvents();
}

void WindowUnderFault::click(const char* button)
{
    mWindow->findChild<QAbstractButton*>(QLatin1String(button))->click();
}

void WindowUnderFault::trigger(const char* action)
{
    mWindow->findChild<QAction*>(QLatin1String(action))->trigger();
}

void WindowUnderFault::selectSensor(std::uint8_t sensor)
{
    mWindow->findChild<QTableView*>(QStringLiteral("mTableView"))->selectRow(sensor);
}

void WindowUnderFault::inConnectionDialog(const char* button)
{
    whenOpened<OrvgConnectionSettingsDialog>(
        mWindow.get(), [this, button](OrvgConnectionSettingsDialog& dialog) {
            dialog.findChild<QAbstractButton*>(QLatin1String(button))->click();
            mDialogFields = fieldsOf(dialog);
            dialog.reject();
        });
    trigger("actionConnection");
}

// A window moves with every result; the first result starts and the last one ends the recording.
void WindowUnderFault::record(std::uint8_t sensor, int windowCount)
{
    whenOpened<OrvgCurveRecordingDialog>(
        mWindow.get(), [this, sensor, windowCount](OrvgCurveRecordingDialog& dialog) {
            dialog.findChild<QComboBox*>(QStringLiteral("mSensorCb"))->setCurrentIndex(sensor);
            dialog.findChild<QSpinBox*>(QStringLiteral("mSamplesCountSb"))->setValue(1);
            dialog.findChild<QAbstractButton*>(QStringLiteral("mRecordPb"))->click();
            for (int i = 0; i < 1 + windowCount; ++i)
                streamRecord();
            dialog.findChild<QAbstractButton*>(QStringLiteral("mStopPb"))->click();
            streamRecord();
            dialog.reject();
        });
    trigger("actionEnvelopCurveRecording");
    // The poll of the recording goes on until a capture ends.
    trigger("actionCapture");
    trigger("actionCapture");
}

void WindowUnderFault::streamRecord()
{
    mEcu.stream(mReceivePort, kMeasurement);
    pass(kTickMs);
}

void WindowUnderFault::calibrate()
{
    click("mCalibrateTb");
    for (int ms = 0; ms < kPatienceMs && mWindow->findChild<CalibrationDialog*>(); ms += 100)
        pass(100);
    pass(0);
}

// As TemporaryProfile::setNetwork() has set them.
QString WindowUnderFault::storedFields() const
{
    return QStringLiteral("127.0.0.1 255.0.0.0 127.0.0.1 127.0.0.1 %1 %2 %3")
        .arg(mEcu.port())
        .arg(mReceivePort)
        .arg(mFreespacePort);
}

void WindowUnderFault::forgetTold()
{
    mWatcher.forget();
    if (mWindow)
        mWindow->statusBar()->clearMessage();
}

QStringList WindowUnderFault::takeBoxes()
{
    QStringList boxes;
    for (const MessageBoxWatcher::Box& box : mWatcher.boxes())
        boxes << box.title + QStringLiteral(": ") + box.text;
    mWatcher.forget();
    return boxes;
}

QString WindowUnderFault::statusMessage() const
{
    return mWindow->statusBar()->currentMessage();
}

QString WindowUnderFault::linkState() const
{
    return mWindow->findChild<OrvgStatusWidget*>()->toolTip();
}

QString WindowUnderFault::configuration() const
{
    return textOf([this](QXmlStreamWriter& writer) {
        mWindow->findChild<OrvgMseqView*>()->writeXml(writer);
        mWindow->findChild<OrvgThresholdView*>()->writeXml(writer);
        mWindow->findChild<OrvgSensorPositionView*>()->writeXml(writer);
    });
}

QByteArray WindowUnderFault::storeFile() const
{
    QFile file(mProfile.fileName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

QString WindowUnderFault::blockade()
{
    if (const QWidget* modal = QApplication::activeModalWidget())
        return QStringLiteral("still open: ") + modal->windowTitle();
    if (QApplication::overrideCursor())
        return QStringLiteral("the wait cursor is still shown");
    auto* table = mWindow->findChild<QTableView*>(QStringLiteral("mTableView"));
    // From no row at all, either leads to the first one.
    for (const int key : {Qt::Key_Home, Qt::Key_End}) {
        QTest::keyClick(table, static_cast<Qt::Key>(key), Qt::ControlModifier);
        if (table->currentIndex().row() != (key == Qt::Key_Home ? 0 : orv::kSensorCount - 1))
            return QStringLiteral("the table does not follow the keys");
    }
    return {};
}
