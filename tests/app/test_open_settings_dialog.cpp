#include "app/OrvgOpenXmlSettingsDialog.h"
#include "app/view_holders.h"
#include "tests/support/modal_dialogs.h"
#include "tests/support/screenshots.h"
#include "views/positions/OrvgSensorPositionView.h"
#include "views/sequence/OrvgMseqView.h"
#include "views/thresholds/OrvgThresholdView.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

class TestOpenSettingsDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init() { mDialog = std::make_unique<OrvgOpenXmlSettingsDialog>(); }
    void cleanup() { mDialog.reset(); }

    void hasTheTextsOfItsForm();
    void carriesTheIconOfTheProgram();
    void opensWithNothingToAccept();
    void completeFileTicksAllButTheNetwork();
    void fileWithoutNetworkDisablesItsBox();
    void missingSectionIsNeitherTickedNorEnabled();
    void unknownSectionAloneStillEnablesTheImport();
    void fileThatIsNoSettingsFileLeavesOkDisabled_data();
    void fileThatIsNoSettingsFileLeavesOkDisabled();
    void anotherTextDisablesTheImportAgain();
    void untickedSectionIsNotSelected();
    void onlyTheFourSectionsAreEverSelected();
    void eachPartOfTheConfigurationHasItsCheckBox();
    void browsingPutsTheFileIntoTheLine();
    void cancelledBrowsingKeepsTheLine();

private:
    QString fileWith(const QByteArray& content);
    void choose(const QByteArray& sections);
    QCheckBox* box(const char* name) { return mDialog->findChild<QCheckBox*>(QLatin1String(name)); }
    QLineEdit* line() { return mDialog->findChild<QLineEdit*>(QStringLiteral("mFileLineEdit")); }
    QPushButton* browse() { return mDialog->findChild<QPushButton*>("mBrowseButton"); }
    QList<QCheckBox*> enabledBoxes();
    bool isImportEnabled();

    QTemporaryDir mFolder;
    std::unique_ptr<OrvgOpenXmlSettingsDialog> mDialog;
};

QString TestOpenSettingsDialog::fileWith(const QByteArray& content)
{
    QFile file(mFolder.filePath(QStringLiteral("settings.orv")));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return {};
    return file.fileName();
}

void TestOpenSettingsDialog::choose(const QByteArray& sections)
{
    line()->setText(fileWith("<!DOCTYPE tarvio><OrvgProject>" + sections + "</OrvgProject>"));
}

bool TestOpenSettingsDialog::isImportEnabled()
{
    const auto* buttons = mDialog->findChild<QDialogButtonBox*>();
    const bool isOkEnabled = buttons->button(QDialogButtonBox::Ok)->isEnabled();
    const bool isMaskEnabled = mDialog->findChild<QGroupBox*>("mImportMaskGroupBox")->isEnabled();
    return isOkEnabled && isMaskEnabled;
}

void TestOpenSettingsDialog::hasTheTextsOfItsForm()
{
    QCOMPARE(mDialog->windowTitle(), QStringLiteral("Import settings"));
    QCOMPARE(mDialog->findChild<QGroupBox*>("mFileSelectionGroupBox")->title(),
             QStringLiteral("Settings file:"));
    QCOMPARE(mDialog->findChild<QGroupBox*>("mImportMaskGroupBox")->title(),
             QStringLiteral("Settings to be imported:"));
    QCOMPARE(browse()->text(), QStringLiteral("Browse..."));
    QCOMPARE(box("mNetworkCb")->text(), QStringLiteral("Network configuration"));
    QCOMPARE(box("mMseqCb")->text(), QStringLiteral("Measurement sequence"));
    QCOMPARE(box("mThresholdsCb")->text(), QStringLiteral("Sensor thresholds"));
    QCOMPARE(box("mPositionsCb")->text(), QStringLiteral("Sensor mount positions"));
}

void TestOpenSettingsDialog::carriesTheIconOfTheProgram()
{
    const QImage wave = QIcon(QStringLiteral(":/icons/icons/wave.png")).pixmap(32).toImage();
    QVERIFY(!wave.isNull());
    QCOMPARE(mDialog->windowIcon().pixmap(32).toImage(), wave);
    QImage iconOfTheFileDialog;
    whenOpened<QFileDialog>(this, [&iconOfTheFileDialog](QFileDialog& dialog) {
        iconOfTheFileDialog = dialog.windowIcon().pixmap(32).toImage();
        dialog.reject();
    });
    browse()->click();
    QCOMPARE(iconOfTheFileDialog, wave);
}

void TestOpenSettingsDialog::opensWithNothingToAccept()
{
    const auto* buttons = mDialog->findChild<QDialogButtonBox*>();
    QVERIFY(!buttons->button(QDialogButtonBox::Ok)->isEnabled());
    QVERIFY(buttons->button(QDialogButtonBox::Cancel)->isEnabled());
    QCOMPARE(mDialog->fileName(), QString());
}

void TestOpenSettingsDialog::completeFileTicksAllButTheNetwork()
{
    choose("<Network/><MSEQ/><Thresholds/><MountPositions/>");
    QVERIFY(isImportEnabled());
    for (const char* name : {"mNetworkCb", "mMseqCb", "mThresholdsCb", "mPositionsCb"})
        QVERIFY(box(name)->isEnabled());
    QVERIFY(!mDialog->isSelected(QStringLiteral("Network")));
    QVERIFY(mDialog->isSelected(QStringLiteral("MSEQ")));
    QVERIFY(mDialog->isSelected(QStringLiteral("Thresholds")));
    QVERIFY(mDialog->isSelected(QStringLiteral("MountPositions")));
    QDir::setCurrent(mFolder.path());
    line()->setText(QStringLiteral("settings.orv"));
    QVERIFY(isImportEnabled());
    mDialog->show();
    saveScreenshot(*mDialog, QStringLiteral("import-settings"));
}

