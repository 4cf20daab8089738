#include "app/TarvioWindow.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/TestClock.h"
#include "views/freespace/OrvgFreespacesView.h"
#include "views/live/OrvgLiveView.h"
#include "views/thresholds/OrvgThresholdView.h"

#include <QAccessible>
#include <QAction>
#include <QDialog>
#include <QDockWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QXmlStreamReader>
#include <QtTest>

class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void titleAndIcon();
    void actionsHaveTheirTexts_data();
    void actionsHaveTheirTexts();
    void menusHoldTheirEntriesInOrder_data();
    void menusHoldTheirEntriesInOrder();
    void toolBarHoldsItsActionsInOrder();
    void iconButtonsOfTheToolBarHaveToolTips();
    void contextMenuListsTheDocksAlone();
    void docksHaveTheirIconsInTheMenu();
    void captureShowsPlayWhenOffAndPauseWhenOn();
    void firstStartPutsTheThresholdDockInFront();
    void dockLayoutSurvivesARestart();
    void viewStatesAreSavedOnClose();
    void closingWritesTheStoreAtOnce();
    void viewStatesSurviveARestart();
    void networkSectionWaitsAsImported();
    void importedNetworkIsGoneAfterTheClose();
    void importedNetworkWithoutACloseStays();
    void junkInTheStoreIsAFirstStart_data();
    void junkInTheStoreIsAFirstStart();
    void junkInTheSavedStateLeavesTheWindowUsable();
    void dockThatIsShownAgainComesToTheFront();
    void subWindowsCannotBeClosed_data();
    void subWindowsCannotBeClosed();
    void systemMenusOfSubWindowsOfferNoClose();
    void liveEchoesAreInFront();
    void editModeRaisesThePositionDock();
    void aboutDialogOpensFromTheMenu();
    void exitClosesTheWindow();

private:
    std::unique_ptr<TemporaryProfile> mProfile;
};

namespace {

QStringList texts(const QList<QAction*>& actions)
{
    QStringList result;
    for (const QAction* action : actions)
        result << (action->isSeparator() ? QString("-") : action->text());
    return result;
}

std::unique_ptr<TarvioWindow> shownWindow()
{
    auto window = std::make_unique<TarvioWindow>();
    window->show();
    if (!QTest::qWaitForWindowExposed(window.get()))
        qFatal("the window did not appear");
    return window;
}

QImage pictureOf(const QIcon& icon)
{
    return icon.pixmap(24, 24).toImage();
}

// Of an icon of the program; the picture of no icon for an empty name.
QImage pictureNamed(const QString& name)
{
    return name.isEmpty() ? QImage() : pictureOf(QIcon(":/icons/icons/" + name + ".png"));
}

bool isInFront(const QDockWidget* dock)
{
    return !dock->visibleRegion().isEmpty();
}

} // namespace

void TestMainWindow::init()
{
    mProfile = std::make_unique<TemporaryProfile>();
    mProfile->setNetwork(freeUdpPort(), freeUdpPort(), freeUdpPort());
}

void TestMainWindow::titleAndIcon()
{
    TarvioWindow window;
    QCOMPARE(window.windowTitle(), QString("Tarvio"));
    QVERIFY(!window.windowIcon().isNull());
}

void TestMainWindow::actionsHaveTheirTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shortcut");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<bool>("checkable");
    QTest::newRow("actionAbout") << "&About..."
                                 << ""
                                 << "" << false;
    QTest::newRow("actionExit") << "E&xit"
                                << ""
                                << "" << false;
    QTest::newRow("actionConnection") << "&Connection..."
                                      << ""
                                      << "link" << false;
    QTest::newRow("actionSaveSettings") << "&Export settings..."
                                        << "Ctrl+S"
                                        << "save" << false;
    QTest::newRow("actionOpenSettings") << "&Import settings..."
                                        << "Ctrl+O"
                                        << "open" << false;
    QTest::newRow("actionCapture") << "&Capture"
                                   << ""
                                   << "play" << true;
    QTest::newRow("actionEnvelopCurveRecording") << "&Envelop curve recording ..."
                                                 << ""
                                                 << "" << false;
    QTest::newRow("actionSyncFromECU") << "Read all settings from ECU"
                                       << ""
                                       << "chip_get" << false;
    QTest::newRow("actionTransmitToECU") << "Transmit all settings to ECU"
                                         << ""
                                         << "chip_set" << false;
}

