#include "tests/support/MessageBoxWatcher.h"
#include "views/plot/OrvgPlotWidget.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

const QColor kBackground(50, 55, 50);
const QColor kOrange("orange");

orv::OrvSensorEcho echo(std::uint16_t timeOfFlight, std::uint8_t magnitude)
{
    return {.magnitude = magnitude, .timeOfFlight = timeOfFlight};
}

QByteArray contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

// 600 pixels wide: one column is 50 us.
class Plot : public OrvgPlotWidget
{
public:
    Plot() { resize(600, 500); }

    QColor pixel(int x, int y) { return grab().toImage().pixelColor(x, y); }
    bool isYellow(int x, int y) { return pixel(x, y) == QColor(Qt::yellow); }
};

} // namespace

class PlotWidgetTest : public QObject
{
    Q_OBJECT

private slots:
    void formHasItsTitleAndSize()
    {
        const OrvgPlotWidget plot;
        QCOMPARE(plot.windowTitle(), QString("Form"));
        QCOMPARE(plot.size(), QSize(400, 300));
    }

    void emptyPlotIsBackgroundAndDottedGrayGrid()
    {
        const QImage image = Plot().grab().toImage();
        int gray = 0;
        for (int y = 0; y < 200; ++y) // above the highest threshold level
            gray += image.pixelColor(123, y) == QColor(Qt::gray);
        QCOMPARE(image.pixelColor(1, 1), kBackground);
        QCOMPARE(image.pixelColor(122, 100), kBackground);
        QCOMPARE(image.pixelColor(124, 100), kBackground);
        QVERIFY2(gray > 50 && gray < 150, qPrintable(QString::number(gray)));
    }

    void echoIsAYellowStickFromTheBottomToItsAmplitude()
    {
        Plot plot;
        plot.addData({echo(15000, 15)}); // column 300, 0.87197 * 500 = 435 pixels high
        QVERIFY(plot.isYellow(300, 499));
        QVERIFY(plot.isYellow(300, 65));
        QVERIFY(plot.isYellow(301, 65));
        QVERIFY(!plot.isYellow(300, 62));
        QVERIFY(!plot.isYellow(303, 200));
    }

    void stickOfOnePixelHasNoCircleUnlessItIsTheFirst()
    {
        Plot plot;
        plot.resize(600, 50); // code 0 is one pixel high: 0.035 * 50
        plot.addData({echo(5000, 0), echo(15000, 0)});
        QVERIFY(plot.isYellow(101, 49));
        QVERIFY(plot.isYellow(300, 49));
        QVERIFY(!plot.isYellow(301, 49));
    }

    void meanModeLowersTheStick()
    {
        Plot plot;
        plot.addData({echo(15000, 15), echo(15000, 0)});
        plot.setMaximumMode(false); // 0.45348 * 500 = 226 pixels high
        QVERIFY(plot.isYellow(300, 274));
        QVERIFY(!plot.isYellow(300, 270));
        plot.setMaximumMode(true);
        QVERIFY(plot.isYellow(300, 70));
    }

    void resetEmptiesThePlot()
    {
        Plot plot;
        plot.addData({echo(15000, 15)});
        plot.resetData();
        QVERIFY(!plot.isYellow(300, 400));
    }

    void clearedSamplesVanishWithTheNextResultEvenAnEmptyOne()
    {
        Plot plot;
        plot.show(); // a hidden widget is resized by each grab, which rebuilds the points
        plot.addData({echo(15000, 15)});
        QVERIFY(plot.isYellow(300, 400));
        plot.clear();
        QVERIFY(plot.isYellow(300, 400));
        plot.addData({echo(0, 15)});
        QVERIFY(!plot.isYellow(300, 400));
    }

    void resultWithoutTimesOfFlightChangesNothing()
    {
        Plot plot;
        plot.addData({echo(15000, 15)});
        const QImage before = plot.grab().toImage();
        plot.addData({echo(0, 3), echo(0, 15)});
        QCOMPARE(plot.grab().toImage(), before);
    }

    void sticksMoveWithTheSize()
    {
        Plot plot;
        plot.addData({echo(15000, 15)});
        plot.resize(300, 500);
        QVERIFY(plot.isYellow(150, 400));
        QVERIFY(!plot.isYellow(299, 400));
    }

