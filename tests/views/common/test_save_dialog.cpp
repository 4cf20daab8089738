#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/modal_dialogs.h"
#include "views/common/save_dialog.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

class TestSaveDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init() { mFolder = std::make_unique<QTemporaryDir>(); }

    void showsItsCaptionAndFilter();
    void cancelledGivesNoName();
    void suffixIsAddedWhereItIsMissing_data();
    void suffixIsAddedWhereItIsMissing();
    void existingFileIsAskedAboutUnderItsFullName_data();
    void existingFileIsAskedAboutUnderItsFullName();
    void keptFileOpensTheDialogAgainWithItsName();
    void fileOfTheNameWithoutTheSuffixIsNoneOfOurs();

private:
    static QString ask()
    {
        return askSaveFileName(nullptr, QStringLiteral("Export settings file"),
                               QStringLiteral("Orv settings(*.orv)"), QStringLiteral(".orv"));
    }
    static QLineEdit* line(QFileDialog& dialog)
    {
        return dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    }
    static void save(QFileDialog& dialog, const QString& typed)
    {
        line(dialog)->setText(typed);
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
    }
    QString askAndType(const QString& typed);
    QString path(const QString& name) const { return mFolder->filePath(name); }
    void create(const QString& name)
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    std::unique_ptr<QTemporaryDir> mFolder;
};

QString TestSaveDialog::askAndType(const QString& typed)
{
    whenOpened<QFileDialog>(this,
                            [this, typed](QFileDialog& dialog) { save(dialog, path(typed)); });
    return ask();
}

void TestSaveDialog::showsItsCaptionAndFilter()
{
    QString caption;
    QStringList filters;
    whenOpened<QFileDialog>(this, [&](QFileDialog& dialog) {
        caption = dialog.windowTitle();
        filters = dialog.nameFilters();
        dialog.reject();
    });
    ask();
    QCOMPARE(caption, QStringLiteral("Export settings file"));
    QCOMPARE(filters, QStringList{"Orv settings(*.orv)"});
}

void TestSaveDialog::cancelledGivesNoName()
{
    whenOpened<QFileDialog>(this, [this](QFileDialog& dialog) {
        line(dialog)->setText(path("a"));
        dialog.reject();
    });
    QCOMPARE(ask(), QString());
}

void TestSaveDialog::suffixIsAddedWhereItIsMissing_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");

    QTest::newRow("none") << "bumper"
                          << "bumper.orv";
    QTest::newRow("there") << "bumper.orv"
                           << "bumper.orv";
    QTest::newRow("another dot") << "bumper v1.2"
                                 << "bumper v1.2.orv";
}

void TestSaveDialog::suffixIsAddedWhereItIsMissing()
{
    QFETCH(QString, typed);
    QFETCH(QString, expected);
    const MessageBoxWatcher watcher;
    QCOMPARE(askAndType(typed), path(expected));
    QVERIFY(watcher.boxes().isEmpty());
}

void TestSaveDialog::existingFileIsAskedAboutUnderItsFullName_data()
{
    QTest::addColumn<QString>("typed");

    QTest::newRow("with the suffix") << "bumper v1.2.orv";
    QTest::newRow("without it") << "bumper v1.2";
}

void TestSaveDialog::existingFileIsAskedAboutUnderItsFullName()
{
    QFETCH(QString, typed);
    create(QStringLiteral("bumper v1.2.orv"));
    const MessageBoxWatcher watcher(QMessageBox::Yes);
    QCOMPARE(askAndType(typed), path("bumper v1.2.orv"));
    QCOMPARE(watcher.boxes().size(), 1);
    QCOMPARE(watcher.boxes().first().icon, QMessageBox::Warning);
    QCOMPARE(watcher.boxes().first().title, QStringLiteral("Export settings file"));
    QCOMPARE(watcher.boxes().first().text,
             QStringLiteral("bumper v1.2.orv already exists.\nDo you want to replace it?"));
    QCOMPARE(watcher.boxes().first().buttons, QMessageBox::Yes | QMessageBox::No);
}

void TestSaveDialog::keptFileOpensTheDialogAgainWithItsName()
{
    create(QStringLiteral("a.orv"));
    MessageBoxWatcher watcher(QMessageBox::No);
    QString nameWhenOpenedAgain;
    whenOpened<QFileDialog>(this, [&](QFileDialog& dialog) {
        save(dialog, path("a"));
        whenOpened<QFileDialog>(this, [&](QFileDialog& again) {
            nameWhenOpenedAgain = line(again)->text();
            save(again, path("b"));
        });
    });
    QCOMPARE(ask(), path("b.orv"));
    QVERIFY(nameWhenOpenedAgain.endsWith(QLatin1Char('a')));
    QCOMPARE(watcher.boxes().size(), 1);
}

void TestSaveDialog::fileOfTheNameWithoutTheSuffixIsNoneOfOurs()
{
    create(QStringLiteral("a"));
    const MessageBoxWatcher watcher(QMessageBox::No);
    QCOMPARE(askAndType(QStringLiteral("a")), path("a.orv"));
    QVERIFY(watcher.boxes().isEmpty());
}

QTEST_MAIN(TestSaveDialog)
#include "test_save_dialog.moc"
