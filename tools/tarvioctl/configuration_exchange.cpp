#include "tools/tarvioctl/configuration_exchange.h"

#include "orv_decoder/OrvCtrlClient.h"
#include "tools/tarvioctl/Command.h"

#include <functional>

namespace tarvioctl {

namespace {

QVector<EcuTransfer> transfersOf(EcuConfiguration& configuration, orv::OrvCtrlClient& client,
                                 const std::function<bool(const QString& element)>& isWanted)
{
    QVector<ConfigurationPart> selected;
    const auto parts = ecuParts(holdersOf(configuration, &client));
    for (const ConfigurationPart& part : parts) {
        if (isWanted(part.element))
            selected += part;
    }
    return transfersInTurn(selected);
}

QVector<PartOutcome> exchange(const QStringList& elements, EcuConfiguration& configuration,
                              orv::OrvCtrlClient& client,
                              std::function<bool()> EcuTransfer::*operation)
{
    QVector<PartOutcome> outcomes;
    const auto isGiven = [&](const QString& element) { return elements.contains(element); };
    const auto transfers = transfersOf(configuration, client, isGiven);
    for (const EcuTransfer& transfer : transfers) {
        const bool isDone = (transfer.*operation)();
        outcomes +=
            {transfer.name, isDone ? QString() : QString::fromStdString(client.lastError())};
    }
    return outcomes;
}

} // namespace

QVector<PartOutcome> readParts(const QStringList& elements, EcuConfiguration& configuration,
                               orv::OrvCtrlClient& client)
{
    return exchange(elements, configuration, client, &EcuTransfer::read);
}

QVector<PartOutcome> writeParts(const QStringList& elements, const EcuConfiguration& configuration,
                                orv::OrvCtrlClient& client)
{
    EcuConfiguration written = configuration;
    return exchange(elements, written, client, &EcuTransfer::write);
}

QStringList otherParts(const QStringList& elements, orv::OrvCtrlClient& client)
{
    EcuConfiguration notExchanged;
    const auto isOther = [&](const QString& element) { return !elements.contains(element); };
    QStringList names;
    const auto transfers = transfersOf(notExchanged, client, isOther);
    for (const EcuTransfer& transfer : transfers)
        names += transfer.name;
    return names;
}

EcuConfiguration readFromEcu(const QStringList& elements, orv::OrvCtrlClient& client)
{
    EcuConfiguration configuration;
    QStringList failures;
    const auto outcomes = readParts(elements, configuration, client);
    for (const PartOutcome& part : outcomes) {
        if (!part.isDone())
            failures += QStringLiteral("%1 (%2)").arg(part.name, part.error);
    }
    if (!failures.isEmpty())
        throw Refusal(QStringLiteral("The ECU does not tell its %1: see \"tarvioctl doctor\".")
                          .arg(failures.join(QStringLiteral(", "))));
    return configuration;
}

} // namespace tarvioctl