void TestOpenSettingsDialog::fileWithoutNetworkDisablesItsBox()
{
    choose("<MSEQ/><Thresholds/><MountPositions/>");
    QVERIFY(isImportEnabled());
    QVERIFY(!box("mNetworkCb")->isEnabled());
    for (const char* name : {"mMseqCb", "mThresholdsCb", "mPositionsCb"})
        QVERIFY(box(name)->isEnabled() && box(name)->isChecked());
}

void TestOpenSettingsDialog::missingSectionIsNeitherTickedNorEnabled()
{
    choose("<MSEQ/><Thresholds/><MountPositions/>");
    choose("<MSEQ/>");
    // The same text is no change of the line.
    line()->setText(QString());
    choose("<MSEQ/>");
    QVERIFY(box("mMseqCb")->isChecked());
    QVERIFY(!box("mThresholdsCb")->isEnabled());
    QVERIFY(!box("mThresholdsCb")->isChecked());
}

void TestOpenSettingsDialog::unknownSectionAloneStillEnablesTheImport()
{
    choose("<Other/>");
    QVERIFY(isImportEnabled());
    for (const char* name : {"mNetworkCb", "mMseqCb", "mThresholdsCb", "mPositionsCb"})
        QVERIFY(!box(name)->isEnabled());
}

void TestOpenSettingsDialog::fileThatIsNoSettingsFileLeavesOkDisabled_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("another root") << QByteArray("<svg><MSEQ/></svg>");
    QTest::newRow("no sections") << QByteArray("<OrvgProject/>");
    QTest::newRow("binary junk") << QByteArray::fromHex("89504e470d0a1a0a0000ffd8ff00fe");
}

void TestOpenSettingsDialog::fileThatIsNoSettingsFileLeavesOkDisabled()
{
    QFETCH(QByteArray, content);
    line()->setText(fileWith(content));
    QVERIFY(!isImportEnabled());
}

void TestOpenSettingsDialog::anotherTextDisablesTheImportAgain()
{
    choose("<MSEQ/>");
    QVERIFY(isImportEnabled());
    QTest::keyClick(line(), Qt::Key_Backspace);
    QVERIFY(!isImportEnabled());
    line()->setText(QString());
    QVERIFY(!isImportEnabled());
}

void TestOpenSettingsDialog::untickedSectionIsNotSelected()
{
    choose("<MSEQ/><Thresholds/>");
    box("mMseqCb")->click();
    QVERIFY(!mDialog->isSelected(QStringLiteral("MSEQ")));
    QVERIFY(mDialog->isSelected(QStringLiteral("Thresholds")));
}

void TestOpenSettingsDialog::onlyTheFourSectionsAreEverSelected()
{
    choose("<MSEQ/><Other/>");
    QVERIFY(!mDialog->isSelected(QStringLiteral("Other")));
    QVERIFY(!mDialog->isSelected(QString()));
}

QList<QCheckBox*> TestOpenSettingsDialog::enabledBoxes()
{
    QList<QCheckBox*> boxes = mDialog->findChildren<QCheckBox*>();
    boxes.erase(std::remove_if(boxes.begin(), boxes.end(),
                               [](const QCheckBox* box) { return !box->isEnabled(); }),
                boxes.end());
    return boxes;
}

// Whoever adds a part adds a check box to the form; the window looks for it by the part's element.
void TestOpenSettingsDialog::eachPartOfTheConfigurationHasItsCheckBox()
{
    OrvgThresholdView thresholds;
    OrvgMseqView sequence;
    OrvgSensorPositionView positions;
    QSettings store(mFolder.filePath(QStringLiteral("store.ini")), QSettings::IniFormat);
    const QVector<ConfigurationPart> parts =
        configurationParts(store, holdersOf({&thresholds, &sequence, &positions}));
    QVERIFY(!parts.isEmpty());
    for (const ConfigurationPart& part : parts) {
        line()->clear();
        choose("<" + part.element.toUtf8() + "/>");
        QVERIFY2(enabledBoxes().size() == 1, qPrintable(part.element));
        enabledBoxes().first()->setChecked(true);
        QVERIFY2(mDialog->isSelected(part.element), qPrintable(part.element));
    }
    QCOMPARE(mDialog->findChildren<QCheckBox*>().size(), parts.size());
}

void TestOpenSettingsDialog::browsingPutsTheFileIntoTheLine()
{
    const QString fileName = fileWith("<OrvgProject><MSEQ/></OrvgProject>");
    QString caption;
    QStringList filters;
    whenOpened<QFileDialog>(this, [&](QFileDialog& dialog) {
        caption = dialog.windowTitle();
        filters = dialog.nameFilters();
        dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(fileName);
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
    });
    browse()->click();
    QCOMPARE(caption, QStringLiteral("Select settings file"));
    QCOMPARE(filters, QStringList{"Orv setting files(*.orv)"});
    QCOMPARE(mDialog->fileName(), fileName);
    QVERIFY(isImportEnabled());
}

void TestOpenSettingsDialog::cancelledBrowsingKeepsTheLine()
{
    line()->setText(QStringLiteral("typed"));
    whenOpened<QFileDialog>(this, [](QFileDialog& dialog) { dialog.reject(); });
    browse()->click();
    QCOMPARE(mDialog->fileName(), QStringLiteral("typed"));
}

QTEST_MAIN(TestOpenSettingsDialog)
#include "test_open_settings_dialog.moc"
