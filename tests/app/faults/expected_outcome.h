#pragma once

#include "tests/app/faults/EcuOperation.h"
#include "tests/support/FaultyEcu.h"

#include <vector>

/// One way in which an exchange goes wrong.
struct FaultKind
{
    const char* name;
    Fault fault;
};

/// All of them.
const std::vector<FaultKind>& faultKinds();

/// The exchanges that are carried out when the plan comes true, and what the client says to each.
std::vector<CarriedOut> outcomeOf(const EcuOperation& operation, const FaultPlan& plan);

/// The lengths at which the reply to an exchange can end too early.
std::vector<std::size_t> tooShortLengths(Fault fault, const Exchange& exchange,
                                         std::size_t stepCount);
