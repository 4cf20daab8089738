#include "tools/tarvioctl/read_command.h"

#include "ecu/configuration/SettingsFile.h"
#include "ecu/store/safe_file.h"
#include "tools/tarvioctl/Console.h"
#include "tools/tarvioctl/EcuAddress.h"
#include "tools/tarvioctl/PartSelection.h"
#include "tools/tarvioctl/configuration_exchange.h"

namespace tarvioctl {

namespace {

QStringList exchangedElements(const QVector<ConfigurationPart>& parts)
{
    QStringList elements;
    for (const ConfigurationPart& part : parts) {
        if (part.ecu)
            elements += part.element;
    }
    return elements;
}

ExitStatus runRead(const Invocation& invocation)
{
    const PartSelection selection(invocation.options);
    EcuConfiguration configuration;
    const QVector<ConfigurationPart> parts =
        selection.of(configurationParts(invocation.ecu.store(), holdersOf(configuration)));
    if (const QStringList elements = exchangedElements(parts); !elements.isEmpty())
        configuration = readFromEcu(elements, invocation.ecu.openChannel()->client());
    const QString& fileName = invocation.arguments[0];
    const FileWriteResult result = writeWholeFile(fileName, SettingsFile(parts).document());
    if (!result.isWritten())
        throw Refusal(QStringLiteral("Cannot write %1: %2; choose another place.")
                          .arg(fileName, result.errorText));
    return ExitStatus::Done;
}

} // namespace

Command readCommand()
{
    return {.name = QStringLiteral("read"),
            .arguments = QStringLiteral("FILE.orv"),
            .summary = QStringLiteral("Reads the ECU's configuration into a settings file."),
            .minArguments = 1,
            .maxArguments = 1,
            .options = {PartSelection::option()},
            .run = runRead};
}

} // namespace tarvioctl
