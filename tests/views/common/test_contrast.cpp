#include "views/common/contrast.h"

#include <QColor>
#include <QtTest>

class ContrastTest : public QObject
{
    Q_OBJECT

private slots:
    void ratioFollowsTheLuminance_data()
    {
        QTest::addColumn<QColor>("first");
        QTest::addColumn<QColor>("second");
        QTest::addColumn<double>("ratio");
        QTest::newRow("same") << QColor(12, 34, 56) << QColor(12, 34, 56) << 1.0;
        QTest::newRow("black and white") << QColor(Qt::black) << QColor(Qt::white) << 21.0;
        QTest::newRow("mid grey on white") << QColor(118, 118, 118) << QColor(Qt::white) << 4.54;
        QTest::newRow("nearly black on white") << QColor(10, 10, 10) << QColor(Qt::white) << 19.80;
        QTest::newRow("pure red on white") << QColor(255, 0, 0) << QColor(Qt::white) << 4.0;
        QTest::newRow("pure blue on white") << QColor(0, 0, 255) << QColor(Qt::white) << 8.59;
    }

    void ratioFollowsTheLuminance()
    {
        QFETCH(QColor, first);
        QFETCH(QColor, second);
        QFETCH(double, ratio);
        QVERIFY(qAbs(contrastRatio(first, second) - ratio) < 0.005);
        QCOMPARE(contrastRatio(second, first), contrastRatio(first, second));
    }

    void colourOfThePaletteIsKeptWhereItReadsWell_data()
    {
        QTest::addColumn<QColor>("ofPalette");
        QTest::addColumn<QColor>("background");
        QTest::addColumn<QColor>("readable");
        const QColor pastel(250, 220, 180);
        const QColor night(20, 20, 60);
        QTest::newRow("dark on pastel") << QColor(50, 40, 30) << pastel << QColor(50, 40, 30);
        QTest::newRow("light on pastel") << QColor(Qt::white) << pastel << QColor(Qt::black);
        QTest::newRow("light on night") << QColor(220, 220, 220) << night << QColor(220, 220, 220);
        QTest::newRow("dark on night") << QColor(Qt::black) << night << QColor(Qt::white);
        QTest::newRow("grey on pastel") << QColor(118, 118, 118) << pastel << QColor(Qt::black);
    }

    void colourOfThePaletteIsKeptWhereItReadsWell()
    {
        QFETCH(QColor, ofPalette);
        QFETCH(QColor, background);
        QTEST(readableTextColor(ofPalette, background), "readable");
    }
};

QTEST_MAIN(ContrastTest)
#include "test_contrast.moc"
