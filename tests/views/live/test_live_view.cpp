#include "tests/support/MeasurementBuilder.h"
#include "tests/support/screenshots.h"
#include "views/live/OrvgLiveView.h"
#include "views/live/OrvgSignalLineWidget.h"
#include "views/live/OrvgSignalWidget.h"

#include <QRadioButton>
#include <QTableWidget>
#include <QtTest>

#include <algorithm>

using Echoes = std::vector<orv::OrvSensorEcho>;
using orv::OrvSensorRole;

namespace {

// The view on the screen, and what a user finds in it.
struct ShownView
{
    ShownView()
    {
        view.show();
        isExposed = QTest::qWaitForWindowExposed(&view);
    }

    void take(const orv::OrvMeasurementResult& result) { view.onNewMeasResult(result); }
    OrvgSignalLineWidget* line(int sensor)
    {
        return view.findChildren<OrvgSignalLineWidget*>().at(sensor);
    }
    OrvgSignalWidget* newest(int sensor) { return line(sensor)->items().last(); }
    OrvgSignalWidget* picture() { return view.findChild<OrvgSignalWidget*>("signalWidget"); }
    QRadioButton* radio(int sensor)
    {
        return view.findChild<QRadioButton*>(QString::number(sensor));
    }
    void clickRadio(int sensor)
    {
        QTest::mouseClick(radio(sensor), Qt::LeftButton, {}, {8, radio(sensor)->height() / 2});
    }
    QStringList column(int column)
    {
        QStringList texts;
        auto* table = view.findChild<QTableWidget*>("echoTable");
        for (int row = 0; row < table->rowCount(); ++row)
            texts.append(table->item(row, column)->text());
        return texts;
    }
    QStringList times() { return column(0); }
    QStringList magnitudes() { return column(1); }

    OrvgLiveView view;
    bool isExposed = false;
};

struct PaintCounter : QObject
{
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
    int count = 0;
};

std::uint16_t microseconds(int value)
{
    return static_cast<std::uint16_t>(value);
}

// One sensor sends, the two on either side listen; all hear the ground.
void sendFrom(MeasurementBuilder& result, int sender, int first, int last, int step)
{
    for (int sensor = std::max(sender - 2, first); sensor <= std::min(sender + 2, last); ++sensor) {
        const auto id = static_cast<std::uint8_t>(sensor);
        sensor == sender ? result.withSender(id) : result.withReceiver(id);
        result.withEcho(id, microseconds(3100 + 37 * (step % 3) + 60 * (sensor % 2)), 2);
    }
}

// A car backs up: sensors 7 to 12 see a wall come nearer, the first of them a kerb before it, and
// of the front bumper sensors 3 and 4 see a post go away.
orv::OrvMeasurementResult backingTowardsAWall(int step)
{
    MeasurementBuilder result;
    const int front = step % 6;
    const int rear = 6 + front;
    sendFrom(result, front, 0, 5, step);
    sendFrom(result, rear, 6, 11, step);
    for (const int sensor : {2, 3})
        if (std::abs(sensor - front) <= 2)
            result.withEcho(static_cast<std::uint8_t>(sensor), microseconds(7000 + 330 * step), 9);
    for (int sensor = std::max(rear - 2, 6); sensor <= std::min(rear + 2, 11); ++sensor) {
        const auto id = static_cast<std::uint8_t>(sensor);
        const int away = std::abs(sensor - rear);
        const int wall = 26000 - 330 * step + 650 * away + 180 * std::abs(sensor - 8);
        if (sensor < 9)
            result.withEcho(id, microseconds(wall - 4200), 6);
        result.withEcho(id, microseconds(wall), static_cast<std::uint8_t>(14 - 3 * away));
    }
    return result;
}

} // namespace

class LiveViewTest : public QObject
{
    Q_OBJECT

private slots:
    void resultReachesTheTimelineOfEachSensor()
    {
        ShownView shown;
        MeasurementBuilder result = aMeasurement().withSender(0).withReceiver(11);
        for (std::uint8_t sensor = 0; sensor < 12; ++sensor)
            result.withEcho(sensor, static_cast<std::uint16_t>(1000 + sensor), sensor);
        shown.take(result);
        for (int sensor = 0; sensor < 12; ++sensor) {
            const Echoes& echoes = shown.newest(sensor)->echoes();
            QCOMPARE(echoes.size(), std::size_t{1});
            QCOMPARE(int{echoes[0].timeOfFlight}, 1000 + sensor);
        }
    }

    void timelineShowsTheRoleOfItsSensor()
    {
        ShownView shown;
        shown.take(aMeasurement().withSender(3).withReceiver(3).withReceiver(4));
        QCOMPARE(shown.newest(3)->role(), OrvSensorRole::Sending);
        QCOMPARE(shown.newest(4)->role(), OrvSensorRole::ReceivingOnly);
        QCOMPARE(shown.newest(5)->role(), OrvSensorRole::NotInvolved);
    }