    void gridFollowsTheSize()
    {
        Plot plot;
        plot.show();
        QCOMPARE(plot.grab().size(), QSize(600, 500) * plot.devicePixelRatio());
        plot.resize(300, 500); // 6172 us: column 61
        QVERIFY(plot.pixel(61, 0) == QColor(Qt::gray) || plot.pixel(61, 1) == QColor(Qt::gray));
    }

    void thresholdsAreDrawnOnlyWhenShown()
    {
        Plot plot;
        plot.setThresholdColor(kOrange);
        plot.setThresholds(raisedCurve());
        QVERIFY(plot.pixel(580, 255) != kOrange);
        plot.setThresholdsShown(true);
        QCOMPARE(plot.pixel(580, 255), kOrange);
    }

    // 0.49034 * 500 = 245 pixels high; twelve segments of 2662.4 us end beyond 30 ms.
    void curveRunsFromTheLeftToTheRightEdge()
    {
        Plot plot;
        plot.setThresholdColor(kOrange);
        plot.setThresholds(raisedCurve());
        plot.setThresholdsShown(true);
        QCOMPARE(plot.pixel(0, 255), kOrange);
        QCOMPARE(plot.pixel(599, 255), kOrange);
    }

    void curveRunsOnAtTheLastLevel()
    {
        Plot plot;
        orv::ThresholdEntries entries{}; // ends at 12 * 204.8 us, column 49
        entries.back() = 0x1F;
        plot.setThresholdColor(kOrange);
        plot.setThresholds(entries);
        plot.setThresholdsShown(true);
        QCOMPARE(plot.pixel(300, 255), kOrange);
        QCOMPARE(plot.pixel(10, 492), kOrange);
        QVERIFY(plot.pixel(47, 374) == kOrange); // half way up the slope
    }

    void verticesAreDotsOnTheCurve()
    {
        Plot plot;
        plot.setThresholdColor(kOrange);
        plot.setThresholds(raisedCurve());
        plot.setThresholdsShown(true);
        QCOMPARE(plot.pixel(53, 252), kOrange);
        QCOMPARE(plot.pixel(60, 252), kBackground);
    }

    void markedVertexHasAWhiteCircle()
    {
        Plot plot;
        plot.setThresholdColor(kOrange);
        plot.setThresholds(raisedCurve());
        plot.setThresholdsShown(true);
        plot.setMarkedColumn(1); // column 106
        QCOMPARE(plot.pixel(106, 250), QColor(Qt::white));
        QCOMPARE(plot.pixel(53, 250), kBackground);
        plot.setMarkedColumn(-1);
        QCOMPARE(plot.pixel(106, 250), kBackground);
    }

    void savesTheSamples()
    {
        Plot plot;
        plot.addData({echo(1200, 7), echo(1200, 9)});
        plot.addData({echo(1200, 8), echo(51, 0)});
        const QTemporaryDir folder;
        const QString fileName = folder.filePath("plot.csv");
        plot.save(fileName);
        QCOMPARE(contentOf(fileName), QByteArray("51,0\n1200,7,9,8\n"));
    }

    void savesNoSamplesAsAnEmptyFile()
    {
        const QTemporaryDir folder;
        const QString fileName = folder.filePath("plot.csv");
        Plot().save(fileName);
        QCOMPARE(contentOf(fileName), QByteArray());
    }

    void fileThatCannotBeWrittenIsTold_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::newRow("no such folder") << "/nonexistent/plot.csv";
        QTest::newRow("full disk") << "/dev/full";
    }

    void fileThatCannotBeWrittenIsTold()
    {
        QFETCH(QString, fileName);
        Plot plot;
        plot.addData({echo(1200, 7)});
        const MessageBoxWatcher watcher;
        plot.save(fileName);
        QCOMPARE(watcher.boxes().size(), 1);
        QCOMPARE(watcher.boxes().front().icon, QMessageBox::Warning);
        QCOMPARE(watcher.boxes().front().title, QString("File error"));
        QCOMPARE(watcher.boxes().front().text, QString("Can't write to file."));
    }

    void smallestWidgetSurvives()
    {
        Plot plot;
        plot.addData({echo(15000, 15)});
        plot.setThresholdsShown(true);
        plot.resize(1, 1);
        QCOMPARE(plot.grab().size(), QSize(1, 1) * plot.devicePixelRatio());
    }

private:
    static orv::ThresholdEntries raisedCurve()
    {
        orv::ThresholdEntries entries;
        entries.fill(0xBF); // 2662.4 us at level 31
        return entries;
    }
};

QTEST_MAIN(PlotWidgetTest)
#include "test_plot_widget.moc"