void TestMainWindow::actionsHaveTheirTexts()
{
    TarvioWindow window;
    const auto* action = window.findChild<QAction*>(QTest::currentDataTag());
    QVERIFY(action);
    QTEST(action->text(), "text");
    QTEST(action->shortcut().toString(), "shortcut");
    QFETCH(QString, icon);
    QCOMPARE(pictureOf(action->icon()), pictureNamed(icon));
    QTEST(action->isCheckable(), "checkable");
}

void TestMainWindow::menusHoldTheirEntriesInOrder_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("entries");
    QTest::newRow("0") << "Fi&le"
                       << QStringList({"&Connection...", "-", "&Import settings...",
                                       "&Export settings...", "-", "E&xit"});
    QTest::newRow("1") << "&View"
                       << QStringList(
                              {"&Measurement Sequence", "&Threshold control", "Se&nsor Position"});
    QTest::newRow("2") << "E&CU"
                       << QStringList({"&Capture", "-", "Read all settings from ECU",
                                       "Transmit all settings to ECU"});
    QTest::newRow("3") << "Tools" << QStringList({"&Envelop curve recording ..."});
    QTest::newRow("4") << "Hel&p" << QStringList({"&About..."});
}

void TestMainWindow::menusHoldTheirEntriesInOrder()
{
    TarvioWindow window;
    const QList<QAction*> menus = window.menuBar()->actions();
    QCOMPARE(menus.size(), 5);
    const QAction* menu = menus.at(QByteArray(QTest::currentDataTag()).toInt());
    QTEST(menu->text(), "title");
    QTEST(texts(menu->menu()->actions()), "entries");
}

void TestMainWindow::toolBarHoldsItsActionsInOrder()
{
    TarvioWindow window;
    const auto* toolBar = window.findChild<QToolBar*>("mainToolBar");
    QCOMPARE(texts(toolBar->actions()),
             QStringList({"&Connection...", "-", "&Import settings...", "&Export settings...", "-",
                          "Read all settings from ECU", "Transmit all settings to ECU", "-",
                          "&Capture"}));
}

void TestMainWindow::iconButtonsOfTheToolBarHaveToolTips()
{
    TarvioWindow window;
    auto* toolBar = window.findChild<QToolBar*>("mainToolBar");
    for (QAction* action : toolBar->actions()) {
        if (action->isSeparator())
            continue;
        auto* button = qobject_cast<QToolButton*>(toolBar->widgetForAction(action));
        QVERIFY(button && !button->toolTip().isEmpty());
        QVERIFY(!QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name).isEmpty());
    }
}

void TestMainWindow::contextMenuListsTheDocksAlone()
{
    TarvioWindow window;
    const std::unique_ptr<QMenu> menu(window.createPopupMenu());
    QStringList visible;
    for (const QAction* action : menu->actions()) {
        if (action->isVisible() && !action->isSeparator())
            visible << action->text();
    }
    visible.sort();
    QCOMPARE(visible,
             QStringList({"&Measurement Sequence", "&Threshold control", "Se&nsor Position"}));
}

void TestMainWindow::docksHaveTheirIconsInTheMenu()
{
    TarvioWindow window;
    const auto iconOf = [&window](const char* dock) {
        return pictureOf(window.findChild<QDockWidget*>(dock)->toggleViewAction()->icon());
    };
    QCOMPARE(iconOf("mseqDock"), pictureNamed("mseq"));
    QCOMPARE(iconOf("thresholdDock"), pictureNamed("thresholds"));
    QCOMPARE(iconOf("sensorPositionDock"), pictureNamed("sposition"));
}

void TestMainWindow::captureShowsPlayWhenOffAndPauseWhenOn()
{
    TarvioWindow window;
    const QIcon icon = window.findChild<QAction*>("actionCapture")->icon();
    const QImage off = icon.pixmap(24, QIcon::Normal, QIcon::Off).toImage();
    const QImage on = icon.pixmap(24, QIcon::Normal, QIcon::On).toImage();
    QCOMPARE(off, QIcon(":/icons/icons/play.png").pixmap(24).toImage());
    QCOMPARE(on, QIcon(":/icons/icons/pause.png").pixmap(24).toImage());
}

void TestMainWindow::firstStartPutsTheThresholdDockInFront()
{
    const auto window = shownWindow();
    auto* threshold = window->findChild<QDockWidget*>("thresholdDock");
    const auto tabbed = window->tabifiedDockWidgets(threshold);
    QCOMPARE(tabbed.size(), 2);
    QVERIFY(tabbed.contains(window->findChild<QDockWidget*>("mseqDock")));
    QVERIFY(tabbed.contains(window->findChild<QDockWidget*>("sensorPositionDock")));
    QCOMPARE(window->dockWidgetArea(threshold), Qt::BottomDockWidgetArea);
    QTRY_VERIFY(isInFront(threshold));
}

