#include "tests/app/faults/expected_outcome.h"

#include <numeric>

namespace {

using orv::ControlCommand;

const QString kTimeout = QStringLiteral("socket: receive timeout");
const QString kWrongChecksum = QStringLiteral("checksum error");
const QString kWrongType = QStringLiteral("wrong reply type");
const QString kWrongSize = QStringLiteral("wrong data size");

constexpr std::size_t kCodeStatusAndChecksum = 3;

// A payload that is shorter than the record.
QString shortReason(const Exchange& exchange, std::size_t frameLength)
{
    const bool hasCount = frameLength > kCodeStatusAndChecksum;
    switch (exchange.command) {
    case ControlCommand::NetworkSettings:
        return QStringLiteral("wrong data format");
    case ControlCommand::MeasurementSequence:
        return hasCount ? QStringLiteral("wrong format") : kWrongSize;
    default:
        return kWrongSize;
    }
}

// A payload that is longer: nobody looks at that of a write, nor behind the last step.
QString longReason(const Exchange& exchange)
{
    if (exchange.isWrite() || exchange.command == ControlCommand::MeasurementSequence)
        return {};
    return exchange.command == ControlCommand::NetworkSettings ? QStringLiteral("wrong data format")
                                                               : kWrongSize;
}

QString tooShortReason(const Exchange& exchange, std::size_t frameLength)
{
    if (frameLength == 1)
        return kWrongType; // a checksum over nothing
    if (frameLength == 2)
        return kWrongSize; // no status
    return shortReason(exchange, frameLength);
}

QString reasonOf(const Exchange& exchange, const FaultPlan& plan)
{
    const QString refusal = QStringLiteral("ECU error (%1)").arg(plan.status);
    switch (plan.fault) {
    case Fault::ReplyDropped:
    case Fault::ReplyAfterTimeout:
    case Fault::ReplyInNextExchange:
    case Fault::Restarted:
    case Fault::Gone:
        return kTimeout;
    case Fault::ReplyTwice:
    case Fault::ReplyFromAnotherPort:
    case Fault::WrongCodeFirst:
        return {};
    case Fault::ChecksumDamaged:
    case Fault::LongerThanADatagram:
        return kWrongChecksum;
    case Fault::WrongCode:
        return kWrongType;
    case Fault::Refused:
        return refusal;
    case Fault::Cut:
        return plan.length == 0 ? kTimeout : kWrongChecksum;
    case Fault::ShortPayload:
        return tooShortReason(exchange, plan.length);
    case Fault::PayloadByteTooMany:
        return longReason(exchange);
    case Fault::StaleReply:
        return bringsData(exchange.request()) ? QString() : refusal;
    }
    return {};
}

bool isExecuted(const Exchange& exchange, Fault fault)
{
    switch (fault) {
    case Fault::Refused:
    case Fault::Restarted:
    case Fault::Gone:
        return false;
    case Fault::StaleReply:
        return bringsData(exchange.request());
    default:
        return true;
    }
}

CarriedOut goingWell(const Exchange& exchange, std::size_t group)
{
    return {.exchange = exchange, .group = group, .reason = {}};
}

CarriedOut goingWrong(const Exchange& exchange, std::size_t group, const FaultPlan& plan)
{
    return {.exchange = exchange,
            .group = group,
            .reason = reasonOf(exchange, plan),
            .isExecuted = isExecuted(exchange, plan.fault)};
}

std::size_t payloadSize(const Exchange& exchange, std::size_t stepCount)
{
    if (exchange.isWrite())
        return 0;
    switch (exchange.command) {
    case ControlCommand::MeasurementSequence:
        return 1 + 10 * stepCount;
    case ControlCommand::Thresholds:
        return 14;
    case ControlCommand::FirmwareVersion:
        return 3;
    case ControlCommand::NetworkSettings:
        return 22;
    case ControlCommand::SensorPositions:
        return 144;
    case ControlCommand::AutoCalibration:
        return 1;
    }
    return 0;
}

} // namespace

const std::vector<FaultKind>& faultKinds()
{
    static const std::vector<FaultKind> kinds = {
        {"reply dropped", Fault::ReplyDropped},
        {"reply after the time-out", Fault::ReplyAfterTimeout},
        {"late reply in the next exchange", Fault::ReplyInNextExchange},
        {"reply twice", Fault::ReplyTwice},
        {"reply from another port", Fault::ReplyFromAnotherPort},
        {"checksum damaged", Fault::ChecksumDamaged},
        {"wrong code", Fault::WrongCode},
        {"wrong code before the reply", Fault::WrongCodeFirst},
        {"refused", Fault::Refused},
        {"cut at every length", Fault::Cut},
        {"payload of every smaller length", Fault::ShortPayload},
        {"payload of a byte too many", Fault::PayloadByteTooMany},
        {"longer than a datagram", Fault::LongerThanADatagram},
        {"stale reply", Fault::StaleReply},
        {"restarted before the reply", Fault::Restarted},
        {"nobody at the port", Fault::Gone},
    };
    return kinds;
}

std::vector<CarriedOut> outcomeOf(const EcuOperation& operation, const FaultPlan& plan)
{
    std::vector<CarriedOut> outcome;
    for (std::size_t group = 0; group < operation.groups.size(); ++group) {
        for (const Exchange& exchange : operation.groups[group].exchanges) {
            const bool isGone = plan.fault == Fault::Gone && outcome.size() > plan.exchange;
            const bool isHit = isGone || outcome.size() == plan.exchange;
            outcome.push_back(isHit ? goingWrong(exchange, group, plan)
                                    : goingWell(exchange, group));
            if (operation.groups[group].endsWithFailure && !outcome.back().reason.isEmpty())
                break;
        }
    }
    return outcome;
}

std::vector<std::size_t> tooShortLengths(Fault fault, const Exchange& exchange,
                                         std::size_t stepCount)
{
    const std::size_t whole = kCodeStatusAndChecksum + payloadSize(exchange, stepCount);
    const std::size_t shortest = fault == Fault::Cut ? 0 : 1;
    std::vector<std::size_t> lengths(whole - shortest);
    std::iota(lengths.begin(), lengths.end(), shortest);
    return lengths;
}
