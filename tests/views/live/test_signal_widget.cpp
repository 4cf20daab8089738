#include "orv_decoder/metatypes.h"
#include "views/live/OrvgSignalWidget.h"

#include <QtTest>

using Echoes = std::vector<orv::OrvSensorEcho>;
using orv::OrvSensorRole;

namespace {

const QColor kBackground(50, 54, 50, 127); // (50, 55, 50, 127) as a premultiplied pixel rounds it
const QColor kYellow(255, 255, 0);
const QColor kTransparent(0, 0, 0, 0);

// What the widget itself paints, without the window's background.
QImage painted(OrvgSignalWidget& widget, const QSize& size)
{
    widget.resize(size);
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

int countOf(const QColor& color, const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == color;
    return count;
}

struct PaintCounter : QObject
{
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
    int count = 0;
};

} // namespace

class SignalWidgetTest : public QObject
{
    Q_OBJECT

private slots:
    void largePictureStartsEmptyAndIsNotClickable()
    {
        const OrvgSignalWidget picture;
        QVERIFY(picture.echoes().empty());
        QVERIFY(!picture.isClickable());
        QCOMPARE(picture.role(), OrvSensorRole::NotInvolved);
    }

    void timelinePictureStartsWithItsEchoesAndIsClickable()
    {
        QWidget parent;
        const Echoes echoes{{.magnitude = 7, .timeOfFlight = 5120}};
        const OrvgSignalWidget picture(echoes, &parent);
        QCOMPARE(picture.echoes(), echoes);
        QVERIFY(picture.isClickable());
        QCOMPARE(picture.parentWidget(), &parent);
        QCOMPARE(picture.cursor().shape(), Qt::PointingHandCursor);
    }

    void handShowsWhileATimelinePictureHasEchoes()
    {
        OrvgSignalWidget picture({}, nullptr);
        QCOMPARE(picture.cursor().shape(), Qt::ArrowCursor);
        picture.setSignal({{.magnitude = 1, .timeOfFlight = 0}});
        QCOMPARE(picture.cursor().shape(), Qt::PointingHandCursor);
        picture.setSignal({});
        QCOMPARE(picture.cursor().shape(), Qt::ArrowCursor);
    }

    void largePictureNeverShowsTheHand()
    {
        OrvgSignalWidget picture;
        picture.setSignal({{.magnitude = 7, .timeOfFlight = 5120}});
        QCOMPARE(picture.cursor().shape(), Qt::ArrowCursor);
    }

