#include "ecu/configuration/ConfigurationPart.h"

#include <algorithm>

namespace {

QStringList failuresOf(const QVector<ConfigurationPart>& parts,
                       std::function<bool()> EcuTransfer::*operation)
{
    QStringList failures;
    for (const auto transfers = transfersInTurn(parts); const EcuTransfer& transfer : transfers) {
        if (!(transfer.*operation)())
            failures.append(transfer.name);
    }
    return failures;
}

} // namespace

QVector<EcuTransfer> transfersInTurn(const QVector<ConfigurationPart>& parts)
{
    QVector<EcuTransfer> transfers;
    for (const ConfigurationPart& part : parts) {
        if (part.ecu)
            transfers.append(*part.ecu);
    }
    std::ranges::stable_sort(transfers, {}, &EcuTransfer::turn);
    return transfers;
}

QStringList readAllFromEcu(const QVector<ConfigurationPart>& parts)
{
    return failuresOf(parts, &EcuTransfer::read);
}

QStringList writeAllToEcu(const QVector<ConfigurationPart>& parts)
{
    return failuresOf(parts, &EcuTransfer::write);
}
