#include "app/OrvgAboutDialog.h"
#include "orv_decoder/build_info.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTextDocument>
#include <QtTest>

class TestAboutDialog : public QObject
{
    Q_OBJECT

private slots:
    void versionIsTheSecondFieldOfTheBuildRecord_data();
    void versionIsTheSecondFieldOfTheBuildRecord();
    void versionLineNamesVersionAndCommit();
    void makerLineIsALinkThatTheBrowserOpens();
    void programNameIsLargeAndBold();
    void buttonClosesTheDialog();
};

void TestAboutDialog::versionIsTheSecondFieldOfTheBuildRecord_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("version");
    QTest::newRow("whole") << "orv_decoder_Release-19.46.0-f8d4f2b-2019-11-19"
                           << "19.46.0";
    QTest::newRow("two fields") << "orv_decoder-1.2"
                                << "1.2";
    QTest::newRow("one field") << "orv_decoder"
                               << "";
    QTest::newRow("nothing") << ""
                             << "";
}

void TestAboutDialog::versionIsTheSecondFieldOfTheBuildRecord()
{
    QFETCH(QString, record);
    QFETCH(QString, version);
    QCOMPARE(versionOfBuildRecord(record), version);
}

void TestAboutDialog::versionLineNamesVersionAndCommit()
{
    OrvgAboutDialog dialog;
    QCOMPARE(dialog.windowTitle(), QString("About Tarvio"));
    QTextDocument text;
    text.setHtml(dialog.findChild<QLabel*>("infoLabel")->text());
    const QString expected = QString("Version: 19.46.0 (%1)").arg(orv::kCommitId);
    QCOMPARE(text.toPlainText().section('\n', 0, 0), expected);
    QVERIFY(QString(orv::kBuildRecord).contains(QString("-19.46.0-%1-").arg(orv::kCommitId)));
}

void TestAboutDialog::makerLineIsALinkThatTheBrowserOpens()
{
    OrvgAboutDialog dialog;
    auto* label = dialog.findChild<QLabel*>("infoLabel");
    QVERIFY(label->openExternalLinks());
    QVERIFY(label->text().contains("href=\"https://maltrex.example\""));
    QVERIFY(label->text().contains("<b><u>"));
}

void TestAboutDialog::programNameIsLargeAndBold()
{
    OrvgAboutDialog dialog;
    auto* label = dialog.findChild<QLabel*>("programNameLabel");
    QCOMPARE(label->text(), QString("Tarvio"));
    QCOMPARE(label->font().pointSize(), 16);
    QVERIFY(label->font().bold());
    QVERIFY(label->alignment().testFlag(Qt::AlignHCenter));
    QVERIFY(!dialog.findChild<QLabel*>("iconLabel")->pixmap(Qt::ReturnByValue).isNull());
}

void TestAboutDialog::buttonClosesTheDialog()
{
    OrvgAboutDialog dialog;
    dialog.show();
    auto* box = dialog.findChild<QDialogButtonBox*>("buttonBox");
    QTest::mouseClick(box->buttons().first(), Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
}

QTEST_MAIN(TestAboutDialog)
#include "test_about_dialog.moc"
