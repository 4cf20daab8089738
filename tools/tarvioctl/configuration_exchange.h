#pragma once

#include "ecu/configuration/EcuConfiguration.h"

#include <QStringList>
#include <QVector>

namespace tarvioctl {

/// How the exchange of one part went.
struct PartOutcome
{
    QString name;
    QString error; ///< the client's reason; empty when it succeeded

    bool isDone() const { return error.isEmpty(); }
};

/// Exchanges these parts with the ECU in their turn, also after a failure of another one.
/// @param elements of a settings file
QVector<PartOutcome> readParts(const QStringList& elements, EcuConfiguration& configuration,
                               orv::OrvCtrlClient& client);
QVector<PartOutcome> writeParts(const QStringList& elements, const EcuConfiguration& configuration,
                                orv::OrvCtrlClient& client);

/// The names of the parts that are not among these, in their turn.
QStringList otherParts(const QStringList& elements, orv::OrvCtrlClient& client);

/// What the ECU holds of these parts. Throws Refusal when one cannot be read.
EcuConfiguration readFromEcu(const QStringList& elements, orv::OrvCtrlClient& client);

} // namespace tarvioctl