    void copyTakesOverRoleEchoesAndCursor()
    {
        OrvgSignalWidget source({{.magnitude = 7, .timeOfFlight = 5120}}, nullptr);
        source.setRole(OrvSensorRole::ReceivingOnly);
        OrvgSignalWidget target({}, nullptr);
        target.copyFrom(source);
        QCOMPARE(target.echoes(), (Echoes{{.magnitude = 7, .timeOfFlight = 5120}}));
        QCOMPARE(target.role(), OrvSensorRole::ReceivingOnly);
        QCOMPARE(target.cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(source.echoes().size(), std::size_t{1});
    }

    void copyLeavesTheTargetAsClickableAsItWas()
    {
        const OrvgSignalWidget source({{.magnitude = 7, .timeOfFlight = 5120}}, nullptr);
        OrvgSignalWidget target;
        target.copyFrom(source);
        QVERIFY(!target.isClickable());
        QCOMPARE(target.cursor().shape(), Qt::ArrowCursor);
    }

    void shorterSignalStaysInTheBufferOfALongerOne()
    {
        OrvgSignalWidget picture;
        picture.setSignal(Echoes(20));
        const auto* buffer = picture.echoes().data();
        picture.setSignal(Echoes(3));
        picture.setSignal(Echoes(20));
        QCOMPARE(picture.echoes().data(), buffer);
    }

    void newSignalIsPaintedWithoutAskingForIt()
    {
        OrvgSignalWidget picture;
        picture.resize(40, 54);
        picture.show();
        QVERIFY(QTest::qWaitForWindowExposed(&picture));
        PaintCounter counter;
        picture.installEventFilter(&counter);
        picture.setSignal({{.magnitude = 7, .timeOfFlight = 5120}});
        QTRY_VERIFY(counter.count > 0);
    }

    void emptyPictureIsOneDottedLineAtTheLeftEdge()
    {
        OrvgSignalWidget picture({}, nullptr);
        const QImage image = painted(picture, {39, 48});
        const int dots = countOf(QColor(picture.palette().color(picture.foregroundRole())),
                                 image.copy(0, 0, 1, 48));
        QVERIFY2(dots >= 12 && dots <= 32, qPrintable(QString::number(dots)));
        QVERIFY(image.pixelColor(0, 0) != kTransparent);
        QCOMPARE(countOf(kTransparent, image.copy(0, 0, 1, 48)), 48 - dots);
        QCOMPARE(countOf(kTransparent, image.copy(1, 0, 38, 48)), 38 * 48);
    }

    void emptyPictureShowsNoFrameWhateverItsRole()
    {
        OrvgSignalWidget picture({}, nullptr);
        const QImage withoutRole = painted(picture, {39, 48});
        picture.setRole(OrvSensorRole::Sending);
        QCOMPARE(painted(picture, {39, 48}), withoutRole);
    }

    void roleFrameIsTwoPixelsWide_data()
    {
        QTest::addColumn<OrvSensorRole>("role");
        QTest::addColumn<QColor>("color");
        QTest::newRow("sending") << OrvSensorRole::Sending << QColor(250, 220, 180);
        QTest::newRow("receiving only") << OrvSensorRole::ReceivingOnly << QColor(200, 200, 250);
        QTest::newRow("unknown") << static_cast<OrvSensorRole>(3) << QColor(200, 200, 250);
        QTest::newRow("not involved") << OrvSensorRole::NotInvolved << kBackground;
    }

    void roleFrameIsTwoPixelsWide()
    {
        QFETCH(OrvSensorRole, role);
        QFETCH(QColor, color);
        OrvgSignalWidget picture({{.magnitude = 0, .timeOfFlight = 5120}}, nullptr);
        picture.setRole(role);
        const QImage image = painted(picture, {39, 48});
        const QRect inside(2, 2, 35, 44);
        for (int y = 0; y < 48; ++y)
            for (int x = 0; x < 39; ++x)
                QCOMPARE(image.pixelColor(x, y), inside.contains(x, y) ? kBackground : color);
    }

    void largePictureShowsNoFrameWhateverItsRole()
    {
        OrvgSignalWidget picture;
        picture.setSignal({{.magnitude = 0, .timeOfFlight = 5120}});
        picture.setRole(OrvSensorRole::Sending);
        QCOMPARE(countOf(kBackground, painted(picture, {39, 48})), 39 * 48);
    }

    void echoIsAYellowLineFromTheSecondPixel()
    {
        OrvgSignalWidget picture;
        picture.setSignal({{.magnitude = 7, .timeOfFlight = 5120}});
        const QImage image = painted(picture, {39, 54});
        for (int x = 0; x < 39; ++x)
            QCOMPARE(image.pixelColor(x, 42), x >= 2 && x <= 15 ? kYellow : kBackground);
        QCOMPARE(countOf(kYellow, image), 14);
    }

    void firstAndLastMillisecondLieInsideTheWidget()
    {
        OrvgSignalWidget picture;
        picture.setSignal(
            {{.magnitude = 15, .timeOfFlight = 0}, {.magnitude = 15, .timeOfFlight = 30000}});
        const QImage image = painted(picture, {39, 54});
        QCOMPARE(image.pixelColor(10, 50), kYellow);
        QCOMPARE(image.pixelColor(10, 0), kYellow);
        QCOMPARE(countOf(kYellow, image), 2 * 33);
    }

    void echoWithoutLengthIsNotPainted()
    {
        OrvgSignalWidget picture;
        picture.setSignal({{.magnitude = 0, .timeOfFlight = 5120}});
        QCOMPARE(countOf(kYellow, painted(picture, {39, 54})), 0);
        picture.setSignal({{.magnitude = 1, .timeOfFlight = 5120}});
        QCOMPARE(countOf(kYellow, painted(picture, {33, 54})), 0);
    }

    void echoAboveMagnitudeFifteenFillsTheWidgetToItsEdge()
    {
        OrvgSignalWidget picture;
        picture.setSignal({{.magnitude = 255, .timeOfFlight = 5120}});
        const QImage image = painted(picture, {39, 54});
        QCOMPARE(image.pixelColor(38, 42), kYellow);
        QCOMPARE(countOf(kYellow, image), 37);
    }

    void everyEchoOfALongListIsPainted()
    {
        Echoes echoes;
        for (int index = 0; index < 255; ++index)
            echoes.push_back(
                {.magnitude = 15, .timeOfFlight = static_cast<std::uint16_t>(100 * index)});
        OrvgSignalWidget picture;
        picture.setSignal(echoes);
        const QImage image = painted(picture, {39, 304});
        QCOMPARE(countOf(kYellow, image.copy(10, 0, 1, 304)), 255);
    }

    void echoLaterThanThirtyMillisecondsIsOutOfSight()
    {
        OrvgSignalWidget picture;
        picture.setSignal({{.magnitude = 15, .timeOfFlight = 65535}});
        QCOMPARE(countOf(kYellow, painted(picture, {39, 54})), 0);
    }

    void smallestWidgetIsPainted()
    {
        OrvgSignalWidget picture({{.magnitude = 15, .timeOfFlight = 5120}}, nullptr);
        picture.setRole(OrvSensorRole::Sending);
        QCOMPARE(countOf(kYellow, painted(picture, {1, 1})), 0);
    }
};

QTEST_MAIN(SignalWidgetTest)
#include "test_signal_widget.moc"
