#include "tools/tarvioctl/diff_command.h"

#include "tools/tarvioctl/Console.h"
#include "tools/tarvioctl/EcuAddress.h"
#include "tools/tarvioctl/PartSelection.h"
#include "tools/tarvioctl/configuration_diff.h"
#include "tools/tarvioctl/configuration_exchange.h"
#include "tools/tarvioctl/file_configuration.h"

namespace tarvioctl {

namespace {

FileConfiguration whatTheEcuHolds(const FileConfiguration& file, const Invocation& invocation)
{
    return {.values = readFromEcu(file.elements, invocation.ecu.openChannel()->client()),
            .elements = file.elements};
}

// A part that only one of them has is a difference of its own.
QStringList changesBetween(const FileConfiguration& from, const FileConfiguration& to)
{
    QStringList lines;
    for (const QString& element : from.elements) {
        if (to.elements.contains(element))
            lines += changesOf(element, from.values, to.values);
        else
            lines += QStringLiteral("%1: there → missing").arg(element);
    }
    for (const QString& element : to.elements) {
        if (!from.elements.contains(element))
            lines += QStringLiteral("%1: missing → there").arg(element);
    }
    return lines;
}

// "Nothing differs" would let every car pass.
void refuseNothingToCompare(const FileConfiguration& first, const FileConfiguration& second,
                            const QStringList& fileNames)
{
    if (first.elements.isEmpty() && second.elements.isEmpty())
        throw Refusal(
            QStringLiteral("There is nothing that could be compared in %1: export it anew, or "
                           "choose other parts by --only.")
                .arg(fileNames.join(QStringLiteral(" and "))));
}

ExitStatus runDiff(const Invocation& invocation)
{
    const PartSelection selection(invocation.options);
    const FileConfiguration first = loadFile(invocation.arguments[0], selection);
    const bool hasSecondFile = invocation.arguments.size() == 2;
    const FileConfiguration second =
        hasSecondFile ? loadFile(invocation.arguments[1], selection) : FileConfiguration();
    refuseNothingToCompare(first, second, invocation.arguments);
    const QStringList changes = hasSecondFile
                                    ? changesBetween(first, second)
                                    : changesBetween(whatTheEcuHolds(first, invocation), first);
    for (const QString& line : changes)
        invocation.console.print(line);
    return changes.isEmpty() ? ExitStatus::Done : ExitStatus::Refused;
}

} // namespace

Command diffCommand()
{
    return {.name = QStringLiteral("diff"),
            .arguments = QStringLiteral("FILE.orv [FILE2.orv]"),
            .summary = QStringLiteral("Tells what differs: ECU → file, or file → file."),
            .minArguments = 1,
            .maxArguments = 2,
            .options = {PartSelection::option()},
            .run = runDiff};
}

} // namespace tarvioctl
