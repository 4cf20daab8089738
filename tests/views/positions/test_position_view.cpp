#include "ecu/qt_compatibility.h"
#include "tests/support/Palettes.h"
#include "tests/support/clipped_widgets.h"
#include "tests/support/rendered_contrast.h"
#include "tests/support/screenshots.h"
#include "tests/views/positions/PositionViewFixture.h"
#include "views/positions/OrvgSensorPositionItemDelegate.h"

#include <QHeaderView>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QScrollArea>

namespace {

QImage pictureOf(const QIcon& icon)
{
    return icon.pixmap(16).toImage();
}

} // namespace

class PositionViewTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qt_compatibility::followScreenScale(); }
    void init() { mFixture = std::make_unique<PositionViewFixture>(); }
    void cleanup() { mFixture.reset(); }

    void formHasItsNamesAndTexts()
    {
        QCOMPARE(mFixture->view.objectName(), QString("OrvgSensorPositionView"));
        QCOMPARE(mFixture->view.windowTitle(), QString("Form"));
        QVERIFY(mFixture->view.findChild<QScrollArea*>("scrollArea"));
        QVERIFY(mFixture->view.findChild<QWidget*>("scrollAreaWidgetContents"));
        QCOMPARE(mFixture->readButton().toolTip(), QString("Read sequence"));
        QCOMPARE(mFixture->writeButton().toolTip(), QString("Write sequence"));
        QCOMPARE(mFixture->readButton().accessibleName(), QString("Read positions"));
        QCOMPARE(mFixture->writeButton().accessibleName(), QString("Write positions"));
        QCOMPARE(pictureOf(mFixture->readButton().icon()),
                 pictureOf(QIcon(":/icons/icons/receive.png")));
        QCOMPARE(pictureOf(mFixture->writeButton().icon()),
                 pictureOf(QIcon(":/icons/icons/send.png")));
        QVERIFY(!pictureOf(mFixture->readButton().icon()).isNull());
        QVERIFY(!pictureOf(mFixture->writeButton().icon()).isNull());
    }

    void pictureExplainsAxesAndAngles()
    {
        const QPixmap picture = mFixture->part<QLabel>("label").pixmap(Qt::ReturnByValue);
        QCOMPARE(picture.size() / picture.devicePixelRatio(), QSize(420, 230));
        QCOMPARE(picture.devicePixelRatio(), qApp->devicePixelRatio());
        const QIcon expected(":/icons/icons/xyheightypr.png");
        QCOMPARE(picture.toImage(), expected.pixmap(420, 230).toImage());
    }

    void originInThePictureIsTheRearAxle()
    {
        const QImage picture = QImage(":/icons/icons/xyheightypr.png").scaled(420, 230);
        const QRgb axis = qRgb(0x54, 0x61, 0x70);
        const QRgb tyre = qRgb(0x6b, 0x7a, 0x8c);
        QCOMPARE(picture.pixel(51, 101), tyre); // rear wheel, around 59
        QCOMPARE(picture.pixel(67, 101), tyre);
        QCOMPARE(picture.pixel(58, 70), axis);   // y, up from the axle
        QCOMPARE(picture.pixel(180, 129), axis); // x, forward
        QVERIFY(picture.pixel(81, 70) != axis);
    }

    void tabKeyLeavesTheTable()
    {
        mFixture->view.show();
        mFixture->table().setFocus();
        QTest::keyClick(&mFixture->table(), Qt::Key_Tab);
        QVERIFY(!mFixture->table().hasFocus());
    }

    void columnsStretchButKeepTheirNumbersReadable()
    {
        mFixture->view.show();
        QTableView& table = mFixture->table();
        QCOMPARE(table.horizontalHeader()->sectionResizeMode(5), QHeaderView::Stretch);
        mFixture->view.resize(300, 560);
        QVERIFY(table.columnWidth(0) > table.fontMetrics().horizontalAdvance("-32768"));
    }

    void editorRangeFollowsTheRow_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<double>("minimum");
        QTest::addColumn<double>("maximum");
        QTest::newRow("x") << 0 << -32768.0 << 32767.0;
        QTest::newRow("y") << 1 << -32768.0 << 32767.0;
        QTest::newRow("height") << 2 << 0.0 << 65535.0;
        QTest::newRow("yaw") << 3 << 0.0 << 360.0;
        QTest::newRow("pitch") << 4 << 0.0 << 360.0;
        QTest::newRow("roll") << 5 << 0.0 << 360.0;
    }

    void editorRangeFollowsTheRow()
    {
        QFETCH(int, row);
        const QDoubleSpinBox* editor = mFixture->openEditor(row, 4);
        QVERIFY(editor);
        QTEST(editor->minimum(), "minimum");
        QTEST(editor->maximum(), "maximum");
        QCOMPARE(editor->decimals(), 2);
    }

    void editorStartsWithTheCellsValue()
    {
        mFixture->model().setPositions(PositionViewFixture::aCar());
        QCOMPARE(mFixture->openEditor(3, 0)->value(), 80.0);
    }

    void editorLeftUntouchedChangesNothing_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("way");
        for (const QString way : {"Enter", "Tab", "Backtab", "focus loss", "click elsewhere"}) {
            QTest::newRow(qPrintable("x, " + way)) << 0 << way;
            QTest::newRow(qPrintable("pitch, " + way)) << 4 << way;
        }
    }

    // Two neighbouring binary angles show as the same hundredth of a degree.
    void editorLeftUntouchedChangesNothing()
    {
        QFETCH(int, row);
        QFETCH(QString, way);
        orv::SensorMountPositions positions = PositionViewFixture::aCar();
        positions[2].pitch = 912; // 5.00, which is 911 when it is entered
        mFixture->model().setPositions(positions);
        mFixture->view.show();
        mFixture->view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&mFixture->view));
        QSignalSpy changes(&mFixture->model(), &QAbstractItemModel::dataChanged);
        const QPointer<QDoubleSpinBox> editor = mFixture->openEditor(row, 2);
        QVERIFY(editor);
        leave(*editor, way);
        QTRY_VERIFY(!editor);
        QCOMPARE(mFixture->view.positions(), positions);
        QVERIFY(changes.isEmpty());
    }

    void noAngleIsChangedByLookingAtIt()
    {
        OrvgSensorPositionItemDelegate delegate;
        QDoubleSpinBox editor;
        editor.setRange(0, 360);
        const QModelIndex yaw = mFixture->model().index(3, 0);
        for (int stored = 0; stored <= 0xFFFF; ++stored) {
            orv::SensorMountPositions positions;
            positions[0].yaw = static_cast<std::uint16_t>(stored);
            mFixture->model().setPositions(positions);
            delegate.setEditorData(&editor, yaw);
            delegate.setModelData(&editor, &mFixture->model(), yaw);
            QCOMPARE(int{mFixture->view.positions()[0].yaw}, stored);
        }
    }

    void editorIsWideEnoughForItsRangeAndStaysInTheTable()
    {
        for (const int column : {0, 11}) {
            QDoubleSpinBox* editor = mFixture->openEditor(0, column);
            QVERIFY(editor);
            QVERIFY(editor->width() > editor->fontMetrics().horizontalAdvance("-32768.00"));
            QVERIFY(mFixture->table().viewport()->rect().contains(editor->geometry()));
            QTest::keyClick(editor, Qt::Key_Escape);
            QTRY_VERIFY(!mFixture->table().findChild<QDoubleSpinBox*>());
        }
    }

    void typedValuesAreTaken_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<double>("shown");
        QTest::newRow("smallest x") << 0 << "-32768" << -32768.0;
        QTest::newRow("largest y") << 1 << "32767" << 32767.0;
        QTest::newRow("largest height") << 2 << "65535" << 65535.0;
        QTest::newRow("two decimals") << 3 << "12.34" << 12.34;
        QTest::newRow("full turn") << 4 << "360" << 0.0;
        QTest::newRow("last hundredth") << 5 << "359.99" << 359.99;
        // The key that would leave the range is refused.
        QTest::newRow("x below its range") << 0 << "-32769" << -3276.0;
        QTest::newRow("y above its range") << 1 << "32768" << 3276.0;
        QTest::newRow("negative height") << 2 << "-5" << 0.0;
        QTest::newRow("more than a turn") << 3 << "361" << 36.0;
    }

    void typedValuesAreTaken()
    {
        QFETCH(int, row);
        QFETCH(QString, typed);
        QDoubleSpinBox* editor = mFixture->openEditor(row, 2);
        QVERIFY(editor);
        QTest::keyClicks(editor, typed);
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(!mFixture->table().findChild<QDoubleSpinBox*>());
        QTEST(mFixture->model().index(row, 2).data().toDouble(), "shown");
    }

    void escapeKeepsTheCell()
    {
        mFixture->model().setPositions(PositionViewFixture::aCar());
        QDoubleSpinBox* editor = mFixture->openEditor(0, 2);
        QTest::keyClicks(editor, "77");
        QTest::keyClick(editor, Qt::Key_Escape);
        QTRY_VERIFY(!mFixture->table().findChild<QDoubleSpinBox*>());
        QCOMPARE(mFixture->view.positions(), PositionViewFixture::aCar());
    }

    void tabGoesOnToTheNextSensor()
    {
        QDoubleSpinBox* editor = mFixture->openEditor(0, 2);
        QTest::keyClicks(editor, "77");
        QTest::keyClick(editor, Qt::Key_Tab);
        QCOMPARE(mFixture->view.positions()[2].x, std::int16_t{77});
        QCOMPARE(mFixture->table().currentIndex(), mFixture->model().index(0, 3));
    }

    void editKeyOpensTheEditor()
    {
        mFixture->view.show();
        mFixture->table().setCurrentIndex(mFixture->model().index(3, 5));
        QTest::keyClick(&mFixture->table(), Qt::Key_7);
        QVERIFY(!mFixture->table().findChild<QDoubleSpinBox*>());
        QTest::keyClick(&mFixture->table(), Qt::Key_F2);
        QVERIFY(mFixture->table().findChild<QDoubleSpinBox*>());
    }

    void editModeLocksTableAndButtons()
    {
        mFixture->view.show();
        mFixture->view.setEditMode(true);
        QCOMPARE(mFixture->table().editTriggers(), QAbstractItemView::NoEditTriggers);
        QVERIFY(!mFixture->openEditor(0, 2));
        QVERIFY(mFixture->readButton().isHidden());
        QVERIFY(mFixture->writeButton().isHidden());
        mFixture->view.setEditMode(false);
        QCOMPARE(mFixture->table().editTriggers(),
                 QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
        QVERIFY(mFixture->openEditor(0, 2));
        QVERIFY(mFixture->readButton().isVisible());
        QVERIFY(mFixture->writeButton().isVisible());
    }

    void editModeTakesWhatWasTyped()
    {
        QDoubleSpinBox* editor = mFixture->openEditor(0, 2);
        QTest::keyClicks(editor, "77");
        mFixture->view.setEditMode(true);
        QCOMPARE(mFixture->view.positions()[2].x, std::int16_t{77});
        QTRY_VERIFY(!mFixture->table().findChild<QDoubleSpinBox*>());
    }

    void movedSensorKeepsHeightPitchAndRoll()
    {
        orv::SensorMountPositions positions = PositionViewFixture::aCar();
        mFixture->model().setPositions(positions);
        mFixture->view.setPosition(11, {.x = -1234, .y = 56, .direction = 32768});
        positions[11].x = -1234;
        positions[11].y = 56;
        positions[11].yaw = 32768;
        QCOMPARE(mFixture->view.positions(), positions);
    }

    void everyChangeIsAnnouncedWithItsSensors()
    {
        QSignalSpy changes(&mFixture->view, &OrvgSensorPositionView::positionsChanged);
        mFixture->model().setPositions(PositionViewFixture::aCar());
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.takeFirst(), (QVariantList{0, 11}));
        QDoubleSpinBox* editor = mFixture->openEditor(0, 2);
        QTest::keyClicks(editor, "77");
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(changes.size(), 1);
        QCOMPARE(changes.takeFirst(), (QVariantList{2, 2}));
        mFixture->view.setPosition(4, {.x = 1});
        QVERIFY(!changes.isEmpty());
        for (const QVariantList& change : changes)
            QCOMPARE(change, (QVariantList{4, 4}));
    }

    void movedSensorIsSelected()
    {
        mFixture->view.setPosition(3, {});
        const QItemSelectionModel* selection = mFixture->table().selectionModel();
        QVERIFY(selection->isColumnSelected(3, {}));
        QCOMPARE(selection->selectedIndexes().size(), 6);
        mFixture->view.setPosition(4, {});
        QVERIFY(selection->isColumnSelected(4, {}));
        QCOMPARE(selection->selectedIndexes().size(), 6);
    }

    void unknownSensorClearsTheSelection_data()
    {
        QTest::addColumn<int>("id");
        QTest::newRow("first beyond") << 12;
        QTest::newRow("none") << 255;
    }

    void unknownSensorClearsTheSelection()
    {
        QFETCH(int, id);
        mFixture->model().setPositions(PositionViewFixture::aCar());
        mFixture->table().selectColumn(3);
        mFixture->view.setPosition(static_cast<std::uint8_t>(id), {.x = 1, .y = 1});
        QVERIFY(!mFixture->table().selectionModel()->hasSelection());
        QCOMPARE(mFixture->view.positions(), PositionViewFixture::aCar());
    }

    void noButtonIsCutInALowDock()
    {
        mFixture->view.show();
        for (const int height : {mFixture->view.minimumSizeHint().height(), 140, 244}) {
            mFixture->view.resize(1280, height);
            QCoreApplication::processEvents();
            QCOMPARE(clippedChildren<QToolButton>(mFixture->view), QStringList());
        }
    }

    void allFieldsAreSeenInADockAsItIsAtFirst()
    {
        mFixture->view.resize(1280, 244);
        mFixture->view.show();
        QCoreApplication::processEvents();
        const QRect lastRow = mFixture->table().visualRect(mFixture->model().index(5, 0));
        const QWidget* viewport = mFixture->table().viewport();
        QVERIFY(viewport->visibleRegion().contains(lastRow.adjusted(0, 0, 0, -1)));
        QVERIFY(viewport->visibleRegion().boundingRect().bottom() >= lastRow.bottom() - 1);
    }

    void textsOfTheTableRead_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("light") << lightPalette();
        QTest::newRow("dark") << darkPalette();
    }

    void textsOfTheTableRead()
    {
        QFETCH(QPalette, palette);
        const PaletteScope scope(palette);
        mFixture->model().setPositions(PositionViewFixture::aCar());
        mFixture->view.show();
        mFixture->view.setPosition(3, {});
        QCOMPARE(inCell(3, 0).ground, palette.color(QPalette::Base));
        QVERIFY(inCell(3, 0).ratio >= 4.5);
        QCOMPARE(inCell(3, 3).ground, palette.color(QPalette::Highlight));
        QVERIFY(inCell(3, 3).ratio >= 3);
    }

    void guidePictureShowsValuesEditorAndExplanation()
    {
        mFixture->model().setPositions(PositionViewFixture::aCar());
        mFixture->view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&mFixture->view));
        const QDoubleSpinBox* editor = mFixture->openEditor(3, 1);
        QVERIFY(editor);
        QCOMPARE(editor->text(), QString("35.00"));
        const QRect picture = mFixture->part<QLabel>("label").geometry();
        const QRect contents = mFixture->part<QWidget>("scrollAreaWidgetContents").rect();
        QVERIFY(contents.contains(picture));
        QVERIFY(contents.height() <= mFixture->part<QScrollArea>("scrollArea").height());
        saveScreenshot(mFixture->view, "sensor-positions");
    }

private:
    RenderedContrast inCell(int row, int column)
    {
        const QRect cell = mFixture->table().visualRect(mFixture->model().index(row, column));
        const double ratio = qApp->devicePixelRatio();
        const QRect inner = cell.adjusted(3, 3, -3, -3);
        return renderedContrast(mFixture->table().viewport()->grab().toImage(),
                                {inner.topLeft() * ratio, inner.size() * ratio});
    }

    void leave(QDoubleSpinBox& editor, const QString& way)
    {
        if (way == "Enter")
            QTest::keyClick(&editor, Qt::Key_Return);
        else if (way == "Tab")
            QTest::keyClick(&editor, Qt::Key_Tab);
        else if (way == "Backtab")
            QTest::keyClick(&editor, Qt::Key_Backtab);
        else if (way == "focus loss")
            mFixture->readButton().setFocus();
        else
            QTest::mouseClick(mFixture->table().viewport(), Qt::LeftButton, {},
                              mFixture->table().visualRect(mFixture->model().index(0, 8)).center());
    }

    std::unique_ptr<PositionViewFixture> mFixture;
};

QTEST_MAIN(PositionViewTest)
#include "test_position_view.moc"
