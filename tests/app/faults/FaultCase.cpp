#include "tests/app/faults/FaultCase.h"

#include "tools/ecu_simulator/SeededRandom.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

using orv::ControlCommand;

constexpr int kWatchIntervalMs = 3000;

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
    mExpected.shown = {};
    if (mOperation.opensWindow)
        return;
    mWindow->open();
    mExpected.shown = keptBy(mWindow->ecu().state());
}

QString FaultCase::deviationWith(const FaultPlan& plan)
{
    const std::vector<CarriedOut> outcome = outcomeOf(mOperation, plan);
    mWindow->renewEcu();
    mExpected.keptByEcu = keptBy(mWindow->ecu().state());
    mExpected.networkOfEcu = fieldsOf(mWindow->ecu().state().network);
    mExpected.dialogFields = mWindow->dialogFields();
    mStoreFile = mWindow->storeFile();
    mWindow->forgetTold();
    mWindow->ecu().expect(plan);
    mOperation.run(*mWindow);
    noteOutcome(outcome);
    return difference("other exchanges",
                      exchangesOf(mWindow->ecu().requests()) == exchangesSeen(outcome, plan)) +
           deviationOfTold(mOperation.tell(outcome)) + deviationOfData();
}

void FaultCase::noteOutcome(const std::vector<CarriedOut>& outcome)
{
    for (const CarriedOut& step : outcome)
        mExpected.note(step, keptBy(mWindow->ecu().state()), mWindow->storedFields());
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
    return difference("views", mWindow->configuration(), textOf(mExpected.shown)) +
           difference("connection dialog", mWindow->dialogFields(), mExpected.dialogFields) +
           difference("ECU", textOf(keptBy(ecu)), textOf(mExpected.keptByEcu)) +
           difference("network of the ECU", fieldsOf(ecu.network), mExpected.networkOfEcu) +
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
    mExpected.keptByEcu = keptBy(mWindow->ecu().state());
    mExpected.networkOfEcu = fieldsOf(mWindow->ecu().state().network);
    const Exchange& exchange = followUp.groups.front().exchanges.front();
    // There is nothing to overwrite.
    const bool isUnasked =
        exchange.command == ControlCommand::MeasurementSequence && mExpected.shown.sequence.empty();
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
