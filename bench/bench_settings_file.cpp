#include "ecu/configuration/EcuConfiguration.h"
#include "ecu/configuration/SettingsFile.h"
#include "ecu/configuration/settings_text.h"
#include "ecu/store/ConnectionSettings.h"
#include "ecu/store/safe_file.h"
#include "tools/ecu_simulator/EcuState.h"

#include <QDomDocument>
#include <QFile>
#include <QLoggingCategory>
#include <QSettings>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <benchmark/benchmark.h>

namespace {

EcuConfiguration configurationOfAnEcu()
{
    const ecusim::EcuState ecu = ecusim::defaultEcuState();
    return {.sequence = ecu.sequence, .thresholds = ecu.thresholds, .positions = ecu.positions};
}

// A whole configuration in a file, and what reads it.
class WholeFile
{
public:
    WholeFile()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
        settings::writeDefaultNetwork(mStore);
        mConfiguration = configurationOfAnEcu();
        mIsWritten = writeWholeFile(name(), mSettingsFile.document()).isWritten();
        mConfiguration = {};
    }

    QString name() const { return mFolder.filePath(QStringLiteral("settings.orv")); }

    bool read() const
    {
        return mSettingsFile.read(name(), [](const QString&) { return true; }).isComplete();
    }

    bool isReadBack() const { return mIsWritten && mConfiguration == configurationOfAnEcu(); }

private:
    QTemporaryDir mFolder;
    QSettings mStore{mFolder.filePath(QStringLiteral("store.ini")), QSettings::IniFormat};
    EcuConfiguration mConfiguration;
    SettingsFile mSettingsFile{configurationParts(mStore, holdersOf(mConfiguration))};
    bool mIsWritten = false;
};

void readSettingsFile(benchmark::State& state)
{
    const WholeFile file;
    for (auto _ : state) {
        if (!file.read())
            state.SkipWithError("the file was not read wholly");
    }
    if (!file.isReadBack())
        state.SkipWithError("what was read is not what was written");
}
BENCHMARK(readSettingsFile)->Unit(benchmark::kMicrosecond);

// As a tree alone: nothing is looked for in it.
void loadDomDocument(benchmark::State& state)
{
    const WholeFile file;
    for (auto _ : state) {
        QFile device(file.name());
        QDomDocument document;
        if (!device.open(QIODevice::ReadOnly) || !document.setContent(&device))
            state.SkipWithError("the file was not read");
    }
}
BENCHMARK(loadDomDocument)->Unit(benchmark::kMicrosecond);

// The least that Qt's reader costs: each token once, with the text at hand and nothing done.
void passOfStreamReader(benchmark::State& state)
{
    const WholeFile file;
    const QString text = settingsText(file.name());
    for (auto _ : state) {
        QXmlStreamReader reader(text);
        while (!reader.atEnd())
            reader.readNext();
        if (reader.hasError())
            state.SkipWithError("the text was not read");
    }
}
BENCHMARK(passOfStreamReader)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
