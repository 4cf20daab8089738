#include "views/plot/PlotGeometry.h"

#include <QtTest>

using Points = std::vector<QPoint>;

namespace {

orv::ThresholdEntries allEntries(std::uint8_t entry)
{
    orv::ThresholdEntries entries;
    entries.fill(entry);
    return entries;
}

EchoSamples samplesOf(std::initializer_list<orv::OrvSensorEcho> echoes)
{
    EchoSamples samples;
    samples.add(echoes);
    return samples;
}

orv::OrvSensorEcho echo(std::uint16_t timeOfFlight, std::uint8_t magnitude)
{
    return {.magnitude = magnitude, .timeOfFlight = timeOfFlight};
}

} // namespace

class PlotGeometryTest : public QObject
{
    Q_OBJECT

private slots:
    void timesAreTruncatedToColumns_data()
    {
        QTest::addColumn<int>("timeUs");
        QTest::addColumn<int>("column");
        QTest::newRow("start") << 0 << 0;
        QTest::newRow("just below a column") << 1199 << 23;
        QTest::newRow("on a column") << 1200 << 24;
        QTest::newRow("last column") << 29999 << 599;
        QTest::newRow("right edge") << 30000 << 600;
        QTest::newRow("longest time of flight") << 65535 << 1310;
    }

    void timesAreTruncatedToColumns()
    {
        QFETCH(int, timeUs);
        QTEST(PlotGeometry({600, 1000}).x(timeUs), "column");
    }

    void widestWidgetDoesNotOverflow()
    {
        QCOMPARE(PlotGeometry({16777215, 10}).x(65535), 36649826);
    }

    void amplitudesGrowFromTheBottom()
    {
        const PlotGeometry geometry({600, 1000});
        QCOMPARE(geometry.y(0.0), 1000);
        QCOMPARE(geometry.y(0.2509), 750);
        QCOMPARE(geometry.y(1.0), 0);
    }

    void levelsStandAtTheirDecibels()
    {
        const PlotGeometry geometry({600, 1000});
        QCOMPARE(geometry.levelY(0), 984);
        QCOMPARE(geometry.levelY(16), 906);
        QCOMPARE(geometry.levelY(31), 510);
    }

    void gridHasFourTimes()
    {
        QCOMPARE(PlotGeometry({600, 1000}).gridColumns(), (std::vector<int>{123, 246, 370, 493}));
    }

    void gridHasAllLevels()
    {
        const auto rows = PlotGeometry({600, 1000}).gridRows();
        QCOMPARE(rows.size(), 32U);
        QCOMPARE(rows.front(), 984);
        QCOMPARE(rows.back(), 510);
    }

    void levelsThatShareARowShareTheirLine()
    {
        const auto rows = PlotGeometry({600, 10}).gridRows();
        QCOMPARE(rows, (std::vector<int>{10, 9, 8, 7, 6}));
    }

    void gridEndsBelowTheTimeRange()
    {
        QVERIFY(PlotGeometry({600, 1000}, 6172).gridColumns().empty());
        QCOMPARE(PlotGeometry({600, 1000}, 6173).gridColumns().size(), 1U);
    }

    void segmentEndsAccumulateBeforeTheyAreTruncated()
    {
        const auto vertices = PlotGeometry({300, 1000}).thresholdVertices(allEntries(0x00));
        QCOMPARE(vertices[0], QPoint(2, 984));
        QCOMPARE(vertices[1], QPoint(4, 984));
        QCOMPARE(vertices[11], QPoint(24, 984));
    }

    void eachSegmentHasItsOwnTimeAndLevel()
    {
        orv::ThresholdEntries entries = allEntries(0x00);
        entries[0] = 0xC0; // 4096 us, level 0
        entries[1] = 0x7F; // 1228.8 us, level 31
        const auto vertices = PlotGeometry({300, 1000}).thresholdVertices(entries);
        QCOMPARE(vertices[0], QPoint(40, 984));
        QCOMPARE(vertices[1], QPoint(53, 510));
        QCOMPARE(vertices[2], QPoint(55, 984));
    }

    void curveBeyondTheTimeRangeStandsBeyondTheRightEdge()
    {
        const auto vertices = PlotGeometry({300, 1000}).thresholdVertices(allEntries(0xFF));
        QCOMPARE(vertices[3], QPoint(245, 510));
        QCOMPARE(vertices[4], QPoint(307, 510));
        QCOMPARE(vertices[11], QPoint(737, 510));
    }

    void samplesBecomePointsInTheOrderOfTime()
    {
        const EchoSamples samples = samplesOf({echo(1200, 15), echo(600, 0), echo(1200, 3)});
        QCOMPARE(PlotGeometry({600, 1000}).samplePoints(samples, EchoValue::Maximum),
                 (Points{{12, 966}, {24, 129}}));
    }

    void meanModeShowsTheMeanOfTheAmplitudes()
    {
        const EchoSamples samples = samplesOf({echo(1200, 0), echo(1200, 15)});
        QCOMPARE(PlotGeometry({600, 1000}).samplePoints(samples, EchoValue::Mean),
                 (Points{{24, 547}}));
    }

    void laterTimeOfAColumnReplacesTheEarlierOne()
    {
        const EchoSamples samples = samplesOf({echo(1200, 15), echo(1249, 0), echo(1250, 8)});
        QCOMPARE(PlotGeometry({600, 1000}).samplePoints(samples, EchoValue::Maximum),
                 (Points{{24, 966}, {25, 813}}));
    }

    void emptyWidgetHasNoExtent()
    {
        const EchoSamples samples = samplesOf({echo(1200, 15), echo(30000, 3)});
        QCOMPARE(PlotGeometry({0, 0}).samplePoints(samples, EchoValue::Maximum), (Points{{0, 0}}));
    }
};

QTEST_MAIN(PlotGeometryTest)
#include "test_plot_geometry.moc"
