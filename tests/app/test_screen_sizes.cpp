#include "app/OrvgStatusWidget.h"
#include "app/TarvioWindow.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/modal_dialogs.h"
#include "views/live/OrvgLiveView.h"
#include "views/live/OrvgSignalWidget.h"
#include "views/plot/OrvgPlotWidget.h"

#include <QAbstractButton>
#include <QAction>
#include <QDialog>
#include <QDockWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <QScrollArea>
#include <QStatusBar>
#include <QtTest>

/// The window on a screen of the size that the test is started with.
class TestScreenSizes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { mWindow.reset(); }

    void firstStartIsAsLargeAsTheScreenAllows();
    void firstStartLeavesRoomForSeveralTimelines();
    void wholeWindowFitsOnTheScreen();
    void everyButtonIsSeenWhole_data();
    void everyButtonIsSeenWhole();
    void largePictureAndPlotCanBeRead();
    void dialogsOpenInsideTheScreen_data();
    void dialogsOpenInsideTheScreen();

private:
    bool isInFront(const QWidget& widget, const QString& dock) const;
    QStringList cutButtons(const QString& dock) const;
    QRect screen() const { return mWindow->screen()->availableGeometry(); }

    std::unique_ptr<TemporaryProfile> mProfile;
    std::unique_ptr<TarvioWindow> mWindow;
};

void TestScreenSizes::init()
{
    mProfile = std::make_unique<TemporaryProfile>();
    mProfile->setNetwork(freeUdpPort(), freeUdpPort(), freeUdpPort());
    mWindow = std::make_unique<TarvioWindow>();
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowExposed(mWindow.get()));
}

void TestScreenSizes::firstStartIsAsLargeAsTheScreenAllows()
{
    QCOMPARE(mWindow->width(), std::min(1074, screen().width()));
    if (screen().height() > 740)
        QCOMPARE(mWindow->height(), 707);
}

void TestScreenSizes::firstStartLeavesRoomForSeveralTimelines()
{
    if (screen().height() < 740)
        return;
    const auto* area = mWindow->findChild<OrvgLiveView*>()->findChild<QScrollArea*>("scrollArea");
    QTRY_VERIFY2(area->viewport()->height() >= 4 * 52,
                 qPrintable(QString::number(area->viewport()->height())));
}

void TestScreenSizes::wholeWindowFitsOnTheScreen()
{
    QTRY_VERIFY2(screen().contains(mWindow->frameGeometry()),
                 qPrintable(QString("%1 x %2 on %3 x %4")
                                .arg(mWindow->width())
                                .arg(mWindow->height())
                                .arg(screen().width())
                                .arg(screen().height())));
    const auto* led = mWindow->findChild<OrvgStatusWidget*>();
    QTRY_COMPARE(led->visibleRegion().boundingRect(), led->rect());
    // With a title bar and a task bar.
    QVERIFY2(mWindow->minimumSizeHint().height() <= screen().height() - 60,
             qPrintable(QString::number(mWindow->minimumSizeHint().height())));
}

void TestScreenSizes::everyButtonIsSeenWhole_data()
{
    QTest::addColumn<QString>("dock");
    QTest::addColumn<int>("subWindow");
    QTest::addColumn<bool>("editMode");
    QTest::newRow("signals, thresholds") << "thresholdDock" << 0 << false;
    QTest::newRow("freespaces, sequence") << "mseqDock" << 1 << false;
    QTest::newRow("freespaces, positions") << "sensorPositionDock" << 1 << false;
    QTest::newRow("edit mode") << "sensorPositionDock" << 1 << true;
}

void TestScreenSizes::everyButtonIsSeenWhole()
{
    QFETCH(QString, dock);
    QFETCH(int, subWindow);
    QFETCH(bool, editMode);
    auto* area = mWindow->findChild<QMdiArea*>("mMdiArea");
    area->setActiveSubWindow(area->subWindowList().at(subWindow));
    mWindow->findChild<QAbstractButton*>("mModeButton")->setChecked(editMode);
    mWindow->findChild<QDockWidget*>(dock)->raise();
    // As small as it may become.
    mWindow->resize(std::min(mWindow->width(), screen().width()),
                    mWindow->minimumSizeHint().height());
    QTRY_COMPARE(cutButtons(dock), QStringList());
}

// What stands behind another dock or sub-window is not looked at.
bool TestScreenSizes::isInFront(const QWidget& widget, const QString& dock) const
{
    const auto* area = mWindow->findChild<QMdiArea*>("mMdiArea");
    for (const QWidget* part = &widget; part; part = part->parentWidget()) {
        if (qobject_cast<const QDockWidget*>(part) && part->objectName() != dock)
            return false;
        if (qobject_cast<const QMdiSubWindow*>(part) && part != area->activeSubWindow())
            return false;
    }
    return widget.isVisible();
}

QStringList TestScreenSizes::cutButtons(const QString& dock) const
{
    QStringList names;
    for (const auto* button : mWindow->findChildren<QAbstractButton*>()) {
        const bool isOfATimeline = button->inherits("QRadioButton"); // they scroll
        const bool isOfTheStyle = button->objectName().startsWith("qt_");
        if (isOfATimeline || isOfTheStyle || button->size().isEmpty() || !isInFront(*button, dock))
            continue;
        if (button->visibleRegion().boundingRect() != button->rect())
            names << button->objectName() + " of " + button->parent()->objectName();
    }
    return names;
}

void TestScreenSizes::largePictureAndPlotCanBeRead()
{
    const auto* picture = mWindow->findChild<OrvgSignalWidget*>("signalWidget");
    QTRY_VERIFY2(picture->visibleRegion().boundingRect().height() >= 80,
                 qPrintable(QString::number(picture->visibleRegion().boundingRect().height())));
    if (screen().height() < 800)
        return;
    const auto* plot = mWindow->findChild<OrvgPlotWidget*>("mPlot");
    QTRY_VERIFY2(plot->visibleRegion().boundingRect().height() >= 100,
                 qPrintable(QString::number(plot->visibleRegion().boundingRect().height())));
}

void TestScreenSizes::dialogsOpenInsideTheScreen_data()
{
    QTest::addColumn<QString>("action");
    QTest::newRow("connection") << "actionConnection";
    QTest::newRow("import") << "actionOpenSettings";
    QTest::newRow("recording") << "actionEnvelopCurveRecording";
    QTest::newRow("about") << "actionAbout";
}

void TestScreenSizes::dialogsOpenInsideTheScreen()
{
    QFETCH(QString, action);
    QRect geometry;
    whenOpened<QDialog>(mWindow.get(), [&geometry](QDialog& dialog) {
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        geometry = dialog.frameGeometry();
        dialog.reject();
    });
    mWindow->findChild<QAction*>(action)->trigger();
    QVERIFY(!geometry.isEmpty());
    QVERIFY2(screen().contains(geometry), qPrintable(QString("%1 %2 %3 x %4")
                                                         .arg(geometry.x())
                                                         .arg(geometry.y())
                                                         .arg(geometry.width())
                                                         .arg(geometry.height())));
}

QTEST_MAIN(TestScreenSizes)
#include "test_screen_sizes.moc"
