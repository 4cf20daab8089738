#include "tests/app/faults/FaultCase.h"

#include "tools/ecu_simulator/SeededRandom.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <utility>

namespace {

using orv::ControlCommand;

constexpr int kWatchIntervalMs = 3000;

std::uint64_t baseSeed()
{
    return qEnvironmentVariableIsSet("TARVIO_FAULT_SEED")
               ? qEnvironmentVariable("TARVIO_FAULT_SEED").toULongLong()
               : 1;
}

QString difference(const char* what, const QString& actual, const QString& expected)
{
    if (actual == expected)
        return {};
    return QStringLiteral("%1:\n%2\ninstead of\n%3\n").arg(what, actual, expected);
}

QString difference(const char* what, bool isAsExpected)
{
    return isAsExpected ? QString() : QStringLiteral("%1\n").arg(what);
}

std::vector<Exchange> exchangesOf(const std::vector<CarriedOut>& outcome)
{
    std::vector<Exchange> exchanges;
    for (const CarriedOut& step : outcome)
        exchanges.push_back(step.exchange);
    return exchanges;
}

// An ECU that is gone sees nothing.
std::vector<Exchange> exchangesSeen(const std::vector<CarriedOut>& outcome, const FaultPlan& plan)
{
    std::vector<Exchange> exchanges = exchangesOf(outcome);
    if (plan.fault == Fault::Gone)
        exchanges.resize(plan.exchange);
    return exchanges;
}

std::vector<Exchange> exchangesOf(const std::vector<orv::ControlRequest>& requests)
{
    std::vector<Exchange> exchanges(requests.size());
    std::ranges::transform(requests, exchanges.begin(), exchangeOf);
    return exchanges;
}

// Another part than the one that failed, and its own.
std::array<ControlCommand, 2> partsAfter(ControlCommand command)
{
    switch (command) {
    case ControlCommand::MeasurementSequence:
        return {ControlCommand::SensorPositions, command};
    case ControlCommand::Thresholds:
    case ControlCommand::SensorPositions:
    case ControlCommand::NetworkSettings:
        return {ControlCommand::MeasurementSequence, command};
    default:
        return {ControlCommand::MeasurementSequence, ControlCommand::Thresholds};
    }
}

} // namespace

FaultCase::FaultCase(const Operations& operations, int operation, const FaultKind& fault,
                     std::uint64_t seed)
{
    ecusim::SeededRandom random(seed);
    mSensor = static_cast<std::uint8_t>(random.below(orv::kSensorCount));
    mOperation = operations(mSensor)[static_cast<std::size_t>(operation)];
    mPlan.fault = fault.fault;
    mPlan.exchange = mOperation.hits.first + random.below(mOperation.hits.count);
    mPlan.status = static_cast<std::uint8_t>(1 + random.below(255));
    mPlan.noise = random.below(1U << 20);
    const std::vector<CarriedOut> outcome = outcomeOf(mOperation, mPlan);
    mPlan.exchanges = outcome.size() - mPlan.exchange;
    mPlan.request = outcome[mPlan.exchange].exchange.request();
    mPlan.isProbe = outcome[mPlan.exchange].exchange.isProbe();
}

QString FaultCase::deviation()
{
    for (const FaultPlan& plan : plans()) {
        if (!mWindow || mOperation.opensWindow)
            openWindow();
        else
            mWindow->pass(kWatchIntervalMs); // it finds the ECU again
        const QString deviation = deviationWith(plan);
        if (!deviation.isEmpty())
            return QStringLiteral("exchange %1, length %2, status %3: %4")
                .arg(plan.exchange)
                .arg(plan.length)
                .arg(plan.status)
                .arg(deviation);
    }
    return deviationOfFollowUps();
}

std::vector<FaultPlan> FaultCase::plans()
{
    if (mPlan.fault != Fault::Cut && mPlan.fault != Fault::ShortPayload)
        return {mPlan};
    constexpr std::size_t kStepCount = 3; // of each configuration that the ECU gets
    std::vector<FaultPlan> plans;
    for (const std::size_t length :
         tooShortLengths(mPlan.fault, exchangeOf(mPlan.request), kStepCount)) {
        plans.push_back(mPlan);
        plans.back().length = length;
    }
    return plans;
}

void FaultCase::openWindow()
{
    mWindow.reset();
    mWindow = std::make_unique<WindowUnderFault>();
    mShown = {};
    if (mOperation.opensWindow)
        return;
    mWindow->open();
    mShown = keptBy(mWindow->ecu().state());
}

QString FaultCase::deviationWith(const FaultPlan& plan)
{
    const std::vector<CarriedOut> outcome = outcomeOf(mOperation, plan);
    mWindow->renewEcu();
    mKeptByEcu = keptBy(mWindow->ecu().state());
    mNetworkOfEcu = fieldsOf(mWindow->ecu().state().network);
    mDialogFields = mWindow->dialogFields();
    mStoreFile = mWindow->storeFile();
    mWindow->forgetTold();
    mWindow->ecu().expect(plan);
    mOperation.run(*mWindow);
    noteOutcome(outcome);
    return difference("other exchanges",
                      exchangesOf(mWindow->ecu().requests()) == exchangesSeen(outcome, plan)) +
           deviationOfTold(mOperation.tell(outcome)) + deviationOfData();
}

