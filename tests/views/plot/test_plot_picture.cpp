#include "views/plot/OrvgPlotWidget.h"
#include "views/plot/PlotGeometry.h"
#include "views/plot/circle_rows.h"

#include <QPainter>
#include <QtTest>

#include <random>

namespace {

std::vector<orv::OrvSensorEcho> echoes()
{
    std::vector<orv::OrvSensorEcho> all;
    for (std::uint16_t number = 0; number < 300; ++number)
        all.push_back({.magnitude = static_cast<std::uint8_t>(number % 16),
                       .timeOfFlight = static_cast<std::uint16_t>(1 + 100 * number)});
    return all;
}

// At a few of many times, some of them beside each other, from the bottom to the top.
std::vector<orv::OrvSensorEcho> someEchoes(std::mt19937& random)
{
    std::vector<orv::OrvSensorEcho> some(random() % 10);
    for (orv::OrvSensorEcho& echo : some)
        echo = {.magnitude = static_cast<std::uint8_t>(random() % 16),
                .timeOfFlight = static_cast<std::uint16_t>(1 + 40 * (random() % 760))};
    return some;
}

// With each stick's top drawn as the circle that it is.
void paintSamplesByHand(QPainter& painter, QSize size)
{
    EchoSamples samples;
    samples.add(echoes());
    painter.setPen(Qt::yellow);
    painter.setBrush(Qt::yellow);
    bool isFirst = true;
    for (const QPoint& point : PlotGeometry(size).samplePoints(samples, EchoValue::Maximum)) {
        painter.fillRect(QRect(point, QSize(1, size.height() - point.y())), Qt::yellow);
        if (isFirst || point.y() != size.height() - 1)
            painter.drawEllipse(point, 1, 1);
        isFirst = false;
    }
}

} // namespace

class PlotPictureTest : public QObject
{
    Q_OBJECT

private slots:
    void samplesLookAsSticksWithCirclesDo_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("so low that some have no circle") << QSize(1056, 28);
        QTest::newRow("as it opens") << QSize(400, 300);
        QTest::newRow("wide") << QSize(1600, 600);
    }

    void samplesLookAsSticksWithCirclesDo()
    {
        QFETCH(QSize, size);
        OrvgPlotWidget plot;
        plot.setThresholds(
            {0x5F, 0x5C, 0x56, 0x70, 0x6C, 0x8A, 0x88, 0x86, 0xA5, 0xA4, 0xA3, 0xC2});
        plot.setThresholdColor("orange");
        plot.setThresholdsShown(true);
        plot.resize(size);
        QPixmap byHand = plot.grab();
        {
            QPainter painter(&byHand);
            paintSamplesByHand(painter, size);
        }
        plot.addData(echoes());
        QCOMPARE(plot.grab().toImage(), byHand.toImage());
    }

    // Only what changes is painted anew.
    void pictureThatFollowsEveryChangeIsThatOfANewPlot()
    {
        std::mt19937 random(1);
        OrvgPlotWidget plot;
        std::vector<std::vector<orv::OrvSensorEcho>> results;
        bool isMaximum = true;
        for (int round = 0; round < 120; ++round) {
            if (round % 50 == 49) {
                plot.resetData();
                results.clear();
            }
            if (round % 15 == 14) {
                isMaximum = !isMaximum;
                plot.setMaximumMode(isMaximum);
            }
            results.push_back(someEchoes(random));
            plot.addData(results.back());

            OrvgPlotWidget fresh;
            fresh.setMaximumMode(isMaximum);
            for (const auto& result : results)
                fresh.addData(result);
            QVERIFY2(plot.grab().toImage() == fresh.grab().toImage(),
                     qPrintable(QStringLiteral("round %1").arg(round)));
        }
    }

    void rowsOfTheSmallestCircleAreAPlus()
    {
        const std::vector<QRect> plus = {{0, -1, 1, 1}, {-1, 0, 3, 1}, {0, 1, 1, 1}};
        QCOMPARE(circleRows(1, 1.0), plus);
    }

    void thresholdsChangeWhileSamplesStay()
    {
        OrvgPlotWidget plot;
        plot.show();
        plot.addData(echoes());
        const QImage without = plot.grab().toImage();
        plot.setThresholdColor("orange");
        plot.setThresholdsShown(true);
        const QImage low = plot.grab().toImage();
        QVERIFY(low != without);
        orv::ThresholdEntries raised;
        raised.fill(0xBF);
        plot.setThresholds(raised);
        const QImage high = plot.grab().toImage();
        QVERIFY(high != low);
        plot.setMarkedColumn(1);
        const QImage marked = plot.grab().toImage();
        QVERIFY(marked != high);
        plot.setThresholdColor("red");
        QVERIFY(plot.grab().toImage() != marked);
        plot.setThresholdsShown(false);
        QCOMPARE(plot.grab().toImage(), without);
    }
};

QTEST_MAIN(PlotPictureTest)
#include "test_plot_picture.moc"
