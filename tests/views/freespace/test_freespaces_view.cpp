#include "tests/support/FreespaceBuilder.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/views/freespace/FreespacesFixture.h"

#include <QFrame>
#include <QGroupBox>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QSplitter>
#include <QStackedWidget>
#include <QtTest>

class FreespacesViewTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { mFixture = std::make_unique<FreespacesFixture>(); }
    void cleanup() { mFixture.reset(); }

    void startsInViewMode()
    {
        QCOMPARE(mFixture->view.windowTitle(), QString("Freespaces"));
        compareMode(false);
        QVERIFY(mFixture->positions.readButton().isVisibleTo(&mFixture->positions.view));
    }

    void modeButtonSwitchesThere()
    {
        QSignalSpy activated(&mFixture->view, &OrvgFreespacesView::editModeActivated);
        QSignalSpy loaded(&mFixture->view, &OrvgFreespacesView::loadPositions);
        mFixture->click("mModeButton");
        compareMode(true);
        QVERIFY(!mFixture->positions.readButton().isVisibleTo(&mFixture->positions.view));
        QCOMPARE(activated.size(), 1);
        QCOMPARE(loaded.size(), 1);
    }

    void modeIsActivatedBeforeThePositionsAreLoaded()
    {
        QStringList order;
        const auto markers = [this] {
            return picture::itemsOf<OrvgSensorItem>(mFixture->picture()).size();
        };
        connect(&mFixture->view, &OrvgFreespacesView::editModeActivated, this, [&] {
            compareMode(true);
            order << QString("activated with %1 markers").arg(markers());
        });
        connect(&mFixture->view, &OrvgFreespacesView::loadPositions, this,
                [&] { order << "loaded"; });
        mFixture->click("mModeButton");
        QCOMPARE(order, QStringList({"activated with 0 markers", "loaded"}));
        QCOMPARE(markers(), 12);
    }

    void modeButtonSwitchesBack()
    {
        mFixture->setEditMode(true);
        QSignalSpy activated(&mFixture->view, &OrvgFreespacesView::editModeActivated);
        mFixture->click("mModeButton");
        compareMode(false);
        QVERIFY(mFixture->positions.readButton().isVisibleTo(&mFixture->positions.view));
        QCOMPARE(activated.size(), 0);
    }

    void switchingTheModeDoesNotMoveThePicture_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<QList<int>>("sizes");
        QTest::newRow("as it starts") << 1000 << QList<int>();
        QTest::newRow("wide picture") << 1000 << QList<int>({1000, 0});
        QTest::newRow("narrow picture") << 1000 << QList<int>({0, 1000});
        QTest::newRow("small window") << 500 << QList<int>();
    }

    void switchingTheModeDoesNotMoveThePicture()
    {
        QFETCH(int, width);
        QFETCH(QList<int>, sizes);
        mFixture->view.resize(width, 600);
        if (!sizes.isEmpty())
            mFixture->part<QSplitter>("splitter").setSizes(sizes);
        QCoreApplication::processEvents();
        const auto place = [this] {
            QCoreApplication::processEvents(); // the layout
            return mFixture->picture().mapTo(&mFixture->view,
                                             picture::pixelOf(mFixture->picture(), 0, 0));
        };
        const QPoint before = place();
        mFixture->click("mModeButton");
        QCOMPARE(place(), before);
        mFixture->click("mModeButton");
        QCOMPARE(place(), before);
    }

    void editModeShowsAllSensorsOfTheTable()
    {
        QVERIFY(picture::itemsOf<OrvgSensorItem>(mFixture->picture()).isEmpty());
        mFixture->setEditMode(true);
        QCOMPARE(picture::itemsOf<OrvgSensorItem>(mFixture->picture()).size(), 12);
        const OrvgSensorItem* third = picture::sensor(mFixture->picture(), 2);
        QVERIFY((third->position() == orv::OrvSensorPosition{0, 3650, 240, 1821}));
    }

    void iconButtonsExplainThemselves_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("picture");
        QTest::newRow("mode") << "mModeButton"
                              << "settings.png";
        QTest::newRow("load") << "mLoadButton"
                              << "receive.png";
        QTest::newRow("program") << "mProgramButton"
                                 << "send.png";
        QTest::newRow("zoom in") << "mZoomInButton"
                                 << "add.png";
        QTest::newRow("zoom out") << "mZoomOutButton"
                                  << "remove.png";
    }

    void iconButtonsExplainThemselves()
    {
        QFETCH(QString, name);
        QFETCH(QString, picture);
        const auto& button = mFixture->part<QToolButton>(qPrintable(name));
        QVERIFY(!button.toolTip().isEmpty());
        QCOMPARE(button.accessibleName(), button.toolTip());
        const QPixmap expected = QIcon(":/icons/icons/" + picture).pixmap(16);
        QVERIFY(!expected.isNull());
        QCOMPARE(button.icon().pixmap(16).toImage(), expected.toImage());
    }

    void pictureTellsWhatCanBeDoneWithIt()
    {
        const QString tip = mFixture->picture().toolTip();
        for (const char* gesture : {"Wheel", "Ctrl + wheel", "Middle button", "Page Up",
                                    "Page Down", "Arrow keys", "Shift", "Home", "Escape"})
            QVERIFY2(tip.contains(gesture), gesture);
    }

    void tableHasAllWedges()
    {
        const auto& table = mFixture->part<QTableWidget>("mTable");
        QCOMPARE(mFixture->part<QGroupBox>("mWedgeDistancesGB").title(),
                 QString("Wedge distances"));
        QCOMPARE(table.accessibleName(), QString("Wedge distances"));
        QCOMPARE(table.rowCount(), 12);
        QStringList headers;
        for (int column = 0; column < table.columnCount(); ++column)
            headers << table.horizontalHeaderItem(column)->text();
        QCOMPARE(headers, QStringList({"left", "middle", "right"}));
        QCOMPARE(table.verticalHeaderItem(0)->text(), QString("1"));
        QCOMPARE(table.verticalHeaderItem(11)->text(), QString("12"));
        QCOMPARE(table.horizontalHeader()->sectionResizeMode(1), QHeaderView::Stretch);
        QCOMPARE(mFixture->row(11), QStringList({"", "", ""}));
        QVERIFY(table.item(11, 2)->textAlignment() & Qt::AlignRight);
    }

    void packageFillsTheTable()
    {
        receive({anEntry(3).withDistance(0, 870).withDistance(1, 0).withDistance(2, 65535)});
        QCOMPARE(mFixture->row(3), QStringList({"870 mm", "0 mm", "65535 mm"}));
        QCOMPARE(picture::freespaces(mFixture->picture()).size(), 1);
    }

    void longestDistanceIsNeverCut()
    {
        mFixture->part<QSplitter>("splitter").setSizes({1000, 0});
        const auto& table = mFixture->part<QTableWidget>("mTable");
        QVERIFY(table.columnWidth(0) > table.fontMetrics().horizontalAdvance("65535 mm"));
        QVERIFY(table.viewport()->width() >= table.horizontalHeader()->length());
    }

    void allRowsAreSeenInALowView()
    {
        const QFont before = QApplication::font();
        QFont usual = before;
        usual.setPixelSize(12); // 9 points at 96 dots per inch
        QApplication::setFont(usual);
        mFixture = std::make_unique<FreespacesFixture>();
        QApplication::setFont(before);
        mFixture->view.setFont(usual);

        mFixture->view.resize(1000, 300);
        QCoreApplication::processEvents();
        QCOMPARE(mFixture->view.height(), 300);
        auto& table = mFixture->part<QTableWidget>("mTable");
        QVERIFY(!table.verticalScrollBar()->isVisible());
        QVERIFY(table.viewport()->rect().contains(table.visualItemRect(table.item(11, 0))));
        QVERIFY(table.rowHeight(0) > table.fontMetrics().height());
    }

    void absentDistanceEmptiesItsCellAlone()
    {
        receive({anEntry(3).withDistance(0, 1).withDistance(1, 2).withDistance(2, 3),
                 anEntry(4).withDistance(1, 4)});
        receive({anEntry(3).withDistance(0, 5).withDistance(2, 6)});
        QCOMPARE(mFixture->row(3), QStringList({"5 mm", "", "6 mm"}));
        QCOMPARE(mFixture->row(4), QStringList({"", "4 mm", ""}));
    }

    void unknownSensorsLeaveTheTableAlone()
    {
        receive({anEntry(12).withDistance(0, 1), anEntry(255).withDistance(0, 2)});
        for (int row = 0; row < 12; ++row)
            QCOMPARE(mFixture->row(row), QStringList({"", "", ""}));
    }

    void tableFollowsInEditModeToo()
    {
        mFixture->setEditMode(true);
        receive({anEntry(3).withDistance(0, 870)});
        QCOMPARE(mFixture->cell(3, 0), QString("870 mm"));
        QVERIFY(picture::freespaces(mFixture->picture()).isEmpty());
    }

    void selectedSensorIsShownBesideAndInThePositionTable()
    {
        mFixture->setEditMode(true);
        mFixture->select(2);
        QCOMPARE(mFixture->parameters().title(), QString("Sensor 3 "));
        QCOMPARE(mFixture->part<QSpinBox>("mXSB").value(), 3650);
        QCOMPARE(mFixture->selectedColumns(), QList<int>({2}));
    }

    void selectionAloneChangesNoPosition()
    {
        mFixture->setEditMode(true);
        for (std::uint8_t id = 0; id < 12; ++id)
            QTest::keyClick(&mFixture->picture(), Qt::Key_PageDown);
        QVERIFY(mFixture->positions.view.positions() == PositionViewFixture::aCar());
        QVERIFY((picture::sensor(mFixture->picture(), 11)->position() ==
                 orv::OrvSensorPosition{0, -900, 850, 18205}));
    }

    void leavingEditModeClearsTheSelectionEverywhere()
    {
        mFixture->setEditMode(true);
        mFixture->select(2);
        mFixture->setEditMode(false);
        QVERIFY(mFixture->picture().scene()->selectedItems().isEmpty());
        QCOMPARE(mFixture->parameters().title(), QString("Sensor configuration  "));
        QVERIFY(!mFixture->parameters().isEnabled());
        QCOMPARE(mFixture->selectedColumns(), QList<int>());
    }

    void dragIsMirroredIntoThePositionTable()
    {
        mFixture->setEditMode(true);
        OrvgFreespaceGraphicsView& picture = mFixture->picture();
        const QPoint start = picture.mapFromScene(3650, -240) + QPoint(3, 0);
        picture::press(picture, start);
        picture::moveMouse(picture, start + QPoint(10, 0), Qt::LeftButton);
        picture::moveMouse(picture, start + QPoint(10, -20), Qt::LeftButton);
        QCOMPARE(mFixture->part<QSpinBox>("mXSB").value(), 3850);
        picture::release(picture, start + QPoint(10, -20));

        auto expected = PositionViewFixture::aCar();
        expected[2].x = 3850;
        expected[2].y = 640;
        QVERIFY(mFixture->positions.view.positions() == expected);
        QCOMPARE(mFixture->part<QSpinBox>("mYSB").value(), 640);
    }

    void turnIsMirroredIntoThePositionTable()
    {
        mFixture->setEditMode(true);
        mFixture->select(2);
        picture::wheel(mFixture->picture(), {10, 10}, 120);
        auto expected = PositionViewFixture::aCar();
        expected[2].yaw = 2185; // 1821 + 364
        QVERIFY(mFixture->positions.view.positions() == expected);
    }

    void typedPositionMovesTheSensorAndItsColumn()
    {
        mFixture->setEditMode(true);
        mFixture->select(2);
        mFixture->part<QSpinBox>("mYSB").setValue(-77);
        QCOMPARE(picture::sensor(mFixture->picture(), 2)->pos(), QPointF(3650, 77));
        const auto positions = mFixture->positions.view.positions();
        QCOMPARE(positions[2].y, std::int16_t(-77));
        QCOMPARE(positions[2].height, std::uint16_t(520));
        QCOMPARE(positions[2].pitch, std::uint16_t(911));
    }

    void parametersAreReachableWithoutAMouse()
    {
        mFixture->setEditMode(true);
        mFixture->view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&mFixture->view));
        mFixture->picture().setFocus();
        QTest::keyClick(&mFixture->picture(), Qt::Key_PageDown);
        for (int tabs = 0; tabs < 12 && !isInParameters(QApplication::focusWidget()); ++tabs)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(isInParameters(QApplication::focusWidget()));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
        QCOMPARE(mFixture->positions.view.positions()[0].x, std::int16_t(3651));
    }

    void loadButtonReadsThePositionsFromTheEcu()
    {
        mFixture->setEditMode(true);
        orv::SensorMountPositions held;
        held[5].x = 1234;
        mFixture->positions.socket.queueReply(4, orv::encodeMountPositions(held));
        MessageBoxWatcher watcher(QMessageBox::Yes);
        mFixture->click("mLoadButton");
        QCOMPARE(watcher.boxes().size(), 1);
        QCOMPARE(watcher.boxes()[0].title, QString("Read Positions"));
        QCOMPARE(picture::sensor(mFixture->picture(), 5)->pos(), QPointF(1234, 0));
    }

    void loadedPositionOfTheSelectedSensorIsShownBeside()
    {
        mFixture->setEditMode(true);
        mFixture->select(2);
        orv::SensorMountPositions held;
        held[2] = {.x = 1234, .y = -56, .height = 0, .yaw = 4369, .pitch = 0, .roll = 0};
        mFixture->positions.socket.queueReply(4, orv::encodeMountPositions(held));
        MessageBoxWatcher watcher(QMessageBox::Yes);
        mFixture->click("mLoadButton");
        QCOMPARE(mFixture->part<QSpinBox>("mXSB").value(), 1234);
        mFixture->part<QSpinBox>("mYSB").setValue(77);
        QCOMPARE(mFixture->positions.view.positions()[2].x, std::int16_t(1234));
        QCOMPARE(mFixture->positions.view.positions()[2].yaw, std::uint16_t(4369));
    }

    void failedReadRestoresThePictureFromTheTable()
    {
        mFixture->setEditMode(true);
        picture::sensor(mFixture->picture(), 5)
            ->setPos(0, 0); // not selected: the table is not told
        MessageBoxWatcher watcher(QMessageBox::Yes);
        mFixture->click("mLoadButton");
        QCOMPARE(watcher.boxes().size(), 2);
        QCOMPARE(watcher.boxes()[1].title, QString("Communication error"));
        QCOMPARE(picture::sensor(mFixture->picture(), 5)->pos(), QPointF(3650, 850));
    }

    void programButtonWritesWithMessages()
    {
        mFixture->setEditMode(true);
        MessageBoxWatcher watcher;
        mFixture->click("mProgramButton"); // no reply is queued
        QCOMPARE(mFixture->positions.socket.requests().size(), 1U);
        QCOMPARE(watcher.boxes().size(), 1);
        QCOMPARE(watcher.boxes()[0].title, QString("Communication error"));
    }

    void zoomButtonsZoom()
    {
        mFixture->click("mZoomInButton");
        mFixture->picture().scalingTime();
        QCOMPARE(mFixture->picture().transform().m11(), 0.05 * 1.01);
        mFixture->click("mZoomOutButton");
        mFixture->click("mZoomOutButton");
        mFixture->picture().scalingTime();
        QCOMPARE(mFixture->picture().transform().m11(), 0.05 * 1.01 * 0.99);
    }

    void splitterIsRestored()
    {
        auto& splitter = mFixture->part<QSplitter>("splitter");
        splitter.setSizes({300, 680});
        const QByteArray state = mFixture->view.saveState();
        const QList<int> sizes = splitter.sizes();
        splitter.setSizes({700, 280});
        QVERIFY(splitter.sizes() != sizes);
        QVERIFY(mFixture->view.restoreState(state));
        QCOMPARE(splitter.sizes(), sizes);
        QVERIFY(!mFixture->view.restoreState("no state"));
        QCOMPARE(splitter.sizes(), sizes);
    }

    void viewEndsWithASelectedSensor()
    {
        mFixture->setEditMode(true);
        mFixture->select(2);
        mFixture.reset();
    }

    void viewEndsInADrag()
    {
        mFixture->setEditMode(true);
        const QPoint start = mFixture->picture().mapFromScene(3650, -240);
        picture::press(mFixture->picture(), start);
        picture::moveMouse(mFixture->picture(), start + QPoint(10, 0), Qt::LeftButton);
        mFixture.reset();
    }

private:
    void receive(std::initializer_list<orv::OrvFreespaceEntry> entries)
    {
        mFixture->view.onNewFreespacePackage(aPackage(entries));
    }

    bool isInParameters(QWidget* widget) { return mFixture->parameters().isAncestorOf(widget); }

    void compareMode(bool editMode)
    {
        QCOMPARE(mFixture->part<QStackedWidget>("mRightStackedWidget").currentIndex(),
                 editMode ? 1 : 0);
        QCOMPARE(mFixture->part<QGroupBox>("mWedgeDistancesGB").isVisible(), !editMode);
        QCOMPARE(mFixture->parameters().isVisible(), editMode);
        QCOMPARE(mFixture->part<QToolButton>("mLoadButton").isEnabled(), editMode);
        QCOMPARE(mFixture->part<QToolButton>("mProgramButton").isEnabled(), editMode);
        QCOMPARE(mFixture->picture().isInteractive(), editMode);
    }

    std::unique_ptr<FreespacesFixture> mFixture;
};

QTEST_MAIN(FreespacesViewTest)
#include "test_freespaces_view.moc"
