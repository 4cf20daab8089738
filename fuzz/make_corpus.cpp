// Writes what the simulated ECU measures, answers and holds, and what the program keeps of it, as
// inputs of the fuzzers: make_fuzz_corpus CORPUS_FOLDER. The inputs that others wrote stay.
#include "app/TarvioWindow.h"
#include "ecu/configuration/EcuConfiguration.h"
#include "ecu/configuration/SettingsFile.h"
#include "ecu/store/ConnectionSettings.h"
#include "fuzz/ScriptText.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/TestClock.h"
#include "tools/ecu_simulator/Echoes.h"
#include "tools/ecu_simulator/Freespace.h"

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QSettings>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr double kSecondsBetweenRecords = 0.4;
constexpr int kRecords = 6;

const ecusim::Scene kScene(ecusim::SceneKind::Car);

class Corpus
{
public:
    explicit Corpus(const QString& folder) : mFolder(folder) {}

    void add(const QString& target, const QString& name, const QByteArray& content) const
    {
        mFolder.mkpath(target);
        QFile file(mFolder.filePath(target + QLatin1Char('/') + name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s cannot be written", qPrintable(file.fileName()));
    }

    void add(const QString& target, const QString& name, const ScriptText& script) const
    {
        add(target, name, script.text());
    }

private:
    QDir mFolder;
};

std::vector<Bytes> measurements()
{
    const ecusim::EcuState ecu = ecusim::defaultEcuState();
    const ecusim::Echoes echoes(kScene, 0, 1);
    std::vector<Bytes> datagrams;
    for (unsigned i = 0; i < kRecords; ++i)
        datagrams.push_back(
            orv::encodeMeasurementResult(echoes.measure(ecu, i, i * kSecondsBetweenRecords)));
    return datagrams;
}

std::vector<Bytes> freespaces()
{
    const ecusim::EcuState ecu = ecusim::defaultEcuState();
    std::vector<Bytes> datagrams;
    for (unsigned i = 0; i < kRecords / 2; ++i)
        datagrams.push_back(orv::encodeFreespacePackage(
            ecusim::freespacePackage(ecu, kScene, 0, i * kSecondsBetweenRecords)));
    return datagrams;
}

EcuConfiguration configuration()
{
    const ecusim::EcuState ecu = ecusim::defaultEcuState();
    return {.sequence = ecu.sequence, .thresholds = ecu.thresholds, .positions = ecu.positions};
}

void addRecords(const Corpus& corpus)
{
    int number = 0;
    for (const Bytes& datagram : measurements())
        corpus.add("measurement", QString("simulated-%1").arg(++number),
                   QByteArray(reinterpret_cast<const char*>(datagram.data()),
                              static_cast<int>(datagram.size())));
    number = 0;
    for (const Bytes& datagram : freespaces())
        corpus.add("freespace", QString("simulated-%1").arg(++number),
                   QByteArray(reinterpret_cast<const char*>(datagram.data()),
                              static_cast<int>(datagram.size())));
}

void addSettingsFiles(const Corpus& corpus)
{
    TemporaryProfile profile;
    QSettings store(profile.fileName(), QSettings::IniFormat);
    settings::writeDefaultNetwork(store);
    EcuConfiguration held = configuration();
    const SettingsFile file(configurationParts(store, holdersOf(held)));
    corpus.add("settings_file", "simulated", file.document());

    ScriptText sections;
    sections.byte(0).byte(3);
    for (const char* value : {"192.168.1.3", "255.255.255.0", "192.168.1.1"})
        sections.byte(0).block(QByteArray(value));
    sections.byte(1).byte(static_cast<unsigned>(held.sequence.size()));
    for (const orv::MseqStep& step : held.sequence)
        sections.block(orv::encodeStep(step));
    sections.byte(2).byte(orv::kSensorCount);
    for (const orv::SensorThreshold& record : held.thresholds)
        sections.block(orv::encodeThreshold(record));
    sections.byte(3).block(orv::encodeMountPositions(held.positions));
    corpus.add("settings_sections", "simulated", sections);
}

void addControlExchanges(const Corpus& corpus)
{
    ScriptText clean;
    ScriptText faulty;
    for (unsigned operation = 0; operation < 11; ++operation) {
        clean.byte(operation).byte(30 + operation).byte(1).byte(0);
        faulty.byte(operation)
            .byte(60 + operation)
            .byte(3)
            .byte(operation % 8)
            .word(3)
            .byte(1)
            .byte(0);
    }
    corpus.add("control_client", "clean", clean);
    corpus.add("control_client", "faulty", faulty);
    for (unsigned arrival = 0; arrival < 8; ++arrival)
        corpus.add("control_client", QString("arrival-%1").arg(arrival),
                   ScriptText().byte(1).byte(5).byte(2).byte(arrival).word(2).byte(0));
}

void addLinks(const Corpus& corpus)
{
    ScriptText capture;
    capture.byte(0).byte(1).byte(7).word(100).byte(3).byte(1);
    for (const Bytes& datagram : measurements())
        capture.byte(2).byte(1).block(datagram).byte(7).word(11);
    for (const Bytes& datagram : freespaces())
        capture.byte(2).byte(0).block(datagram).byte(7).word(11);
    corpus.add("link_supervisor", "capture", capture);
    for (unsigned manner = 0; manner < 8; ++manner)
        corpus.add("link_supervisor", QString("manner-%1").arg(manner),
                   ScriptText()
                       .byte(1)
                       .block(Bytes{2, 2, 14, 0, 0, 9})
                       .byte(0)
                       .byte(manner)
                       .byte(7)
                       .word(100)
                       .byte(5)
                       .byte(3)
                       .byte(4)
                       .byte(7)
                       .word(3000));
    for (unsigned change = 0; change < 4; ++change)
        corpus.add("link_supervisor", QString("reconnection-%1").arg(change),
                   ScriptText()
                       .byte(0)
                       .byte(1)
                       .byte(7)
                       .word(100)
                       .byte(3)
                       .byte(1)
                       .byte(4)
                       .byte(change)
                       .byte(2)
                       .byte(1)
                       .block(measurements().front())
                       .byte(7)
                       .word(3000));
}

void addViews(const Corpus& corpus)
{
    ScriptText live;
    ScriptText plot;
    plot.byte(9).byte(1).byte(1);
    for (unsigned segment = 0; segment < 12; ++segment)
        plot.byte(segment * 17);
    plot.byte(9).byte(2).byte(1);
    for (const Bytes& datagram : measurements()) {
        live.byte(0).block(datagram).byte(2);
        plot.byte(0).block(datagram).byte(3);
    }
    corpus.add("live_view", "simulated", live);
    // More results than the timelines have room for.
    ScriptText narrow;
    narrow.byte(3).byte(110).byte(100);
    for (const Bytes& datagram : measurements())
        narrow.byte(0).block(datagram).byte(2);
    corpus.add("live_view", "narrow", narrow);
    corpus.add("live_view", "resized",
               live.byte(3).byte(90).byte(40).byte(0).block(measurements().back()).byte(4).byte(3));
    corpus.add("plot", "simulated", plot);
    corpus.add("plot", "mean",
               plot.byte(9).byte(0).byte(0).byte(3).byte(9).byte(7).byte(50).byte(60));

    ScriptText freespace;
    freespace.byte(3).block(orv::encodeMountPositions(configuration().positions));
    for (const Bytes& datagram : freespaces())
        freespace.byte(0).block(datagram).byte(2);
    corpus.add("freespace_view", "simulated", freespace);
    corpus.add(
        "freespace_view", "edited",
        freespace.byte(5).byte(0).byte(5).byte(2).byte(4).byte(1).byte(6).byte(3).byte(1).byte(2));
}

template<typename Arrange>
void addState(const Corpus& corpus, const QString& name, Arrange arrange)
{
    const TestClock noProbe;
    TemporaryProfile profile;
    profile.setNetwork(freeUdpPort(), freeUdpPort(), freeUdpPort());
    TarvioWindow window;
    window.show();
    arrange(window);
    QCoreApplication::processEvents();
    window.close();
    const QStringList keys{"geometry", "state", "live_view", "freespaces_view", "thresholds_view"};
    ScriptText script;
    for (int key = 0; key < keys.size(); ++key)
        script.byte(static_cast<unsigned>(key))
            .block(profile.value("main_window/" + keys[key]).toByteArray());
    corpus.add("saved_states", name, script);
    profile.setNetwork(50002, 50001, 50003);
    profile.setValue("network_imported/ecu_ip", "10.0.0.7");
    QFile store(profile.fileName());
    if (store.open(QIODevice::ReadOnly))
        corpus.add("settings_store", name, store.readAll());
}

void addStates(const Corpus& corpus)
{
    addState(corpus, "default", [](TarvioWindow&) {});
    addState(corpus, "smaller", [](TarvioWindow& window) { window.resize(700, 500); });
    addState(corpus, "floating", [](TarvioWindow& window) {
        auto* dock = window.findChild<QDockWidget*>("mseqDock");
        dock->setFloating(true);
        dock->setGeometry(100, 100, 300, 200);
        window.findChild<QDockWidget*>("thresholdDock")->close();
    });
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (argc != 2)
        qFatal("usage: make_fuzz_corpus CORPUS_FOLDER");
    const Corpus corpus(QString::fromLocal8Bit(argv[1]));
    addRecords(corpus);
    addSettingsFiles(corpus);
    addControlExchanges(corpus);
    addLinks(corpus);
    addViews(corpus);
    addStates(corpus);
    return 0;
}
