#include "views/plot/OrvgPlotWidget.h"

#include <QtTest>

#include <algorithm>
#include <vector>

namespace {

// An empty plot, in the device pixels of the ratio that the test runs at.
class Grid
{
public:
    explicit Grid(const QSize& size)
    {
        OrvgPlotWidget plot;
        plot.resize(size);
        mImage = plot.grab().toImage();
        mRatio = mImage.devicePixelRatioF();
    }

    int dotSize() const { return qRound(mRatio); }
    bool isDot(int x, int y) const { return mImage.pixelColor(x, y) == QColor(Qt::gray); }

    /// Share of dots in a row of the widget, left of the first upright line.
    double density(int row) const
    {
        const int y = qRound(row * mRatio);
        int dots = 0;
        for (int x = 0; x < width(); ++x)
            dots += isDot(x, y);
        return static_cast<double>(dots) / width();
    }

    /// The most dots that touch each other, one above the other.
    int highestBar() const
    {
        int highest = 0;
        for (int x = 0; x < width(); ++x) {
            int height = 0;
            for (int y = 0; y < mImage.height(); ++y) {
                height = isDot(x, y) ? height + 1 : 0;
                highest = std::max(highest, height);
            }
        }
        return highest;
    }

    /// Share of the rows with dots that has one in the same column, where it is the greatest.
    double greatestAlignment() const
    {
        int rows = 0;
        std::vector<int> dots(static_cast<std::size_t>(width()));
        for (int y = 0; y < mImage.height(); ++y) {
            bool hasDot = false;
            for (int x = 0; x < width(); ++x) {
                dots[static_cast<std::size_t>(x)] += isDot(x, y);
                hasDot = hasDot || isDot(x, y);
            }
            rows += hasDot;
        }
        return static_cast<double>(*std::ranges::max_element(dots)) / rows;
    }

private:
    // What is left of the first upright line.
    int width() const { return mImage.width() / 5; }

    QImage mImage;
    qreal mRatio = 1.0;
};

} // namespace

class PlotGridTest : public QObject
{
    Q_OBJECT

private slots:
    void dotsOfTheLevelLinesMakeNoBars_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("in the first window") << QSize(1056, 88);
        QTest::newRow("as it opens") << QSize(400, 300);
        QTest::newRow("a whole screen") << QSize(1900, 900);
    }

    void dotsOfTheLevelLinesMakeNoBars()
    {
        QFETCH(QSize, size);
        const Grid grid(size);
        QCOMPARE(grid.highestBar(), grid.dotSize());
        QVERIFY2(grid.greatestAlignment() < 0.4,
                 qPrintable(QString::number(grid.greatestAlignment())));
    }

    // 500 pixels high: each level has a row of its own.
    void eachLevelIsDotted()
    {
        const Grid grid({600, 500});
        for (const int row :
             {492, 491, 490, 489, 488, 486, 485, 483, 481, 479, 476, 473, 470, 466, 462, 458,
              453, 448, 442, 435, 427, 419, 409, 399, 387, 373, 359, 342, 324, 304, 281, 255}) {
            QVERIFY2(grid.density(row) > 0.25 && grid.density(row) < 0.4,
                     qPrintable(QStringLiteral("row %1: %2").arg(row).arg(grid.density(row))));
        }
    }

    void levelsThatShareARowStayDotted()
    {
        const Grid grid({600, 50});
        for (int row = 0; row < 50; ++row)
            QVERIFY(grid.density(row) < 0.4);
        QVERIFY(grid.density(49) > 0.25);
    }
};

QTEST_MAIN(PlotGridTest)
#include "test_plot_grid.moc"
