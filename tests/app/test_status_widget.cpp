#include "app/OrvgStatusWidget.h"
#include "orv_decoder/FirmwareVersion.h"

#include <QIcon>
#include <QImage>
#include <QtTest>

class TestStatusWidget : public QObject
{
    Q_OBJECT

private slots:
    void stateDecidesImageAndToolTip_data();
    void stateDecidesImageAndToolTip();
    void startsDisconnectedWithoutVersion();
    void versionIsThreeDecimalNumbers();
    void disconnectedPaintsTheLedAlone();
    void connectedFramesTheVersionFromTheLeftEdge();
};

namespace {

QImage painted(OrvgStatusWidget& widget)
{
    QImage image(widget.size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    widget.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

int paintedPixels(const QImage& image, const QRect& area)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            count += image.pixelColor(x, y) != QColor(Qt::white);
    return count;
}

} // namespace

void TestStatusWidget::stateDecidesImageAndToolTip_data()
{
    QTest::addColumn<bool>("connected");
    QTest::addColumn<bool>("noLiveData");
    QTest::addColumn<QString>("image");
    QTest::addColumn<QString>("toolTip");
    QTest::newRow("disconnected") << false << false << ":/icons/icons/inactive_led.png"
                                  << "ECU disconnected.";
    QTest::newRow("disconnected without live data")
        << false << true << ":/icons/icons/inactive_led.png"
        << "ECU disconnected.";
    QTest::newRow("online") << true << true << ":/icons/icons/halfactive_led.png"
                            << "ECU online, but not sending live data.";
    QTest::newRow("connected") << true << false << ":/icons/icons/active_led.png"
                               << "ECU connected.";
}

void TestStatusWidget::stateDecidesImageAndToolTip()
{
    QFETCH(bool, connected);
    QFETCH(bool, noLiveData);
    OrvgStatusWidget widget;
    widget.setConnected(connected);
    widget.setNoLiveData(noLiveData);
    QTEST(widget.ledImage(), "image");
    QTEST(widget.toolTip(), "toolTip");
    QVERIFY(!QIcon(widget.ledImage()).pixmap(24, 24).isNull());
}

void TestStatusWidget::startsDisconnectedWithoutVersion()
{
    OrvgStatusWidget widget;
    QVERIFY(!widget.isConnected());
    QCOMPARE(widget.firmwareVersion(), QString());
    QCOMPARE(widget.toolTip(), QString("ECU disconnected."));
    QCOMPARE(widget.sizePolicy(), QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred));
}

void TestStatusWidget::versionIsThreeDecimalNumbers()
{
    OrvgStatusWidget widget;
    widget.setFirmwareVersion({{2, 14, 0}});
    QCOMPARE(widget.firmwareVersion(), QString("2.14.0"));
    widget.setFirmwareVersion({{255, 0, 200}});
    QCOMPARE(widget.firmwareVersion(), QString("255.0.200"));
}

void TestStatusWidget::disconnectedPaintsTheLedAlone()
{
    OrvgStatusWidget widget;
    widget.resize(120, 22);
    widget.setFirmwareVersion({{2, 14, 0}});
    const QImage image = painted(widget);
    QCOMPARE(paintedPixels(image, {0, 0, 98, 22}), 0);
    QVERIFY(paintedPixels(image, {98, 1, 21, 20}) > 20);
}

void TestStatusWidget::connectedFramesTheVersionFromTheLeftEdge()
{
    OrvgStatusWidget widget;
    widget.resize(120, 22);
    widget.setFirmwareVersion({{2, 14, 0}});
    widget.setConnected(true);
    const QImage image = painted(widget);
    // The field is 5..87 wide; its frame starts at 0, and a drawn rectangle ends one pixel on.
    for (int x : {0, 40, 88})
        QVERIFY(image.pixelColor(x, 1) != QColor(Qt::white));
    QVERIFY(image.pixelColor(0, 12) != QColor(Qt::white));
    QVERIFY(image.pixelColor(88, 12) != QColor(Qt::white));
    QCOMPARE(image.pixelColor(91, 12), QColor(Qt::white));
    QVERIFY(paintedPixels(image, {6, 4, 80, 14}) > 10);
}

QTEST_MAIN(TestStatusWidget)
#include "test_status_widget.moc"
