#pragma once

#include "tests/app/faults/EcuOperation.h"
#include "tests/app/faults/ExpectedState.h"
#include "tests/app/faults/WindowUnderFault.h"
#include "tests/app/faults/expected_outcome.h"

#include <cstdint>
#include <functional>
#include <memory>

/// One operation with one fault, from a window that is at rest to one that has gone on working.
class FaultCase
{
public:
    using Operations = std::function<std::vector<EcuOperation>(std::uint8_t sensor)>;

    /// The seed chooses the sensor, the exchange that is hit and what the fault leaves open.
    FaultCase(const Operations& operations, int operation, const FaultKind& fault,
              std::uint64_t seed);

    /// What is not as it has to be; empty when everything is.
    QString deviation();

private:
    std::vector<FaultPlan> plans();
    void openWindow();
    QString deviationWith(const FaultPlan& plan);
    void noteOutcome(const std::vector<CarriedOut>& outcome);
    QString deviationOfTold(const Told& told);
    QString deviationOfData();
    QString deviationOfFollowUps();
    QString deviationOfFollowUp(const EcuOperation& followUp);
    QString deviationOfWatch();

    std::uint8_t mSensor;
    EcuOperation mOperation;
    FaultPlan mPlan;
    std::unique_ptr<WindowUnderFault> mWindow;
    ExpectedState mExpected;
    QByteArray mStoreFile;
};