void TestMainWindow::dockLayoutSurvivesARestart()
{
    {
        const auto window = shownWindow();
        window->resize(900, 640);
        window->findChild<QDockWidget*>("mseqDock")->close();
        window->addDockWidget(Qt::LeftDockWidgetArea,
                              window->findChild<QDockWidget*>("sensorPositionDock"));
        window->close();
    }
    const auto window = shownWindow();
    QCOMPARE(window->size(), QSize(900, 640));
    QVERIFY(!window->findChild<QDockWidget*>("mseqDock")->isVisible());
    QCOMPARE(window->dockWidgetArea(window->findChild<QDockWidget*>("sensorPositionDock")),
             Qt::LeftDockWidgetArea);
}

void TestMainWindow::viewStatesAreSavedOnClose()
{
    shownWindow()->close();
    QCOMPARE(mProfile->keys("main_window"),
             QStringList({"freespaces_view", "geometry", "live_view", "state", "thresholds_view"}));
}

// Before the event loop runs again and while the window still lives: whoever ends the program now
// loses nothing.
void TestMainWindow::closingWritesTheStoreAtOnce()
{
    // Another store on the same file would write what waits in the first.
    QFile file(mProfile->fileName());
    const auto window = shownWindow();
    window->close();
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    for (const char* key :
         {"geometry=", "state=", "live_view=", "freespaces_view=", "thresholds_view="})
        QVERIFY2(content.contains(QByteArray("\n") + key), key);
}

void TestMainWindow::viewStatesSurviveARestart()
{
    const auto sizesIn = [](const TarvioWindow& window) {
        QMap<QString, QList<int>> sizes;
        for (const QWidget* view : {static_cast<QWidget*>(window.findChild<OrvgLiveView*>()),
                                    static_cast<QWidget*>(window.findChild<OrvgFreespacesView*>()),
                                    static_cast<QWidget*>(window.findChild<OrvgThresholdView*>())})
            sizes[view->metaObject()->className()] = view->findChild<QSplitter*>()->sizes();
        return sizes;
    };
    QMap<QString, QList<int>> first;
    QMap<QString, QList<int>> saved;
    {
        const auto window = shownWindow();
        window->resize(1074, 707);
        window->resizeDocks({window->findChild<QDockWidget*>("thresholdDock")}, {400},
                            Qt::Vertical);
        QCoreApplication::processEvents();
        first = sizesIn(*window);
        for (auto* splitter : window->findChildren<QSplitter*>()) {
            const QList<int> sizes = splitter->sizes();
            splitter->setSizes({sizes.first() - 25, sizes.last() + 25});
        }
        saved = sizesIn(*window);
        window->close();
    }
    const auto window = shownWindow();
    for (auto view = saved.cbegin(); view != saved.cend(); ++view) {
        QVERIFY2(view.value() != first[view.key()], qPrintable(view.key()));
        QCOMPARE(sizesIn(*window)[view.key()], view.value());
    }
}

void TestMainWindow::networkSectionWaitsAsImported()
{
    TarvioWindow window;
    QXmlStreamReader reader(QStringLiteral("<Network><ecu_ip>10.0.0.1</ecu_ip></Network>"));
    reader.readNextStartElement();
    std::string error;
    QVERIFY(window.importNetworkSection(reader, error));
    QTRY_COMPARE(mProfile->value("network_imported/ecu_ip").toString(), QString("10.0.0.1"));
}

void TestMainWindow::importedNetworkIsGoneAfterTheClose()
{
    mProfile->setValue("network_imported/ecu_ip", "10.0.0.1");
    shownWindow()->close();
    QVERIFY(!mProfile->groups().contains("network_imported"));
    QVERIFY(mProfile->groups().contains("network"));
}

void TestMainWindow::importedNetworkWithoutACloseStays()
{
    mProfile->setValue("network_imported/ecu_ip", "10.0.0.1");
    TarvioWindow window;
    QVERIFY(mProfile->groups().contains("network_imported"));
}

void TestMainWindow::junkInTheStoreIsAFirstStart_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("binary") << QByteArray("\x00\xff[\x7f=\n\n]]]", 10);
    QTest::newRow("other groups only") << QByteArray("[elsewhere]\nkey=1\n");
}

