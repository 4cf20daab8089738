#include "app/TarvioApplication.h"
#include "tests/app/scenes/PseudoTranslator.h"
#include "tests/app/scenes/expect_none.h"
#include "tests/app/scenes/layout_faults.h"
#include "tests/app/scenes/scenes.h"
#include "tests/app/scenes/text_faults.h"

#include <QDir>
#include <QtTest>

/// The whole program in a language that does not exist.
class TestPseudoTranslation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(QCoreApplication::installTranslator(&mTranslator)); }
    void cleanupTestCase() { QCoreApplication::removeTranslator(&mTranslator); }

    void faultsAreFound_data();
    void faultsAreFound();
    void everyTextIsTranslatedAndHasRoom_data();
    void everyTextIsTranslatedAndHasRoom();

private:
    PseudoTranslator mTranslator;
};

void TestPseudoTranslation::faultsAreFound_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isFault");
    QTest::newRow("translated") << tr("Sensor %1").arg(7) << false;
    QTest::newRow("with a translated part") << tr("%1: %2").arg(tr("a"), tr("b")) << false;
    QTest::newRow("lines") << tr("a") + '\n' + tr("b") << false;
    QTest::newRow("number") << "-12.5" << false;
    QTest::newRow("bypassed") << "Sensor 7" << true;
    QTest::newRow("part bypassed") << tr("Sensor: %1").arg("none") << true;
    QTest::newRow("halves") << tr("Sensor") + ' ' + tr("none") << true;
    QTest::newRow("half") << tr("Sensor") + " 7" << true;
    QTest::newRow("twice") << tr(qPrintable(tr("Sensor"))) << true;
}

void TestPseudoTranslation::faultsAreFound()
{
    QFETCH(QString, text);
    QFETCH(bool, isFault);
    QCOMPARE(!translationFault(text).isEmpty(), isFault);
}

void TestPseudoTranslation::everyTextIsTranslatedAndHasRoom_data()
{
    QTest::addColumn<int>("index");
    const auto scenes = allScenes();
    for (std::size_t index = 0; index < scenes.size(); ++index)
        QTest::newRow(scenes[index].name) << static_cast<int>(index);
}

void TestPseudoTranslation::everyTextIsTranslatedAndHasRoom()
{
    QFETCH(int, index);
    const QDir folder(qEnvironmentVariable("TARVIO_LOOKS", QDir::tempPath()) + "/translated");
    QVERIFY(folder.mkpath(QStringLiteral(".")));
    Stage stage(QSize(1280, 800));
    const Scene scene = allScenes().at(static_cast<std::size_t>(index));
    QStringList faults;
    int looks = 0;
    scene.play(stage, [&](QWidget& shown) {
        const QString name = QStringLiteral("%1 %2").arg(scene.name).arg(++looks);
        shown.grab().save(folder.filePath(name + QStringLiteral(".png")), nullptr, 100);
        faults += translationFaults(shown) + cutTexts(shown) + overlaps(shown);
    });
    QVERIFY(looks > 0);
    faults.removeDuplicates();
    expectNone(faults);
}

int main(int argc, char** argv)
{
    TarvioApplication application(argc, argv);
    TestPseudoTranslation test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_pseudo_translation.moc"
