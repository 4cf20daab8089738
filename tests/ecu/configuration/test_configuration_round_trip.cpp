#include "ecu/configuration/SettingsFile.h"
#include "ecu/configuration/network_section.h"
#include "ecu/configuration/position_section.h"
#include "ecu/configuration/sequence_section.h"
#include "ecu/configuration/threshold_section.h"
#include "ecu/store/ConnectionSettings.h"
#include "ecu/store/safe_file.h"
#include "orv_decoder/constants.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/// A configuration that nobody shows.
struct Records
{
    std::vector<orv::MseqStep> sequence;
    std::vector<orv::SensorThreshold> thresholds;
    orv::SensorMountPositions positions{};

    bool operator==(const Records&) const = default;
};

Records someRecords()
{
    Records records;
    records.sequence = {{.valid = true, .activeMask = 0x0801, .passiveMask = 0x0FFF},
                        {.valid = true, .activeMask = 1, .modulation = 65535, .fifthValue = 7}};
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
        records.thresholds.push_back({.valid = true, .sensorId = sensor, .scale = 3});
        records.thresholds.back().entries.fill(static_cast<std::uint8_t>(17 * sensor));
        records.positions[sensor] = {.x = static_cast<std::int16_t>(-100 * sensor), .yaw = sensor};
    }
    return records;
}

template<typename Value>
ConfigurationPart part(const char* element, Value& held,
                       std::function<void(QXmlStreamWriter&, const Value&)> write,
                       std::function<SectionResult<Value>(QXmlStreamReader&)> read)
{
    const QString name = QString::fromLatin1(element);
    return {.element = name,
            .errorName = name,
            .writeXml = [&held, write](QXmlStreamWriter& writer) { write(writer, held); },
            .readFromXml =
                [&held, read](QXmlStreamReader& reader, std::string& error) {
                    return takeSection(read(reader), error,
                                       [&held](const Value& value) { held = value; });
                }};
}

SettingsFile fileOf(Records& records, QSettings& store)
{
    return SettingsFile(
        {settings::networkPart(store),
         part<std::vector<orv::MseqStep>>("MSEQ", records.sequence, writeSequenceSection,
                                          readSequenceSection),
         part<std::vector<orv::SensorThreshold>>("Thresholds", records.thresholds,
                                                 writeThresholdSection, readThresholdSection),
         part<orv::SensorMountPositions>("MountPositions", records.positions, writePositionSection,
                                         readPositionSection)});
}

} // namespace

/// A whole configuration goes into a settings file and comes back, without a window or a view.
class ConfigurationRoundTripTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        mStore = std::make_unique<QSettings>(mFolder->filePath(QStringLiteral("store.ini")),
                                             QSettings::IniFormat);
        settings::writeDefaultNetwork(*mStore);
        mFile = mFolder->filePath(QStringLiteral("settings.orv"));
        Records written = someRecords();
        QVERIFY(writeWholeFile(mFile, fileOf(written, *mStore).document()).isWritten());
    }

    void everythingComesBack()
    {
        Records read;
        const ImportReport report =
            fileOf(read, *mStore).read(mFile, [](const QString&) { return true; });
        QVERIFY(report.isComplete());
        QCOMPARE(read, someRecords());
        QCOMPARE(settings::readImportedConnection(*mStore).hostIp, QStringLiteral("192.168.1.5"));
    }

    void whatIsNotSelectedStaysAsItWas()
    {
        Records read;
        const ImportReport report = fileOf(read, *mStore).read(mFile, [](const QString& element) {
            return element == QStringLiteral("MSEQ");
        });
        QVERIFY(report.isComplete());
        QCOMPARE(read.sequence, someRecords().sequence);
        QVERIFY(read.thresholds.empty());
        QCOMPARE(read.positions, orv::SensorMountPositions());
        QVERIFY(!settings::hasImportedConnection(*mStore));
    }

private:
    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<QSettings> mStore;
    QString mFile;
};

QTEST_GUILESS_MAIN(ConfigurationRoundTripTest)
#include "test_configuration_round_trip.moc"
