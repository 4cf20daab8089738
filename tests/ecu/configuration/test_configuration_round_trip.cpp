#include "ecu/configuration/SettingsFile.h"
#include "ecu/store/ConnectionSettings.h"
#include "ecu/store/safe_file.h"
#include "tests/support/EcuAccess.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

namespace {

SettingsFile fileOf(EcuConfiguration& configuration, QSettings& store)
{
    return SettingsFile(configurationParts(store, holdersOf(configuration)));
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
        EcuConfiguration written = configurationOfSeed(1);
        QVERIFY(writeWholeFile(mFile, fileOf(written, *mStore).document()).isWritten());
    }

    void everythingComesBack()
    {
        EcuConfiguration read;
        const ImportReport report =
            fileOf(read, *mStore).read(mFile, [](const QString&) { return true; });
        QVERIFY(report.isComplete());
        QCOMPARE(read, configurationOfSeed(1));
        QCOMPARE(settings::readImportedConnection(*mStore).hostIp, QStringLiteral("192.168.1.5"));
    }

    void whatIsNotSelectedStaysAsItWas()
    {
        EcuConfiguration read;
        const ImportReport report = fileOf(read, *mStore).read(mFile, [](const QString& element) {
            return element == QStringLiteral("MSEQ");
        });
        QVERIFY(report.isComplete());
        QCOMPARE(read.sequence, configurationOfSeed(1).sequence);
        QCOMPARE(read.thresholds, EcuConfiguration().thresholds);
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
