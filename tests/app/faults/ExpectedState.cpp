#include "tests/app/faults/ExpectedState.h"

namespace {

using orv::ControlCommand;

bool isRead(const CarriedOut& step)
{
    return !step.exchange.isWrite() && step.reason.isEmpty();
}

bool isWritten(const CarriedOut& step)
{
    return step.exchange.access == orv::ControlAccess::Write && step.isExecuted;
}

void copyPart(const Exchange& exchange, const EcuConfiguration& from, EcuConfiguration& to)
{
    if (exchange.command == ControlCommand::MeasurementSequence)
        to.sequence = from.sequence;
    if (exchange.command == ControlCommand::Thresholds)
        to.thresholds.at(exchange.sensor) = from.thresholds.at(exchange.sensor);
    if (exchange.command == ControlCommand::SensorPositions)
        to.positions = from.positions;
}

} // namespace

void ExpectedState::note(const CarriedOut& step, const EcuConfiguration& held,
                         const QString& storedFields)
{
    if (step.exchange.command == ControlCommand::NetworkSettings)
        noteNetwork(step, storedFields);
    else if (isRead(step))
        copyPart(step.exchange, held, shown);
    else if (isWritten(step))
        copyPart(step.exchange, shown, keptByEcu);
    // A calibration does with the sensor what it does.
    if (step.exchange.command == ControlCommand::AutoCalibration && isWritten(step))
        keptByEcu.thresholds.at(step.exchange.sensor) = held.thresholds.at(step.exchange.sensor);
}

void ExpectedState::noteNetwork(const CarriedOut& step, const QString& storedFields)
{
    dialogFields = isRead(step) ? networkOfEcu : storedFields;
    if (isWritten(step))
        networkOfEcu = storedFields;
}
