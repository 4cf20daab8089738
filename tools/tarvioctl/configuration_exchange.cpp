#include "tools/tarvioctl/configuration_exchange.h"

#include "orv_decoder/OrvCtrlClient.h"
#include "tools/tarvioctl/Command.h"

namespace tarvioctl {

namespace {

QVector<PartOutcome> exchange(const QStringList& elements, EcuConfiguration& configuration,
                              orv::OrvCtrlClient& client,
                              std::function<bool()> EcuTransfer::*operation)
{
    QVector<ConfigurationPart> selected;
    for (const ConfigurationPart& part : ecuParts(holdersOf(configuration, &client))) {
        if (elements.contains(part.element))
            selected += part;
    }
    QVector<PartOutcome> outcomes;
    for (const EcuTransfer& transfer : transfersInTurn(selected)) {
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

EcuConfiguration readFromEcu(const QStringList& elements, orv::OrvCtrlClient& client)
{
    EcuConfiguration configuration;
    QStringList failures;
    for (const PartOutcome& part : readParts(elements, configuration, client)) {
        if (!part.isDone())
            failures += QStringLiteral("%1 (%2)").arg(part.name, part.error);
    }
    if (!failures.isEmpty())
        throw Refusal(QStringLiteral("The ECU does not tell its %1: see \"tarvioctl doctor\".")
                          .arg(failures.join(QStringLiteral(", "))));
    return configuration;
}

} // namespace tarvioctl
