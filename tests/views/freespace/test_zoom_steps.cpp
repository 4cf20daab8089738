#include "views/freespace/zoom_steps.h"

#include <QtTest>

#include <limits>

class ZoomStepsTest : public QObject
{
    Q_OBJECT

private slots:
    void wheelDeltasBecomeWholeSteps()
    {
        QCOMPARE(freespace::zoomSteps(120), 1);
        QCOMPARE(freespace::zoomSteps(-120), -1);
        QCOMPARE(freespace::zoomSteps(63), 0);
        QCOMPARE(freespace::zoomSteps(-63), 0);
        QCOMPARE(freespace::zoomSteps(-128), -2);
    }

    void zoomIsRefusedAtTheEnds()
    {
        QVERIFY(!freespace::canZoom(0.01, -1));
        QVERIFY(freespace::canZoom(0.0101, -1));
        QVERIFY(freespace::canZoom(0.01, 1));
        QVERIFY(!freespace::canZoom(2.0, 1));
        QVERIFY(freespace::canZoom(1.99, 1));
        QVERIFY(freespace::canZoom(2.0, -1));
        QVERIFY(!freespace::canZoom(0.05, 0));
    }

    void stepsAgainstThePendingOnesReplaceThemUnlessTheyWin_data()
    {
        QTest::addColumn<int>("pending");
        QTest::addColumn<int>("steps");
        QTest::addColumn<int>("after");
        QTest::newRow("first") << 0 << 3 << 3;
        QTest::newRow("more") << 3 << 3 << 6;
        QTest::newRow("taken back") << 3 << -3 << 0;
        QTest::newRow("taken back, inwards") << -3 << 3 << 0;
        QTest::newRow("replaced") << 6 << -3 << -3;
        QTest::newRow("replaced by one") << -6 << 1 << 1;
        QTest::newRow("outvoted") << 1 << -3 << -2;
        QTest::newRow("replaced, inwards") << -6 << 3 << 3;
        QTest::newRow("at most") << 99 << 3 << 100;
        QTest::newRow("huge") << 100 << std::numeric_limits<int>::max() << 100;
        QTest::newRow("huge back") << -100 << std::numeric_limits<int>::min() << -100;
    }

    void stepsAgainstThePendingOnesReplaceThemUnlessTheyWin()
    {
        QFETCH(int, pending);
        QFETCH(int, steps);
        QTEST(freespace::pendingStepsAfter(pending, steps), "after");
    }

    void animationsTakePendingStepsTowardsZero()
    {
        QCOMPARE(freespace::pendingStepsAfterAnimation(3), 2);
        QCOMPARE(freespace::pendingStepsAfterAnimation(-3), -2);
        QCOMPARE(freespace::pendingStepsAfterAnimation(0), 1);
    }

    void zoomFactorGrowsWithThePendingSteps()
    {
        QCOMPARE(freespace::zoomFactor(3, 0.05), 1.01);
        QCOMPARE(freespace::zoomFactor(-30, 0.05), 0.9);
        QCOMPARE(freespace::zoomFactor(0, 0.05), 1.0);
    }

    void pictureNeverVanishes()
    {
        QCOMPARE(freespace::zoomFactor(-100, 0.0011), 1.0);
        QCOMPARE(freespace::zoomFactor(100, 19.0), 1.0);
        QCOMPARE(freespace::zoomFactor(3, 2.0), 1.01);
        QCOMPARE(freespace::zoomFactor(-3, 0.01), 0.99);
    }
};

QTEST_APPLESS_MAIN(ZoomStepsTest)
#include "test_zoom_steps.moc"
