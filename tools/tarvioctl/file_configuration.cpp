#include "tools/tarvioctl/file_configuration.h"

#include "ecu/configuration/SettingsFile.h"
#include "tools/tarvioctl/Command.h"
#include "tools/tarvioctl/PartSelection.h"

#include <QFile>

#include <algorithm>

namespace tarvioctl {

namespace {

const QString kThresholds = QStringLiteral("Thresholds");

void checkReadable(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw Refusal(QStringLiteral("Cannot read %1 (%2): give a settings file.")
                          .arg(fileName, file.errorString()));
}

// The host's side of the link is of no concern to the ECU.
ConfigurationPart ignoredNetwork()
{
    return {.element = QStringLiteral("Network"),
            .errorName = {},
            .writeXml = {},
            .readFromXml = [](QXmlStreamReader&, std::string&) { return true; }};
}

QString reasonOf(const ImportReport& report)
{
    QStringList reasons = report.sectionErrors.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (!report.abortText.isEmpty() && !report.sectionErrors.contains(report.abortText))
        reasons += report.abortText;
    QString reason = reasons.join(QStringLiteral("; "));
    if (reason.endsWith(QLatin1Char('.')))
        reason.chop(1); // it stands within a sentence
    return reason;
}

void checkSensors(const QString& fileName, const FileConfiguration& file)
{
    const auto count = std::ranges::count_if(
        file.values.thresholds, [](const orv::SensorThreshold& record) { return record.valid; });
    if (file.elements.contains(kThresholds) && count < orv::kSensorCount)
        throw Refusal(QStringLiteral("%1 has thresholds for %2 of %3 sensors: export it anew.")
                          .arg(fileName)
                          .arg(count)
                          .arg(orv::kSensorCount));
}

} // namespace

FileConfiguration loadFile(const QString& fileName, const PartSelection& selection)
{
    checkReadable(fileName);
    FileConfiguration file;
    const QVector<ConfigurationPart> parts = ecuParts(holdersOf(file.values));
    const auto isWanted = [&](const QString& element) {
        return element != ignoredNetwork().element && selection.contains(element);
    };
    const ImportReport report =
        SettingsFile(QVector<ConfigurationPart>{ignoredNetwork()} + parts).read(fileName, isWanted);
    if (!report.isComplete())
        throw Refusal(QStringLiteral("%1 is no whole settings file (%2): export it anew.")
                          .arg(fileName, reasonOf(report)));
    const QStringList present = SettingsFile::sectionsOf(fileName);
    for (const ConfigurationPart& part : parts) {
        if (present.contains(part.element) && isWanted(part.element))
            file.elements += part.element;
    }
    checkSensors(fileName, file);
    return file;
}

} // namespace tarvioctl
