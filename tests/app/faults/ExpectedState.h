#pragma once

#include "ecu/configuration/EcuConfiguration.h"
#include "tests/app/faults/EcuOperation.h"

#include <QString>

/// What window and ECU have to hold.
struct ExpectedState
{
    EcuConfiguration shown;
    EcuConfiguration keptByEcu;
    QString networkOfEcu; ///< both as the fields of the connection dialog
    QString dialogFields;

    /// Reads show what came, writes leave what is shown with the ECU.
    /// @param held by the ECU now
    /// @param storedFields what the connection dialog shows when it opens
    void note(const CarriedOut& step, const EcuConfiguration& held, const QString& storedFields);

private:
    void noteNetwork(const CarriedOut& step, const QString& storedFields);
};