    void resultWithoutASensorAdvancesItsTimelineByAnEmptyItem()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(5, 5120, 7));
        shown.take(aMeasurement().withEcho(4, 5120, 7));
        const auto& items = shown.line(5)->items();
        QVERIFY(items.last()->echoes().empty());
        QCOMPARE(items.at(items.size() - 2)->echoes(),
                 (Echoes{{.magnitude = 7, .timeOfFlight = 5120}}));
    }

    void sensorsBeyondTheTwelfthAreIgnored()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(12, 5120, 7).withEcho(255, 5120, 7));
        for (int sensor = 0; sensor < 12; ++sensor)
            QVERIFY(shown.newest(sensor)->echoes().empty());
        QVERIFY(shown.picture()->echoes().empty());
    }

    void firstSensorIsSelectedAtStart()
    {
        ShownView shown;
        QVERIFY(shown.radio(0)->isChecked());
        shown.take(aMeasurement().withEcho(0, 5120, 7).withEcho(1, 6144, 9));
        QCOMPARE(shown.times(), (QStringList{"5.12", "", "", "", ""}));
        QCOMPARE(shown.magnitudes(), (QStringList{"7 (0.15)", "", "", "", ""}));
        QCOMPARE(shown.picture()->echoes(), (Echoes{{.magnitude = 7, .timeOfFlight = 5120}}));
    }

    void choosingASensorShowsItWithTheNextResult()
    {
        ShownView shown;
        const auto result = aMeasurement().withEcho(0, 5120, 7).withEcho(11, 6144, 9);
        shown.take(result);
        shown.clickRadio(11);
        QVERIFY(shown.radio(11)->isChecked());
        QCOMPARE(shown.times().first(), QString("5.12"));
        shown.take(result);
        QCOMPARE(shown.times().first(), QString("6.144"));
        QCOMPARE(shown.magnitudes().first(), QString("9 (0.23)"));
    }

    void arrowKeysChooseTheSensor()
    {
        ShownView shown;
        shown.view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&shown.view));
        shown.radio(0)->setFocus();
        QTest::keyClick(shown.radio(0), Qt::Key_Down);
        QVERIFY(shown.radio(1)->isChecked());
        QVERIFY(!shown.radio(0)->isChecked());
        shown.take(aMeasurement().withEcho(0, 5120, 7).withEcho(1, 6144, 9));
        QCOMPARE(shown.times().first(), QString("6.144"));
    }

    void selectedSensorSurvivesAllResults()
    {
        ShownView shown;
        shown.radio(2)->click();
        for (std::uint16_t time = 1000; time < 1100; ++time)
            shown.take(aMeasurement().withEcho(0, 5120, 7).withEcho(2, time, 7));
        QVERIFY(shown.radio(2)->isChecked());
        QCOMPARE(shown.times().first(), QString("1.099"));
    }

    void firstEchoWithoutTimeOfFlightLeavesTheRightPaneAsItWas()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(0, 5120, 7));
        shown.take(aMeasurement().withEcho(0, 0, 9).withEcho(0, 6144, 9));
        QCOMPARE(shown.times(), (QStringList{"5.12", "", "", "", ""}));
        QCOMPARE(shown.picture()->echoes(), (Echoes{{.magnitude = 7, .timeOfFlight = 5120}}));
        QCOMPARE(shown.newest(0)->echoes().size(), std::size_t{2});
    }

    void resultWithoutTheSelectedSensorLeavesTheRightPaneAsItWas()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(0, 5120, 7));
        shown.take(aMeasurement().withEcho(1, 6144, 9));
        QCOMPARE(shown.times().first(), QString("5.12"));
        QCOMPARE(shown.picture()->echoes().size(), std::size_t{1});
    }

    void shorterListKeepsTheRowsOfALongerOne()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(0, 1000, 1).withEcho(0, 2000, 2).withEcho(0, 3000, 3));
        shown.take(aMeasurement().withEcho(0, 4000, 4));
        QCOMPARE(shown.times(), (QStringList{"4", "2", "3", "", ""}));
        QCOMPARE(shown.magnitudes(), (QStringList{"4 (0.08)", "2 (0.05)", "3 (0.06)", "", ""}));
        QCOMPARE(shown.picture()->echoes().size(), std::size_t{1});
    }

    void laterEchoWithoutTimeOfFlightEmptiesItsRow()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(0, 1000, 1).withEcho(0, 2000, 2).withEcho(0, 3000, 3));
        shown.take(aMeasurement().withEcho(0, 4000, 4).withEcho(0, 0, 5));
        QCOMPARE(shown.times(), (QStringList{"4", "", "3", "", ""}));
        QCOMPARE(shown.magnitudes(), (QStringList{"4 (0.08)", "", "3 (0.06)", "", ""}));
    }

    void sameEchoesDoNotRepaintTheTable()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(0, 5120, 7));
        QCoreApplication::processEvents();
        PaintCounter counter;
        shown.view.findChild<QTableWidget*>("echoTable")->viewport()->installEventFilter(&counter);
        shown.take(aMeasurement().withEcho(0, 5120, 7));
        QCoreApplication::processEvents();
        QCOMPARE(counter.count, 0);
        shown.take(aMeasurement().withEcho(0, 5120, 8));
        QCoreApplication::processEvents();
        QCOMPARE(counter.count, 1);
    }

    void tableShowsFiveEchoesAndThePicturesAll()
    {
        ShownView shown;
        MeasurementBuilder result;
        for (int echo = 1; echo <= 255; ++echo)
            result.withEcho(0, static_cast<std::uint16_t>(100 * echo),
                            static_cast<std::uint8_t>(echo));
        shown.take(result);
        QCOMPARE(shown.times(), (QStringList{"0.1", "0.2", "0.3", "0.4", "0.5"}));
        QCOMPARE(shown.picture()->echoes().size(), std::size_t{255});
        QCOMPARE(shown.newest(0)->echoes().size(), std::size_t{255});
        QVERIFY(!shown.view.grab().isNull());
    }

    void magnitudeAboveFifteenShowsTheLevelOfFifteen()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(0, 5120, 16).withEcho(0, 6144, 255));
        QCOMPARE(shown.magnitudes().mid(0, 2), (QStringList{"16 (0.87)", "255 (0.87)"}));
        QVERIFY(!shown.view.grab().isNull());
    }

    void clickShowsThePictureOfAnySensor()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(7, 5120, 7).withEcho(7, 6144, 9));
        shown.take(aMeasurement().withEcho(0, 1000, 1));
        QCoreApplication::processEvents();
        const auto& items = shown.line(7)->items();
        QTest::mouseClick(items.at(items.size() - 2), Qt::LeftButton);
        QCOMPARE(shown.times(), (QStringList{"5.12", "6.144", "", "", ""}));
        QCOMPARE(shown.picture()->echoes().size(), std::size_t{2});
        QVERIFY(shown.radio(0)->isChecked());
    }

    void clickedEchoesStayWhenTheTimelineMovesOn()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(7, 5120, 7));
        QCoreApplication::processEvents();
        QTest::mouseClick(shown.newest(7), Qt::LeftButton);
        shown.take(aMeasurement().withEcho(7, 6144, 9));
        QCOMPARE(shown.picture()->echoes(), (Echoes{{.magnitude = 7, .timeOfFlight = 5120}}));
    }

    void clickOnAnEmptyPictureEmptiesTheLargeOneAndKeepsTheTable()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(0, 5120, 7));
        QCoreApplication::processEvents();
        QTest::mouseClick(shown.newest(7), Qt::LeftButton);
        QVERIFY(shown.picture()->echoes().empty());
        QCOMPARE(shown.times().first(), QString("5.12"));
    }

    void clickOnNoPictureChangesNothing()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(0, 5120, 7));
        shown.view.onSignalWidgetClicked(nullptr);
        QCOMPARE(shown.picture()->echoes().size(), std::size_t{1});
    }

    void toggleWithoutAButtonKeepsTheSelection()
    {
        ShownView shown;
        shown.radio(3)->click();
        shown.view.onRadioButtonToggled(true);
        shown.take(aMeasurement().withEcho(3, 5120, 7).withEcho(0, 6144, 9));
        QCOMPARE(shown.times().first(), QString("5.12"));
    }

    void smallestViewSurvivesResults()
    {
        ShownView shown;
        shown.view.resize(50, 50);
        QCoreApplication::processEvents();
        for (int step = 0; step < 20; ++step)
            shown.take(backingTowardsAWall(step));
        QVERIFY(!shown.view.grab().isNull());
    }

    void longRunKeepsTheNumberOfPictures()
    {
        ShownView shown;
        shown.take(aMeasurement().withEcho(0, 5120, 7));
        const auto before = shown.view.findChildren<OrvgSignalWidget*>();
        for (int step = 0; step < 500; ++step)
            shown.take(backingTowardsAWall(step % 40));
        QCOMPARE(shown.view.findChildren<OrvgSignalWidget*>(), before);
    }

    void picturesFillTheTimelineOfARunningMeasurement()
    {
        ShownView shown;
        QVERIFY(shown.isExposed);
        shown.view.resize(1037, 720);
        QCoreApplication::processEvents();
        shown.clickRadio(8);
        for (int step = 0; step < 40; ++step)
            shown.take(backingTowardsAWall(step));
        QCoreApplication::processEvents();
        const auto& items = shown.line(8)->items();
        const auto isFilled = [](const auto* item) { return !item->echoes().empty(); };
        QVERIFY(std::count_if(items.begin(), items.end(), isFilled) > 10);
        QCOMPARE(shown.picture()->echoes().size(), std::size_t{3});
        saveScreenshot(shown.view, "live-view");
    }
};

QTEST_MAIN(LiveViewTest)
#include "test_live_view.moc"
