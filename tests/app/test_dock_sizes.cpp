#include "tests/app/WholeWindow.h"
#include "tests/support/clipped_widgets.h"

#include <QComboBox>
#include <QDockWidget>
#include <QToolButton>
#include <QtTest>

namespace {

const QSize kSmallLaptop(1366, 768);
const QStringList kDocks = {"thresholdDock", "mseqDock", "sensorPositionDock"};

} // namespace

/// The docks of the three editors in the small windows of laptops.
class DockSizesTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { mWhole = std::make_unique<WholeWindow>(); }
    void cleanup() { mWhole.reset(); }

    void plotOfTheThresholdsIsReadableAtTheFirstStart_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("1280x800") << QSize(1280, 800);
        QTest::newRow("1366x768") << kSmallLaptop;
    }

    void plotOfTheThresholdsIsReadableAtTheFirstStart()
    {
        QFETCH(QSize, size);
        show(size);
        const auto* plot = mWhole->window().findChild<QWidget*>("mPlot");
        QVERIFY(plot->height() >= 100);
        QVERIFY(plot->visibleRegion() == QRegion(plot->rect()));
    }

    void noButtonIsCutHoweverLowTheDocksAre()
    {
        show(kSmallLaptop);
        for (const QString& name : kDocks) {
            auto* dock = mWhole->window().findChild<QDockWidget*>(name);
            dock->raise();
            mWhole->window().resizeDocks({dock}, {1}, Qt::Vertical);
            QCoreApplication::processEvents();
            QVERIFY2(dock->height() < 200, qPrintable(QString::number(dock->height())));
            QCOMPARE(clippedChildren<QToolButton>(*dock->widget()), QStringList());
            QCOMPARE(clippedChildren<QComboBox>(*dock->widget()), QStringList());
        }
    }

    void noButtonIsCutWhenTheDocksStandOneAboveTheOther()
    {
        show(kSmallLaptop);
        TarvioWindow& window = mWhole->window();
        for (const QString& name : kDocks)
            window.addDockWidget(Qt::LeftDockWidgetArea, window.findChild<QDockWidget*>(name));
        QCoreApplication::processEvents();
        QCOMPARE(window.size(), kSmallLaptop);
        for (const QString& name : kDocks) {
            const QWidget* contents = window.findChild<QDockWidget*>(name)->widget();
            QCOMPARE(clippedChildren<QToolButton>(*contents), QStringList());
        }
    }

private:
    void show(QSize size)
    {
        mWhole->window().resize(size);
        mWhole->window().show();
        QVERIFY(QTest::qWaitForWindowExposed(&mWhole->window()));
        QCoreApplication::processEvents();
    }

    std::unique_ptr<WholeWindow> mWhole;
};

QTEST_MAIN(DockSizesTest)
#include "test_dock_sizes.moc"
