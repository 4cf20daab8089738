#include "tests/app/scenes/Stage.h"

#include "orv_decoder/metatypes.h"
#include "tests/app/scenes/DialogQueue.h"
#include "tests/support/FreespaceBuilder.h"
#include "tests/support/MeasurementBuilder.h"

#include <QAbstractButton>
#include <QAction>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QtTest>

#include <chrono>

namespace {

using Frame = LoopbackEcu::Frame;

constexpr std::uint8_t kRefusal = 5;
constexpr std::uint8_t kAborted = 0xFF;
constexpr std::uint8_t kStillRunning = 1;
constexpr int kFirstProbeMs = 100;

bool asksForCalibration(const orv::ControlRequest& request)
{
    return request.code == static_cast<std::uint8_t>(orv::ControlCommand::AutoCalibration) &&
           !request.payload.empty() &&
           request.payload[0] == static_cast<std::uint8_t>(orv::ControlAccess::Read);
}

orv::OrvMeasurementResult aResult()
{
    MeasurementBuilder result;
    result.withSender(0).withReceiver(1);
    for (std::uint8_t sensor = 0; sensor < 12; ++sensor) {
        for (std::uint16_t echo = 1; echo <= 5; ++echo)
            result.withEcho(sensor, static_cast<std::uint16_t>(echo * 5120 + sensor * 100), 9);
    }
    return result;
}

orv::OrvFreespacePackage allFreespaces()
{
    orv::OrvFreespacePackage package{.valid = true, .entries = {}};
    for (std::uint8_t sensor = 0; sensor < 12; ++sensor) {
        package.entries.push_back(anEntry(sensor)
                                      .at(static_cast<std::int16_t>(500 * (sensor % 6)),
                                          static_cast<std::int16_t>(sensor < 6 ? 900 : -900), 0)
                                      .withDistance(0, 12870, {600, 200}, {600, -200})
                                      .withDistance(1, 1870, {700, 200}, {700, -200})
                                      .withDistance(2, 65535, {800, 200}, {800, -200}));
    }
    return package;
}

} // namespace

Stage::Stage(const QSize& size) : mReceivePort(freeUdpPort()), mFreespacePort(freeUdpPort())
{
    orv::registerMetaTypes();
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    mProfile.setNetwork(mEcu.port(), mReceivePort, mFreespacePort);
    mEcu.setHandler([this](const orv::ControlRequest& request) { return reply(request); });
    mClock.whileReceiving([this] { mEcu.serveWaiting(); });
    mWindow = std::make_unique<TarvioWindow>();
    if (size.isValid())
        mWindow->resize(size);
    mWindow->show();
    pass(kFirstProbeMs);
    showLiveData();
}

Stage::~Stage() = default;

std::optional<Frame> Stage::reply(const orv::ControlRequest& request)
{
    if (mMood == Mood::Refuses)
        return orv::encodeReply(request.code, {}, kRefusal);
    if (asksForCalibration(request) && mMood == Mood::AbortsCalibration)
        return orv::encodeReply(request.code, Frame{kAborted}, 0);
    if (asksForCalibration(request) && mMood == Mood::CalibratesForEver)
        return orv::encodeReply(request.code, Frame{kStillRunning}, 0);
    const auto command = static_cast<orv::ControlCommand>(request.code);
    return mCommands.answer(orv::encodeRequest(command, request.payload), mClock.now().count())
        .reply;
}

void Stage::showLiveData()
{
    for (int i = 0; i < 5; ++i) {
        emit mWindow->measResultReceived(aResult());
        emit mWindow->freespaceReceived(allFreespaces());
    }
    QCoreApplication::processEvents();
}

void Stage::pass(int milliseconds)
{
    mClock.advance(std::chrono::milliseconds(milliseconds));
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void Stage::trigger(const char* action)
{
    part<QAction>(action).trigger();
}

void Stage::click(const char* button)
{
    part<QAbstractButton>(button).click();
}

void Stage::play(const std::function<void()>& act, const Look& look, const QVector<Answer>& answers)
{
    DialogQueue dialogs(look, answers);
    act();
    // What opens its box and returns.
    pass(1);
    while (QApplication::activeModalWidget())
        QTest::qWait(1);
    pass(1);
}

Stage::Answer Stage::press(QMessageBox::StandardButton button)
{
    return [button](QWidget& dialog) {
        if (auto* box = qobject_cast<QMessageBox*>(&dialog))
            box->button(button)->click();
        else if (auto* buttons = dialog.findChild<QDialogButtonBox*>())
            buttons->button(static_cast<QDialogButtonBox::StandardButton>(button))->click();
    };
}

Stage::Answer Stage::dismiss()
{
    return [](QWidget& dialog) {
        if (auto* asked = qobject_cast<QDialog*>(&dialog))
            asked->reject();
    };
}