void TestMainWindow::junkInTheStoreIsAFirstStart()
{
    QFETCH(QByteArray, content);
    const TestClock noProbe; // of the default address
    QFile file(mProfile->fileName());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
    file.close();
    TarvioWindow window;
    auto* threshold = window.findChild<QDockWidget*>("thresholdDock");
    QCOMPARE(window.tabifiedDockWidgets(threshold).size(), 2);
    const auto* store = window.findChild<QSettings*>();
    QCOMPARE(store->value("network/ecu_ip").toString(), QString("192.168.1.3"));
}

void TestMainWindow::junkInTheSavedStateLeavesTheWindowUsable()
{
    for (const char* key : {"geometry", "state", "live_view", "freespaces_view", "thresholds_view"})
        mProfile->setValue(QString("main_window/") + key, QByteArray("junk"));
    const auto window = shownWindow();
    QVERIFY(window->findChild<QDockWidget*>("thresholdDock"));
    QVERIFY(window->findChild<QMdiArea*>("mMdiArea")->isVisible());
}

void TestMainWindow::dockThatIsShownAgainComesToTheFront()
{
    const auto window = shownWindow();
    for (const char* name : {"mseqDock", "sensorPositionDock", "thresholdDock"}) {
        const auto* dock = window->findChild<QDockWidget*>(name);
        dock->toggleViewAction()->trigger();
        QVERIFY(!dock->isVisible());
        dock->toggleViewAction()->trigger();
        QCoreApplication::processEvents();
        QVERIFY2(!dock->visibleRegion().isEmpty(), name);
    }
}

void TestMainWindow::subWindowsCannotBeClosed_data()
{
    QTest::addColumn<QKeySequence>("keys");
    QTest::newRow("Ctrl+W") << QKeySequence("Ctrl+W");
    QTest::newRow("Ctrl+F4") << QKeySequence("Ctrl+F4");
}

void TestMainWindow::subWindowsCannotBeClosed()
{
    QFETCH(QKeySequence, keys);
    const auto window = shownWindow();
    auto* area = window->findChild<QMdiArea*>("mMdiArea");
    QCOMPARE(area->subWindowList().size(), 2);
    for (QMdiSubWindow* subWindow : area->subWindowList()) {
        area->setActiveSubWindow(subWindow);
        QTest::keySequence(subWindow, keys);
        QTest::keySequence(window.get(), keys);
        area->closeActiveSubWindow();
        QVERIFY(subWindow->isVisible());
        QVERIFY(subWindow->isMaximized());
        QCOMPARE(int(subWindow->windowFlags() & ~Qt::WindowFlags(Qt::WindowType_Mask)),
                 int(Qt::CustomizeWindowHint | Qt::WindowMinimizeButtonHint |
                     Qt::WindowMaximizeButtonHint));
    }
    QCOMPARE(area->subWindowList().size(), 2);
}

void TestMainWindow::systemMenusOfSubWindowsOfferNoClose()
{
    const auto window = shownWindow();
    for (QMdiSubWindow* subWindow : window->findChild<QMdiArea*>("mMdiArea")->subWindowList()) {
        const QMenu* menu = subWindow->systemMenu();
        for (const QAction* action : menu ? menu->actions() : QList<QAction*>())
            QVERIFY2(!action->isVisible() || !action->text().contains("Close"),
                     qPrintable(action->text()));
    }
}

void TestMainWindow::liveEchoesAreInFront()
{
    const auto window = shownWindow();
    auto* area = window->findChild<QMdiArea*>("mMdiArea");
    QCOMPARE(area->viewMode(), QMdiArea::TabbedView);
    QVERIFY(area->documentMode());
    QCOMPARE(area->tabShape(), QTabWidget::Triangular);
    QTRY_COMPARE(area->activeSubWindow(), area->subWindowList().first());
    QVERIFY(area->activeSubWindow()->isMaximized());
}

void TestMainWindow::editModeRaisesThePositionDock()
{
    const auto window = shownWindow();
    auto* positions = window->findChild<QDockWidget*>("sensorPositionDock");
    QVERIFY(!isInFront(positions));
    window->onActivateSensorView();
    QTRY_VERIFY(isInFront(positions));
}

void TestMainWindow::aboutDialogOpensFromTheMenu()
{
    const auto window = shownWindow();
    QString title;
    QTimer::singleShot(0, window.get(), [&title] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        title = dialog->windowTitle();
        dialog->reject();
    });
    window->findChild<QAction*>("actionAbout")->trigger();
    QCOMPARE(title, QString("About Tarvio"));
}

void TestMainWindow::exitClosesTheWindow()
{
    const auto window = shownWindow();
    window->findChild<QAction*>("actionExit")->trigger();
    QVERIFY(!window->isVisible());
}

QTEST_MAIN(TestMainWindow)
#include "test_main_window.moc"
