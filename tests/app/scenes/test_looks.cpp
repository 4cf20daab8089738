#include "app/TarvioApplication.h"
#include "ecu/qt_compatibility.h"
#include "tests/app/scenes/contrast_faults.h"
#include "tests/app/scenes/expect_none.h"
#include "tests/app/scenes/layout_faults.h"
#include "tests/app/scenes/scenes.h"
#include "tests/support/Palettes.h"

#include <QDir>
#include <QtTest>

namespace {

using Scenes = std::vector<Scene>;

constexpr QSize kLaptop(1280, 800);
constexpr QSize kDesktop(1920, 1080);
constexpr double kLargerFonts = 1.3;

/// Other fonts for all widgets as long as it lives.
class FontScope
{
public:
    explicit FontScope(double factor)
    {
        QFont font = mFormer;
        font.setPointSizeF(font.pointSizeF() * factor);
        QApplication::setFont(font);
    }
    ~FontScope() { QApplication::setFont(mFormer); }
    FontScope(const FontScope&) = delete;
    FontScope& operator=(const FontScope&) = delete;

private:
    const QFont mFormer = QApplication::font();
};

QStringList paleParts(QWidget& window, const QImage& picture)
{
    return paleTexts(window, picture) + paleIcons(window, picture);
}

} // namespace

/// What is seen of the program at the scale factor that the test is started with.
class TestLooks : public QObject
{
    Q_OBJECT

private slots:
    void everyTextAndIconIsSeenWhole_data();
    void everyTextAndIconIsSeenWhole();

private:
    static bool isLarge() { return qApp->devicePixelRatio() >= 2; }
    static QDir pictureFolder();
    QStringList faultsOf(QWidget& shown, const QString& name) const;
};

void TestLooks::everyTextAndIconIsSeenWhole_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<double>("fontFactor");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("withDialogs");
    // Dialogs do not depend on the size of the window. Every two of the choices meet once, but
    // for the dialogs at large scales: one round of them takes long enough.
    QTest::newRow("light 1280x800") << false << 1.0 << kLaptop << !isLarge();
    QTest::newRow("dark 1280x800 larger fonts") << true << kLargerFonts << kLaptop << true;
    QTest::newRow("light 1920x1080 larger fonts") << false << kLargerFonts << kDesktop << false;
    QTest::newRow("dark 1920x1080") << true << 1.0 << kDesktop << false;
}

void TestLooks::everyTextAndIconIsSeenWhole()
{
    QFETCH(bool, isDark);
    QFETCH(double, fontFactor);
    QFETCH(QSize, size);
    QFETCH(bool, withDialogs);
    const PaletteScope palette(isDark ? darkPalette() : lightPalette());
    const FontScope font(fontFactor);
    Stage stage(size);
    QStringList faults;
    for (const Scene& scene : withDialogs ? allScenes() : windowScenes()) {
        int looks = 0;
        scene.play(stage, [&](QWidget& shown) {
            stage.pass(0);
            const QString name = QStringLiteral("%1 %2").arg(scene.name).arg(++looks);
            for (const QString& fault : faultsOf(shown, name))
                faults << name + QStringLiteral(": ") + fault;
        });
    }
    expectNone(faults);
}

QStringList TestLooks::faultsOf(QWidget& shown, const QString& name) const
{
    const QStringList faults = cutTexts(shown) + overlaps(shown) + blurredIcons(shown);
    // The largest pictures take longest and show nothing that the others do not.
    if (isLarge() && shown.width() > kLaptop.width())
        return faults;
    const QPixmap picture = shown.grab();
    picture.save(pictureFolder().filePath(name + QStringLiteral(".png")), nullptr, 100);
    // Colours are the same at each scale.
    return isLarge() ? faults : faults + paleParts(shown, picture.toImage());
}

QDir TestLooks::pictureFolder()
{
    const QDir folder(QStringLiteral("%1/%2x %3")
                          .arg(qEnvironmentVariable("TARVIO_LOOKS", QDir::tempPath()))
                          .arg(qApp->devicePixelRatio())
                          .arg(QLatin1String(QTest::currentDataTag())));
    folder.mkpath(QStringLiteral("."));
    return folder;
}

int main(int argc, char** argv)
{
    qt_compatibility::followScreenScale();
    TarvioApplication application(argc, argv);
    TestLooks test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_looks.moc"
