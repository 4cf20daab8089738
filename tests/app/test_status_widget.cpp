#include "app/OrvgStatusWidget.h"
#include "orv_decoder/FirmwareVersion.h"

#include <QIcon>
#include <QImage>
#include <QtMath>
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
    void ledGrowsWithTheBar();
    void frameOfTheVersionIsClosed();
    void sameStateAgainPaintsNothing();
    void troublesAreFurtherLinesOfTheToolTip();
    void largeFontMakesTheBarHigher();
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

// Counts how often a widget is painted.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
    int count() const { return mCount; }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        mCount += event->type() == QEvent::Paint;
        return false;
    }

private:
    int mCount = 0;
};

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
    // The field starts at 5 and ends 15 before the LED; its frame starts at 0, and a drawn
    // rectangle ends one pixel on.
    const int right = 120 - widget.height() - 10;
    for (int x : {0, 40, right})
        QVERIFY(image.pixelColor(x, 1) != QColor(Qt::white));
    QVERIFY(image.pixelColor(0, 12) != QColor(Qt::white));
    QVERIFY(image.pixelColor(right, 12) != QColor(Qt::white));
    QCOMPARE(image.pixelColor(right + 3, 12), QColor(Qt::white));
    QVERIFY(paintedPixels(image, {6, 4, right - 8, 14}) > 10);
}

void TestStatusWidget::ledGrowsWithTheBar()
{
    OrvgStatusWidget widget;
    for (const int height : {24, 36, 60}) {
        widget.resize(200, height);
        const QImage image = painted(widget);
        const int middle = 200 - height / 2;
        // A disc that fills the square but for its soft edge and a margin of one.
        QVERIFY(paintedPixels(image, {middle, 0, 1, height}) >= height * 3 / 5);
        QVERIFY(paintedPixels(image, {200 - height, height / 2, height, 1}) >= height * 3 / 5);
    }
}

// Wherever it stands: at ratios with a fraction its edges lie between two pixels.
void TestStatusWidget::frameOfTheVersionIsClosed()
{
    QWidget window;
    window.resize(220, 24);
    OrvgStatusWidget widget(&window);
    widget.setConnected(true);
    for (int x = 0; x < 8; ++x) {
        widget.setGeometry(x, 0, 200, 24);
        const QImage image = window.grab().toImage();
        const int middle = image.height() / 2;
        const int edge = qFloor(x * image.devicePixelRatio());
        const QRgb ground = image.pixel(edge + 6, middle); // left of the text
        QVERIFY2(image.pixel(edge, middle) != ground || image.pixel(edge + 1, middle) != ground,
                 qPrintable(QString::number(x)));
    }
}

void TestStatusWidget::sameStateAgainPaintsNothing()
{
    OrvgStatusWidget widget;
    PaintCounter paints(widget);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    widget.setConnected(true);
    widget.setNoLiveData(true);
    widget.setFirmwareVersion({{2, 14, 0}});
    QCoreApplication::processEvents();
    const auto before = paints.count();
    widget.setConnected(true);
    widget.setNoLiveData(true);
    widget.setFirmwareVersion({{2, 14, 0}});
    QCoreApplication::processEvents();
    QCOMPARE(paints.count(), before);
    widget.setNoLiveData(false);
    QCoreApplication::processEvents();
    QCOMPARE(paints.count(), before + 1);
}

void TestStatusWidget::troublesAreFurtherLinesOfTheToolTip()
{
    OrvgStatusWidget widget;
    widget.setTroubles({"No port.", "No other one."});
    QCOMPARE(widget.toolTip(), QString("ECU disconnected.\nNo port.\nNo other one."));
    widget.setConnected(true);
    QCOMPARE(widget.toolTip(), QString("ECU connected.\nNo port.\nNo other one."));
    widget.setTroubles({});
    QCOMPARE(widget.toolTip(), QString("ECU connected."));
}

void TestStatusWidget::largeFontMakesTheBarHigher()
{
    QFont font = QApplication::font();
    font.setPixelSize(40);
    QApplication::setFont(font);
    const OrvgStatusWidget widget;
    QVERIFY(widget.sizeHint().height() >= widget.fontMetrics().height());
    QVERIFY(widget.minimumHeight() >= widget.fontMetrics().height());
}

QTEST_MAIN(TestStatusWidget)
#include "test_status_widget.moc"
