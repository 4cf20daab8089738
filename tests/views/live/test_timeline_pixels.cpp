#include "tests/views/live/ReferenceTimeline.h"
#include "views/live/OrvgLiveView.h"
#include "views/live/OrvgSignalLineWidget.h"
#include "views/live/OrvgSignalWidget.h"

#include <QApplication>
#include <QBackingStore>
#include <QImage>
#include <QPalette>
#include <QScrollArea>
#include <QScrollBar>
#include <QtMath>
#include <QtTest>

#include <cmath>
#include <memory>
#include <random>
#include <vector>

using Echoes = std::vector<orv::OrvSensorEcho>;

namespace {

// The same results with each run.
class RandomResults
{
public:
    int upTo(int limit) { return std::uniform_int_distribution<int>(0, limit)(mGenerator); }

    Echoes echoes()
    {
        Echoes echoes(static_cast<std::size_t>(upTo(2) ? upTo(8) : 0));
        for (orv::OrvSensorEcho& echo : echoes) {
            echo.magnitude = static_cast<std::uint8_t>(upTo(9) ? upTo(15) : upTo(255));
            echo.timeOfFlight = static_cast<std::uint16_t>(upTo(9) ? upTo(30000) : upTo(65535));
        }
        return echoes;
    }

    orv::OrvSensorRole role() { return static_cast<orv::OrvSensorRole>(upTo(3)); }

private:
    std::mt19937 mGenerator{20};
};

// What stands on the screen, not what a widget would paint if it were asked.
QImage onScreen(const QWidget& window)
{
    // New slots are shown, laid out and painted by an event each.
    for (int rounds = 0; rounds < 3; ++rounds)
        QCoreApplication::processEvents();
    // On the offscreen platform the device is a picture, as large as the window in device pixels.
    return *static_cast<const QImage*>(window.backingStore()->paintDevice());
}

QString difference(const QImage& actual, const QImage& expected)
{
    if (actual.isNull() || actual.size() != expected.size())
        return QStringLiteral("the sizes differ");
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            if (actual.pixel(x, y) != expected.pixel(x, y))
                return QStringLiteral("at %1, %2: %3 instead of %4")
                    .arg(x)
                    .arg(y)
                    .arg(actual.pixelColor(x, y).name(), expected.pixelColor(x, y).name());
        }
    }
    return {};
}

// A timeline and its reference, each in a window of its own.
class Pair
{
public:
    explicit Pair(const QSize& size)
    {
        resize(size);
        mTimeline.show();
        mReference.show();
    }

    void resize(const QSize& size)
    {
        mTimeline.resize(size);
        mReference.resize(size);
        QCoreApplication::processEvents();
    }

    void takeResult()
    {
        const Echoes echoes = mResults.echoes();
        const orv::OrvSensorRole role = mResults.role();
        mTimeline.addMeasurement(echoes, role);
        mReference.addMeasurement(echoes, role);
    }

    QString difference() const { return ::difference(onScreen(mTimeline), onScreen(mReference)); }

private:
    RandomResults mResults;
    OrvgSignalLineWidget mTimeline;
    ReferenceTimeline mReference;
};

// The live view, and a window with a reference in the place of each timeline.
class ViewPair
{
public:
    explicit ViewPair(const QSize& size)
    {
        mView.resize(size);
        mView.show();
        QCoreApplication::processEvents();
        mBackground.resize(mView.width(), mView.height() + 2 * mOffset);
        for (int sensor = 0; sensor < orv::kSensorCount; ++sensor)
            mReferences.push_back(new ReferenceTimeline(&mBackground));
        placeReferences();
        mBackground.show();
    }

    void takeResult()
    {
        orv::OrvMeasurementResult result;
        result.valid = true;
        result.hasMasks = true;
        result.sendMask = static_cast<std::uint16_t>(mResults.upTo(0xfff));
        result.receiveMask = static_cast<std::uint16_t>(mResults.upTo(0xfff));
        for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
            if (const Echoes echoes = mResults.echoes(); !echoes.empty())
                result.echoes[sensor] = echoes;
        mView.onNewMeasResult(result);
        for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
            mReferences[sensor]->addMeasurement(result.echoes[sensor], result.role(sensor));
    }

