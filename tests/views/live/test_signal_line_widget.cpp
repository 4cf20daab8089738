#include "views/live/OrvgSignalLineWidget.h"
#include "views/live/OrvgSignalWidget.h"

#include <QHBoxLayout>
#include <QScreen>
#include <QtTest>

using Echoes = std::vector<orv::OrvSensorEcho>;
using Times = std::initializer_list<std::uint16_t>;
using orv::OrvSensorRole;

namespace {

Echoes oneEcho(std::uint16_t timeOfFlightUs)
{
    return {{.magnitude = 7, .timeOfFlight = timeOfFlightUs}};
}

// The first time of flight of each item, oldest first; 0 for an empty one.
QList<int> contents(const OrvgSignalLineWidget& line)
{
    QList<int> times;
    for (const OrvgSignalWidget* item : line.items())
        times.append(item->echoes().empty() ? 0 : item->echoes().front().timeOfFlight);
    return times;
}

QList<const orv::OrvSensorEcho*> buffers(const OrvgSignalLineWidget& line)
{
    QList<const orv::OrvSensorEcho*> pointers;
    for (const OrvgSignalWidget* item : line.items())
        pointers.append(item->echoes().data());
    return pointers;
}

QList<OrvgSignalWidget*> itemsInLayoutOrder(const OrvgSignalLineWidget& line)
{
    QList<OrvgSignalWidget*> items;
    for (int index = 0; index < line.layout()->count(); ++index)
        items.append(qobject_cast<OrvgSignalWidget*>(line.layout()->itemAt(index)->widget()));
    return items;
}

} // namespace

class SignalLineWidgetTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<OrvgSignalWidget*>(); }

    void lineIsABoxedRowOfAtLeastFiftyPixels()
    {
        const OrvgSignalLineWidget line;
        QCOMPARE(line.frameShape(), QFrame::Box);
        QCOMPARE(line.minimumHeight(), 50);
        QVERIFY(qobject_cast<QHBoxLayout*>(line.layout()));
        QCOMPARE(line.layout()->contentsMargins(), QMargins());
        QCOMPARE(line.layout()->spacing(), 1);
    }

    void newLineHasOneEmptyItemMoreThanFits()
    {
        QWidget parent;
        const OrvgSignalLineWidget line(&parent);
        QCOMPARE(line.width(), 100);
        QCOMPARE(line.itemCount(), 2);
        QCOMPARE(contents(line), (QList<int>{0, 0, 0}));
        QVERIFY(line.items().first()->isClickable());
    }

    void itemCountIsTheWidthDividedByForty_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("count");
        QTest::newRow("too narrow") << 39 << 0;
        QTest::newRow("one fits") << 40 << 1;
        QTest::newRow("one pixel short of two") << 79 << 1;
        QTest::newRow("a usual line") << 805 << 20;
    }

    void itemCountIsTheWidthDividedByForty()
    {
        QFETCH(int, width);
        OrvgSignalLineWidget line;
        line.resize(width, 50);
        QTEST(line.itemCount(), "count");
        line.addMeasurement(oneEcho(5120), OrvSensorRole::Sending);
        QTEST(static_cast<int>(line.items().size()), "count");
    }

    void newestResultIsAtTheRightEndAndTheOthersMoveLeft()
    {
        OrvgSignalLineWidget line;
        line.resize(160, 50);
        for (const std::uint16_t time : Times{100, 200, 300})
            line.addMeasurement(oneEcho(time), OrvSensorRole::Sending);
        QCOMPARE(contents(line), (QList<int>{0, 100, 200, 300}));
        for (const std::uint16_t time : Times{400, 500})
            line.addMeasurement(oneEcho(time), OrvSensorRole::Sending);
        QCOMPARE(contents(line), (QList<int>{200, 300, 400, 500}));
    }

    void roleMovesWithItsEchoes()
    {
        OrvgSignalLineWidget line;
        line.resize(120, 50);
        line.addMeasurement(oneEcho(100), OrvSensorRole::Sending);
        line.addMeasurement(oneEcho(200), OrvSensorRole::ReceivingOnly);
        line.addMeasurement({}, OrvSensorRole::NotInvolved);
        QCOMPARE(line.items().at(0)->role(), OrvSensorRole::Sending);
        QCOMPARE(line.items().at(1)->role(), OrvSensorRole::ReceivingOnly);
        QCOMPARE(line.items().at(2)->role(), OrvSensorRole::NotInvolved);
    }

    void layoutShowsTheItemsInTheirOrder()
    {
        OrvgSignalLineWidget line;
        line.resize(200, 50);
        line.addMeasurement(oneEcho(100), OrvSensorRole::Sending);
        line.resize(400, 50);
        line.addMeasurement(oneEcho(200), OrvSensorRole::Sending);
        QCOMPARE(line.items().size(), 10);
        QCOMPARE(itemsInLayoutOrder(line), line.items());
    }

    void widerLineGrowsAtItsOldEndWithTheNextResult()
    {
        OrvgSignalLineWidget line;
        line.resize(80, 50);
        line.addMeasurement(oneEcho(100), OrvSensorRole::Sending);
        line.addMeasurement(oneEcho(200), OrvSensorRole::Sending);
        line.resize(160, 50);
        QCOMPARE(contents(line), (QList<int>{100, 200}));
        line.addMeasurement(oneEcho(300), OrvSensorRole::Sending);
        QCOMPARE(contents(line), (QList<int>{0, 100, 200, 300}));
    }

    void narrowerLineLosesItsLastItemsWithTheNextResult()
    {
        OrvgSignalLineWidget line;
        line.resize(160, 50);
        for (const std::uint16_t time : Times{100, 200, 300, 400})
            line.addMeasurement(oneEcho(time), OrvSensorRole::Sending);
        line.resize(80, 50);
        QCOMPARE(contents(line), (QList<int>{100, 200, 300, 400}));
        const QPointer<OrvgSignalWidget> removed = line.items().last();
        line.addMeasurement(oneEcho(500), OrvSensorRole::Sending);
        QCOMPARE(contents(line), (QList<int>{200, 500}));
        QVERIFY(removed.isNull());
        QCOMPARE(line.layout()->count(), 2);
    }

    void tooNarrowLineDropsResultsAndComesBack()
    {
        OrvgSignalLineWidget line;
        line.resize(39, 50);
        line.addMeasurement(oneEcho(100), OrvSensorRole::Sending);
        line.addMeasurement(Echoes(255), OrvSensorRole::Sending);
        QVERIFY(line.items().isEmpty());
        QVERIFY(line.findChildren<OrvgSignalWidget*>().isEmpty());
        line.resize(80, 50);
        line.addMeasurement(oneEcho(200), OrvSensorRole::Sending);
        QCOMPARE(contents(line), (QList<int>{0, 200}));
    }

    void timelineThatGotTooNarrowIsSeenToBeEmpty()
    {
        QWidget window;
        window.resize(400, 100);
        OrvgSignalLineWidget line(&window);
        line.resize(400, 50);
        window.show();
        for (int count = 0; count < 12; ++count)
            line.addMeasurement(oneEcho(100), OrvSensorRole::Sending);
        line.resize(39, 50);
        QCoreApplication::processEvents();
        line.addMeasurement(oneEcho(100), OrvSensorRole::Sending);
        QCoreApplication::processEvents();
        const QImage seen = window.screen()->grabWindow(window.winId()).toImage();
        for (int x = 1; x < 38; ++x)
            QCOMPARE(seen.pixelColor(x, 25), window.palette().color(QPalette::Window));
    }

    void warmTimelineKeepsItsItemsAndTheirBuffers()
    {
        OrvgSignalLineWidget line;
        line.resize(400, 50);
        for (int count = 0; count < 20; ++count)
            line.addMeasurement(Echoes(255), OrvSensorRole::Sending);
        const auto items = line.items();
        const auto warmBuffers = buffers(line);
        for (std::size_t count = 0; count < 1000; ++count)
            line.addMeasurement(Echoes(1 + count % 255), OrvSensorRole::Sending);
        QCOMPARE(line.items(), items);
        QCOMPARE(buffers(line), warmBuffers);
    }

    void pressOnAPictureReportsIt_data()
    {
        QTest::addColumn<int>("button");
        QTest::newRow("left") << int{Qt::LeftButton};
        QTest::newRow("right") << int{Qt::RightButton};
    }

    void pressOnAPictureReportsIt()
    {
        QFETCH(int, button);
        OrvgSignalLineWidget line;
        line.resize(164, 50);
        line.addMeasurement(oneEcho(100), OrvSensorRole::Sending);
        line.show();
        QVERIFY(QTest::qWaitForWindowExposed(&line));
        QSignalSpy spy(&line, &OrvgSignalLineWidget::signalWidgetClicked);
        QTest::mousePress(line.windowHandle(), static_cast<Qt::MouseButton>(button), {},
                          QPoint(61, 25));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.first().first().value<OrvgSignalWidget*>(), line.items().at(1));
    }

    void handShowsOverAPictureWithEchoes()
    {
        OrvgSignalLineWidget line;
        line.resize(164, 50);
        line.addMeasurement(oneEcho(100), OrvSensorRole::Sending);
        line.addMeasurement({}, OrvSensorRole::NotInvolved);
        line.show();
        QVERIFY(QTest::qWaitForWindowExposed(&line));
        QTest::mouseMove(line.windowHandle(), QPoint(100, 25)); // the third of four
        QTRY_COMPARE(line.cursor().shape(), Qt::PointingHandCursor);
        QTest::mouseMove(line.windowHandle(), QPoint(140, 25));
        QTRY_COMPARE(line.cursor().shape(), Qt::ArrowCursor);
    }

    void handComesAndGoesUnderAStillMouse()
    {
        OrvgSignalLineWidget line;
        line.resize(164, 50);
        line.addMeasurement(oneEcho(100), OrvSensorRole::Sending);
        line.show();
        QVERIFY(QTest::qWaitForWindowExposed(&line));
        QTest::mouseMove(line.windowHandle(), QPoint(150, 25));
        QTRY_COMPARE(line.cursor().shape(), Qt::PointingHandCursor);
        line.addMeasurement({}, OrvSensorRole::NotInvolved);
        QCOMPARE(line.cursor().shape(), Qt::ArrowCursor);
        line.addMeasurement(oneEcho(100), OrvSensorRole::Sending);
        QCOMPARE(line.cursor().shape(), Qt::PointingHandCursor);
    }

    void pressBesideThePicturesReportsNothing()
    {
        OrvgSignalLineWidget line;
        line.resize(164, 50);
        line.addMeasurement(oneEcho(100), OrvSensorRole::Sending);
        line.show();
        QVERIFY(QTest::qWaitForWindowExposed(&line));
        QSignalSpy spy(&line, &OrvgSignalLineWidget::signalWidgetClicked);
        QTest::mousePress(&line, Qt::LeftButton, {}, QPoint(0, 25));
        QCOMPARE(spy.count(), 0);
    }
};

QTEST_MAIN(SignalLineWidgetTest)
#include "test_signal_line_widget.moc"