// Reads show what came, writes leave what is shown with the ECU.
void FaultCase::noteOutcome(const std::vector<CarriedOut>& outcome)
{
    const EcuConfiguration held = keptBy(mWindow->ecu().state());
    for (const auto& [exchange, group, reason, isExecuted] : outcome) {
        const bool isRead = !exchange.isWrite() && reason.isEmpty();
        const bool isWritten = exchange.access == orv::ControlAccess::Write && isExecuted;
        const EcuConfiguration& source = isRead ? held : mShown;
        EcuConfiguration& target = isRead ? mShown : mKeptByEcu;
        if (exchange.command == ControlCommand::NetworkSettings)
            mDialogFields = mWindow->storedFields();
        if (!isRead && !isWritten)
            continue;
        switch (exchange.command) {
        case ControlCommand::MeasurementSequence:
            target.sequence = source.sequence;
            break;
        case ControlCommand::Thresholds:
            target.thresholds.at(exchange.sensor) = source.thresholds.at(exchange.sensor);
            break;
        case ControlCommand::SensorPositions:
            target.positions = source.positions;
            break;
        case ControlCommand::NetworkSettings:
            (isRead ? mDialogFields : mNetworkOfEcu) = isRead ? mNetworkOfEcu : mDialogFields;
            break;
        case ControlCommand::AutoCalibration: // the ECU does with the sensor what it does
            if (isWritten)
                mKeptByEcu.thresholds.at(exchange.sensor) = held.thresholds.at(exchange.sensor);
            break;
        case ControlCommand::FirmwareVersion:
            break;
        }
    }
}

QString FaultCase::deviationOfTold(const Told& told)
{
    return difference("boxes", mWindow->takeBoxes().join('|'), told.boxes.join('|')) +
           difference("status bar", mWindow->statusMessage(), told.status) +
           difference("link", mWindow->linkState(), told.link);
}

QString FaultCase::deviationOfData()
{
    const ecusim::EcuState& ecu = mWindow->ecu().state();
    return difference("views", mWindow->configuration(), textOf(mShown)) +
           difference("connection dialog", mWindow->dialogFields(), mDialogFields) +
           difference("ECU", textOf(keptBy(ecu)), textOf(mKeptByEcu)) +
           difference("network of the ECU", fieldsOf(ecu.network), mNetworkOfEcu) +
           difference("another settings store", mWindow->storeFile() == mStoreFile) +
           mWindow->blockade();
}

QString FaultCase::deviationOfFollowUps()
{
    if (mPlan.fault == Fault::ReplyAfterTimeout)
        mWindow->ecu().sendLateReply();
    auto parts = partsAfter(exchangeOf(mPlan.request).command);
    // What waits before a request is not taken for its reply, whatever it looks like; between the
    // two only another command can tell them apart.
    if (mPlan.fault != Fault::ReplyInNextExchange)
        std::ranges::reverse(parts);
    for (const ControlCommand part : parts) {
        const QString deviation = deviationOfFollowUp(followUpOf(part, mSensor));
        if (!deviation.isEmpty())
            return QStringLiteral("afterwards, %1").arg(deviation);
    }
    return deviationOfWatch();
}

QString FaultCase::deviationOfFollowUp(const EcuOperation& followUp)
{
    mWindow->renewEcu();
    mKeptByEcu = keptBy(mWindow->ecu().state());
    mNetworkOfEcu = fieldsOf(mWindow->ecu().state().network);
    const Exchange& exchange = followUp.groups.front().exchanges.front();
    // There is nothing to overwrite.
    const bool isUnasked =
        exchange.command == ControlCommand::MeasurementSequence && mShown.sequence.empty();
    followUp.run(*mWindow);
    const std::vector<CarriedOut> outcome{{.exchange = exchange, .reason = {}}};
    noteOutcome(outcome);
    const QStringList boxes = isUnasked ? QStringList() : followUp.tell(outcome).boxes;
    return difference(qPrintable(followUp.name), mWindow->takeBoxes().join('|'), boxes.join('|')) +
           deviationOfData();
}

// The next look at the link finds it well.
QString FaultCase::deviationOfWatch()
{
    mWindow->pass(kWatchIntervalMs);
    return difference("link afterwards", mWindow->linkState(), Told().link) +
           difference("boxes of the watch", mWindow->takeBoxes().join('|'), {});
}

void addFaultRows(const FaultCase::Operations& operations)
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<int>("fault");
    const std::vector<EcuOperation> names = operations(0);
    for (std::size_t operation = 0; operation < names.size(); ++operation) {
        for (std::size_t fault = 0; fault < faultKinds().size(); ++fault)
            QTest::addRow("%s / %s", qPrintable(names[operation].name), faultKinds()[fault].name)
                << static_cast<int>(operation) << static_cast<int>(fault);
    }
}

QString deviationOfRow(const FaultCase::Operations& operations, int operation, int fault)
{
    const auto row = static_cast<std::uint64_t>(operation) * faultKinds().size() +
                     static_cast<std::uint64_t>(fault);
    const std::uint64_t seed = 1000 * baseSeed() + row;
    FaultCase faultCase(operations, operation, faultKinds()[static_cast<std::size_t>(fault)], seed);
    return faultCase.deviation();
}