    void scroll(int pixels)
    {
        scrollArea()->verticalScrollBar()->setValue(pixels);
        placeReferences();
        // At a ratio with a fraction, Qt 6 moves pixels to where they would not be painted.
        if (std::floor(mView.devicePixelRatioF()) != mView.devicePixelRatioF()) {
            mView.update();
            mBackground.update();
            for (OrvgSignalLineWidget* line : lines())
                line->update();
        }
    }

    QString difference()
    {
        const QImage view = onScreen(mView);
        const QImage reference = onScreen(mBackground);
        for (const OrvgSignalLineWidget* line : lines()) {
            if (line->visibleRegion().isEmpty())
                continue;
            const qreal ratio = view.devicePixelRatioF();
            const QRect seen = pixelsInSight(*line, ratio);
            const QRect expected = seen.translated(0, qRound(mOffset * ratio));
            const QString found = ::difference(view.copy(seen), reference.copy(expected));
            if (!found.isEmpty())
                return QStringLiteral("%1: %2").arg(line->accessibleName(), found);
        }
        return {};
    }

private:
    QList<OrvgSignalLineWidget*> lines() { return mView.findChildren<OrvgSignalLineWidget*>(); }
    QScrollArea* scrollArea() { return mView.findChild<QScrollArea*>("scrollArea"); }

    // Without pixels that are shared with what is beside the timeline.
    QRect pixelsInSight(const OrvgSignalLineWidget& line, qreal ratio)
    {
        const QRect seen = line.visibleRegion().boundingRect();
        const QPointF topLeft = line.mapTo(&mView, seen.topLeft());
        const QPointF bottomRight = topLeft + QPointF(seen.width(), seen.height());
        return {QPoint(qCeil(topLeft.x() * ratio), qCeil(topLeft.y() * ratio)),
                QPoint(qFloor(bottomRight.x() * ratio) - 1, qFloor(bottomRight.y() * ratio) - 1)};
    }

    void placeReferences()
    {
        for (int sensor = 0; sensor < lines().size(); ++sensor) {
            const OrvgSignalLineWidget* line = lines().at(sensor);
            mReferences[static_cast<std::size_t>(sensor)]->setGeometry(
                QRect(line->mapTo(&mView, QPoint(0, mOffset)), line->size()));
        }
    }

    RandomResults mResults;
    OrvgLiveView mView;
    // So far down that the references of timelines that are scrolled out of sight are in sight. At
    // a ratio with a fraction, dotted lines depend on where in the window they are.
    const int mOffset =
        std::floor(mView.devicePixelRatioF()) == mView.devicePixelRatioF() ? 400 : 0;
    QWidget mBackground;
    std::vector<ReferenceTimeline*> mReferences; // children of mBackground
};

} // namespace

class TimelinePixelsTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QApplication::setPalette(QPalette()); }

    void timelineLooksLikeItsReference_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("isDark");
        for (const bool isDark : {false, true}) {
            const char* palette = isDark ? "dark" : "light";
            QTest::addRow("too narrow, %s", palette) << QSize(39, 50) << isDark;
            QTest::addRow("one slot, %s", palette) << QSize(79, 50) << isDark;
            QTest::addRow("equal slots, %s", palette) << QSize(205, 50) << isDark;
            QTest::addRow("unequal slots, %s", palette) << QSize(697, 50) << isDark;
            QTest::addRow("high slots, %s", palette) << QSize(811, 117) << isDark;
            QTest::addRow("wide screen, %s", palette) << QSize(1376, 85) << isDark;
        }
    }

    void timelineLooksLikeItsReference()
    {
        QFETCH(QSize, size);
        QFETCH(bool, isDark);
        if (isDark)
            QApplication::setPalette(darkPalette());
        Pair pair(size);
        QCOMPARE(pair.difference(), QString());
        for (int count = 0; count < 50; ++count) {
            pair.takeResult();
            QCOMPARE(pair.difference(), QString());
        }
    }

    void everyWidthLooksLikeItsReference()
    {
        Pair pair({400, 50});
        for (int width = 400; width < 480; ++width) {
            pair.resize({width, 50});
            for (int count = 0; count < 12; ++count)
                pair.takeResult();
            QCOMPARE(pair.difference(), QString());
        }
    }

    void resizedTimelineLooksLikeItsReference()
    {
        RandomResults sizes;
        Pair pair({400, 50});
        for (int count = 0; count < 60; ++count) {
            pair.takeResult();
            QCOMPARE(pair.difference(), QString());
            pair.resize({40 + sizes.upTo(500), 50 + sizes.upTo(40)});
            QCOMPARE(pair.difference(), QString()); // before the slots follow the width
            for (int more = sizes.upTo(2); more > 0; --more)
                pair.takeResult();
        }
    }

    void timelineThatWasTooNarrowLooksLikeItsReference()
    {
        Pair pair({400, 50});
        for (const int width : {400, 39, 400, 20, 79, 430}) {
            pair.resize({width, 50});
            for (int count = 0; count < 5; ++count) {
                pair.takeResult();
                QCOMPARE(pair.difference(), QString());
            }
        }
    }

    void severalResultsBetweenTwoRepaintsLookLikeTheirReference()
    {
        Pair pair({697, 50});
        for (int results = 1; results < 40; ++results) {
            for (int count = 0; count < results; ++count)
                pair.takeResult();
            QCOMPARE(pair.difference(), QString());
        }
    }

    void changedPaletteLooksLikeTheReference()
    {
        Pair pair({697, 50});
        for (int count = 0; count < 10; ++count)
            pair.takeResult();
        for (const QPalette& palette : {darkPalette(), QPalette(), darkPalette()}) {
            QApplication::setPalette(palette);
            QCOMPARE(pair.difference(), QString());
            pair.takeResult();
            QCOMPARE(pair.difference(), QString());
        }
    }

    void patternedBackgroundShowsThrough()
    {
        QPalette palette;
        palette.setBrush(QPalette::Window, QBrush(Qt::red, Qt::DiagCrossPattern));
        QApplication::setPalette(palette);
        Pair pair({697, 50});
        for (int count = 0; count < 20; ++count) {
            pair.takeResult();
            QCOMPARE(pair.difference(), QString());
        }
    }

    void largePictureLooksLikeItsReference_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("as it opens") << QSize(243, 178);
        QTest::newRow("lowest") << QSize(196, 80);
        QTest::newRow("high") << QSize(401, 833);
    }

    void largePictureLooksLikeItsReference()
    {
        QFETCH(QSize, size);
        OrvgSignalWidget picture;
        ReferenceSlot reference;
        for (QWidget* widget :
             {static_cast<QWidget*>(&picture), static_cast<QWidget*>(&reference)}) {
            widget->resize(size);
            widget->show();
        }
        RandomResults results;
        for (int count = 0; count < 30; ++count) {
            reference.echoes = results.echoes();
            reference.update();
            picture.setSignal(reference.echoes);
            QCOMPARE(difference(onScreen(picture), onScreen(reference)), QString());
        }
    }

    void liveViewLooksLikeItsReference_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("as it opens") << QSize(1037, 388);
        QTest::newRow("narrow") << QSize(650, 300);
        QTest::newRow("all timelines in sight") << QSize(1101, 733);
        QTest::newRow("a whole screen") << QSize(1920, 1080);
    }

    void liveViewLooksLikeItsReference()
    {
        QFETCH(QSize, size);
        ViewPair pair(size);
        for (int count = 0; count < 40; ++count)
            pair.takeResult();
        for (int count = 0; count < 10; ++count) {
            pair.takeResult();
            QCOMPARE(pair.difference(), QString());
        }
    }

    void scrolledLiveViewLooksLikeItsReference()
    {
        ViewPair pair({1037, 388});
        for (const int pixels : {0, 10, 95, 300, 20}) {
            pair.scroll(pixels);
            QCOMPARE(pair.difference(), QString());
            for (int count = 0; count < 5; ++count)
                pair.takeResult();
            QCOMPARE(pair.difference(), QString());
        }
    }

private:
    static QPalette darkPalette()
    {
        QPalette palette(QColor(45, 45, 48));
        palette.setColor(QPalette::WindowText, Qt::white);
        return palette;
    }
};

QTEST_MAIN(TimelinePixelsTest)
#include "test_timeline_pixels.moc"
