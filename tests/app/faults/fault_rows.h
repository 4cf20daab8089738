#pragma once

#include "tests/app/faults/FaultCase.h"

/// Columns "operation" and "fault", both numbers, and a row for every pair of them.
void addFaultRows(const FaultCase::Operations& operations);

/// The case of the row that the test has fetched.
QString deviationOfRow(const FaultCase::Operations& operations, int operation, int fault);
