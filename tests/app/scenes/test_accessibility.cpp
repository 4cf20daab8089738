#include "app/TarvioApplication.h"
#include "tests/app/scenes/accessibility_faults.h"
#include "tests/app/scenes/expect_none.h"
#include "tests/app/scenes/scenes.h"

#include <QtTest>

Q_DECLARE_METATYPE(Scene)

/// The whole program for those who do not see it, or have no mouse.
class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void init() { mStage = std::make_unique<Stage>(); }
    void cleanup() { mStage.reset(); }

    void everyPartIsNamed_data() { scenes(); }
    void everyPartIsNamed();
    void noTwoShareAMnemonic_data() { scenes(); }
    void noTwoShareAMnemonic();
    void tabKeyVisitsEveryPart_data() { scenes(); }
    void tabKeyVisitsEveryPart();

private:
    using Faults = QStringList (*)(QWidget&);

    static void scenes();
    QStringList faultsOfScene(Faults faultsOf);

    std::unique_ptr<Stage> mStage;
};

void TestAccessibility::scenes()
{
    QTest::addColumn<Scene>("scene");
    for (const Scene& scene : allScenes())
        QTest::newRow(scene.name) << scene;
}

QStringList TestAccessibility::faultsOfScene(Faults faultsOf)
{
    const auto scene = *static_cast<Scene*>(QTest::qData("scene", qMetaTypeId<Scene>()));
    QStringList faults;
    int looks = 0;
    scene.play(*mStage, [&](QWidget& shown) {
        ++looks;
        for (const QString& fault : faultsOf(shown))
            faults << shown.windowTitle() + QStringLiteral(": ") + fault;
    });
    if (looks == 0)
        faults << QStringLiteral("nothing was shown");
    return faults;
}

void TestAccessibility::everyPartIsNamed()
{
    expectNone(faultsOfScene(namelessParts));
}

void TestAccessibility::noTwoShareAMnemonic()
{
    expectNone(faultsOfScene(sharedMnemonics));
}

void TestAccessibility::tabKeyVisitsEveryPart()
{
    expectNone(faultsOfScene(tabFaults));
}

int main(int argc, char** argv)
{
    TarvioApplication application(argc, argv);
    TestAccessibility test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_accessibility.moc"
