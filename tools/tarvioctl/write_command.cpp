#include "tools/tarvioctl/write_command.h"

#include "tools/common/TerminationSignals.h"
#include "tools/tarvioctl/Console.h"
#include "tools/tarvioctl/EcuAddress.h"
#include "tools/tarvioctl/PartSelection.h"
#include "tools/tarvioctl/configuration_diff.h"
#include "tools/tarvioctl/configuration_exchange.h"
#include "tools/tarvioctl/file_configuration.h"

#include <QCommandLineParser>

#include <algorithm>

namespace tarvioctl {

namespace {

const QString kVerify = QStringLiteral("verify");
const QString kDryRun = QStringLiteral("dry-run");

// From what the ECU holds to what the file says.
QStringList remainingChanges(const FileConfiguration& file, orv::OrvCtrlClient& client)
{
    const EcuConfiguration held = readFromEcu(file.elements, client);
    QStringList lines;
    for (const QString& element : file.elements)
        lines += changesOf(element, held, file.values);
    return lines;
}

ExitStatus showChanges(const FileConfiguration& file, orv::OrvCtrlClient& client, Console& console)
{
    for (const auto lines = remainingChanges(file, client); const QString& line : lines)
        console.print(line);
    return ExitStatus::Done;
}

void writeFile(const FileConfiguration& file, orv::OrvCtrlClient& client, Console& console)
{
    // While it lives, Ctrl-C does not end the program between two parts.
    const cli::TerminationSignals heldBack;
    const QVector<PartOutcome> outcomes = writeParts(file.elements, file.values, client);
    for (const PartOutcome& part : outcomes)
        console.print(part.isDone()
                          ? QStringLiteral("%1: written").arg(part.name)
                          : QStringLiteral("%1: NOT written (%2)").arg(part.name, part.error));
    for (const auto others = otherParts(file.elements, client); const QString& part : others)
        console.print(QStringLiteral("%1: left as it was").arg(part));
    if (!std::ranges::all_of(outcomes, &PartOutcome::isDone))
        throw Refusal(QStringLiteral("The ECU does not hold this file as a whole: write it again, "
                                     "or look with \"tarvioctl diff\"."));
}

void verify(const FileConfiguration& file, orv::OrvCtrlClient& client, Console& console)
{
    const QStringList changes = remainingChanges(file, client);
    for (const QString& line : changes)
        console.print(line);
    if (!changes.isEmpty())
        throw Refusal(QStringLiteral("The ECU has confirmed the writing but holds something else: "
                                     "the lines above tell what is missing."));
    console.print(QStringLiteral("verified: the ECU holds what the file says"));
}

ExitStatus runWrite(const Invocation& invocation)
{
    const FileConfiguration file =
        loadFile(invocation.arguments[0], PartSelection(invocation.options));
    if (file.elements.isEmpty())
        throw Refusal(
            QStringLiteral("%1 holds nothing of what is to be written: export it anew, or "
                           "choose other parts by --only.")
                .arg(invocation.arguments[0]));
    const auto channel = invocation.ecu.openChannel();
    if (invocation.options.isSet(kDryRun))
        return showChanges(file, channel->client(), invocation.console);
    writeFile(file, channel->client(), invocation.console);
    invocation.console.flush(); // before the reading back, which may be interrupted
    if (invocation.options.isSet(kVerify))
        verify(file, channel->client(), invocation.console);
    return ExitStatus::Done;
}

} // namespace

Command writeCommand()
{
    return {.name = QStringLiteral("write"),
            .arguments = QStringLiteral("FILE.orv"),
            .summary = QStringLiteral("Writes a settings file to the ECU."),
            .minArguments = 1,
            .maxArguments = 1,
            .options = {PartSelection::option(),
                        {kVerify, QStringLiteral("Read back and compare.")},
                        {kDryRun, QStringLiteral("Write nothing; tell what would change.")}},
            .run = runWrite};
}

} // namespace tarvioctl
