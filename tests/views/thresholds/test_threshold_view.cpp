#include "tests/views/thresholds/ThresholdViewFixture.h"
#include "views/thresholds/OrvgThresholdItemDelegate.h"
#include "views/thresholds/ThresholdEditor.h"

#include <QHeaderView>
#include <QLabel>
#include <QSplitter>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <QtTest>

class ThresholdViewTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { mFixture = std::make_unique<ThresholdViewFixture>(); }
    void cleanup() { mFixture.reset(); }

    void formHasItsTexts()
    {
        QCOMPARE(mFixture->view.windowTitle(), QString("Form"));
        QCOMPARE(mFixture->part<QLabel>("mScaleLabel").text(),
                 QString("Threshold scale in passive mode: "));
        QStringList scales;
        for (int i = 0; i < mFixture->scaleBox().count(); ++i) {
            scales << mFixture->scaleBox().itemText(i);
            QCOMPARE(mFixture->scaleBox().itemData(i).toInt(), i);
        }
        QCOMPARE(scales, QStringList({"50%", "62.5%", "81.25%", "100%"}));
    }

    void buttonsHaveTheirTexts_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("toolTip");
        QTest::addColumn<QString>("accessibleName");
        const auto row = [](const char* name, const char* text, const char* toolTip) {
            QTest::newRow(name) << name << text << toolTip << toolTip;
        };
        row("mCalibrateTb", "C", "Auto calibration");
        row("mReadTb", "R", "Read sensor thresholds");
        row("mReadAllTb", "...", "Read all thresholds from ECU");
        row("mWriteTb", "W", "Write sensor thresholds");
        row("mResetTb", "Reset", "Reset plot peaks");
        QTest::newRow("mWriteAllTb") << "mWriteAllTb"
                                     << "..."
                                     << ""
                                     << "Write all thresholds to ECU";
    }

    void buttonsHaveTheirTexts()
    {
        QFETCH(QString, name);
        const auto* button = mFixture->view.findChild<QToolButton*>(name);
        QTEST(button->text(), "text");
        QTEST(button->toolTip(), "toolTip");
        QTEST(button->accessibleName(), "accessibleName");
    }

    void tableFillsItsWidthAndFitsItsRows()
    {
        QCOMPARE(mFixture->table().horizontalHeader()->sectionResizeMode(5), QHeaderView::Stretch);
        QCOMPARE(mFixture->table().verticalHeader()->sectionResizeMode(5),
                 QHeaderView::ResizeToContents);
    }

    void cellsKeepTheirTwoLinesInANarrowDock()
    {
        mFixture->view.show();
        mFixture->view.resize(300, 700);
        const QTableView& table = mFixture->table();
        QVERIFY(table.columnWidth(0) >= table.fontMetrics().horizontalAdvance("0.20ms"));
        QVERIFY(table.rowHeight(0) < 3 * table.fontMetrics().height());
    }

    void rowsAreAsHighAsTheirTwoLines()
    {
        mFixture->view.show();
        const QTableView& table = mFixture->table();
        const int twoLines = 2 * table.fontMetrics().lineSpacing();
        QVERIFY(table.rowHeight(0) >= twoLines);
        QVERIFY2(table.rowHeight(0) <= twoLines + 4,
                 qPrintable(QString::number(table.rowHeight(0))));
        QCOMPARE(table.rowHeight(11), table.rowHeight(0));
    }

    void tabKeyRunsThroughTheViewAndNotThroughTheCells()
    {
        mFixture->view.show();
        mFixture->view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&mFixture->view));
        mFixture->setCurrent(2, 4);
        mFixture->table().setFocus();
        QStringList order;
        for (int i = 0; i < 7; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            order << QApplication::focusWidget()->objectName();
        }
        QCOMPARE(order, QStringList({"mCalibrateTb", "mReadTb", "mReadAllTb", "mWriteTb",
                                     "mWriteAllTb", "mResetTb", "mScaleCb"}));
    }

    void firstSelectionShowsCurveAndScale()
    {
        mFixture->model().setScale(0, 3);
        QCOMPARE(orangePixels(), 0);
        mFixture->setCurrent(0);
        QVERIFY(orangePixels() > 100);
        QCOMPARE(mFixture->scaleBox().currentText(), QString("100%"));
    }

    void anotherRowEmptiesThePeaksAnotherColumnDoesNot()
    {
        mFixture->setCurrent(2);
        mFixture->receiveEcho(2, 15000);
        mFixture->setCurrent(2, 5);
        QVERIFY(mFixture->plotHasStickAt(15000));
        mFixture->setCurrent(3, 5);
        QVERIFY(!mFixture->plotHasStickAt(15000));
    }

    void currentColumnIsMarked()
    {
        mFixture->model().setRecord(curve(2));
        mFixture->setCurrent(2, 0);
        const QPoint first = brightWhite();
        mFixture->setCurrent(2, 4);
        QVERIFY(first.x() >= 0);
        QVERIFY(brightWhite().x() > first.x());
    }

    void invalidIndexChangesNothing()
    {
        mFixture->setCurrent(2);
        const QImage before = mFixture->plot().grab().toImage();
        mFixture->view.onSelectionChanged({}, {});
        mFixture->view.onDataChanged({});
        QCOMPARE(mFixture->plot().grab().toImage(), before);
    }

    void rowsBehindTheSensorsChangeNothing()
    {
        mFixture->setCurrent(2);
        mFixture->model().insertRow(12);
        const QImage before = mFixture->plot().grab().toImage();
        mFixture->setCurrent(12);
        mFixture->receiveEcho(12, 15000);
        mFixture->view.onScaleChanged(0);
        QCOMPARE(mFixture->plot().grab().toImage(), before);
        QVERIFY(!mFixture->view.onWriteThresholds());
        QVERIFY(mFixture->socket.requests().empty());
    }

    void editMovesTheCurveAndKeepsThePeaks()
    {
        mFixture->setCurrent(2);
        mFixture->receiveEcho(2, 15000);
        const QImage before = mFixture->plot().grab().toImage();
        mFixture->model().setData(mFixture->model().index(2, 3), QPoint(6, 30));
        QVERIFY(mFixture->plot().grab().toImage() != before);
        QVERIFY(mFixture->plotHasStickAt(15000));
    }

    void chosenScaleGoesToTheSelectedSensor()
    {
        mFixture->view.onScaleChanged(0); // nothing selected
        mFixture->setCurrent(7);
        QTest::keyClick(&mFixture->scaleBox(), Qt::Key_Up);
        QCOMPARE(mFixture->model().record(7).scale, std::uint8_t{1});
        QCOMPARE(mFixture->model().record(0).scale, std::uint8_t{2});
    }

    void liveEchoesOfTheSelectedSensorAloneAreShown()
    {
        mFixture->receiveEcho(0, 15000);
        mFixture->receiveEcho(255, 15000); // what is no sensor
        QVERIFY(!mFixture->plotHasStickAt(15000));
        mFixture->setCurrent(2);
        mFixture->receiveEcho(3, 15000);
        mFixture->receiveEcho(255, 15000);
        QVERIFY(!mFixture->plotHasStickAt(15000));
        mFixture->receiveEcho(2, 15000);
        QVERIFY(mFixture->plotHasStickAt(15000));
    }

    void resetButtonEmptiesThePeaks()
    {
        mFixture->setCurrent(2);
        mFixture->receiveEcho(2, 15000);
        mFixture->click("mResetTb");
        QVERIFY(!mFixture->plotHasStickAt(15000));
    }

    void editNearTheRightEdgeReachesTheWire()
    {
        mFixture->socket.queueReply(1, {});
        ThresholdEditor* editor = openEditor(5, 11);
        QVERIFY(editor);
        const QRect view(mFixture->table().viewport()->mapToGlobal(QPoint()),
                         mFixture->table().viewport()->size());
        QVERIFY(view.right() - editor->frameGeometry().right() >= 19);
        QTest::keyClick(box(editor, "mTimeCb"), Qt::Key_Home);
        QTest::keyClick(box(editor, "mLevelCb"), Qt::Key_Home);
        QTest::keyClick(box(editor, "mLevelCb"), Qt::Key_Down);
        QTest::keyClick(box(editor, "mLevelCb"), Qt::Key_Return);
        QTRY_VERIFY(!mFixture->view.findChild<ThresholdEditor*>());
        QTest::mouseClick(&mFixture->part<QToolButton>("mWriteTb"), Qt::LeftButton);
        QCOMPARE(mFixture->socket.requests().size(), 1U);
        QCOMPARE(mFixture->socket.requests()[0][2], std::uint8_t{5});
        QCOMPARE(mFixture->socket.requests()[0][14], std::uint8_t{0xFE});
    }

    void editorLeftUntouchedChangesNothing_data()
    {
        QTest::addColumn<QString>("way");
        for (const QString way : {"Enter", "Escape", "click beside"})
            QTest::newRow(qPrintable(way)) << way;
    }

    void editorLeftUntouchedChangesNothing()
    {
        QFETCH(QString, way);
        mFixture->model().setRecord(curve(5));
        ThresholdEditor* editor = openEditor(5, 3);
        QVERIFY(editor);
        QSignalSpy changes(&mFixture->model(), &QAbstractItemModel::dataChanged);
        if (way == "Enter")
            QTest::keyClick(box(editor, "mTimeCb"), Qt::Key_Return);
        else if (way == "Escape")
            QTest::keyClick(box(editor, "mTimeCb"), Qt::Key_Escape);
        else
            QTest::mouseClick(editor, Qt::LeftButton, {}, {-40, -40});
        QTRY_VERIFY(!mFixture->view.findChild<ThresholdEditor*>());
        QCOMPARE(mFixture->model().record(5), curve(5));
        QVERIFY(changes.isEmpty());
    }

    void noEntryIsChangedByLookingAtIt()
    {
        OrvgThresholdItemDelegate delegate;
        ThresholdEditor editor(nullptr);
        const QModelIndex cell = mFixture->model().index(5, 3);
        for (int entry = 0; entry <= 0xFF; ++entry) {
            orv::SensorThreshold record = curve(5);
            record.entries[3] = static_cast<std::uint8_t>(entry);
            mFixture->model().setRecord(record);
            delegate.setEditorData(&editor, cell);
            QCOMPARE(editor.indexes(), QPoint(entry >> 5, entry & 31));
            delegate.setModelData(&editor, &mFixture->model(), cell);
            QCOMPARE(mFixture->model().record(5), record);
        }
    }

    void escapeKeepsTheCell()
    {
        ThresholdEditor* editor = openEditor(5, 3);
        QVERIFY(editor);
        QTest::keyClick(box(editor, "mTimeCb"), Qt::Key_Home);
        QTest::keyClick(box(editor, "mTimeCb"), Qt::Key_Escape);
        QTRY_VERIFY(!mFixture->view.findChild<ThresholdEditor*>());
        QCOMPARE(mFixture->model().record(5).entries[3], std::uint8_t{0});
    }

    void clickBesideTheEditorTakesItsChoice()
    {
        ThresholdEditor* editor = openEditor(5, 3);
        QVERIFY(editor);
        QTest::keyClick(box(editor, "mTimeCb"), Qt::Key_Home);
        QTest::mouseClick(editor, Qt::LeftButton, {}, {-40, -40});
        QTRY_VERIFY(!mFixture->view.findChild<ThresholdEditor*>());
        QCOMPARE(mFixture->model().record(5).entries[3], std::uint8_t{0xE0});
    }

    // The pop-up closes before a click arrives elsewhere, but not before what a timer calls.
    void openEditorCountsForWhatIsWritten_data()
    {
        QTest::addColumn<bool>("all");
        QTest::newRow("one sensor") << false;
        QTest::newRow("all sensors") << true;
    }

    void openEditorCountsForWhatIsWritten()
    {
        QFETCH(bool, all);
        for (int i = 0; i < 12; ++i)
            mFixture->socket.queueReply(1, {});
        ThresholdEditor* editor = openEditor(5, 3);
        QVERIFY(editor);
        QTest::keyClick(box(editor, "mTimeCb"), Qt::Key_Home);
        QVERIFY(all ? mFixture->view.onTransmitAll(true) : mFixture->view.onWriteThresholds(true));
        const auto& request = mFixture->socket.requests().at(all ? 5 : 0);
        QCOMPARE(request[2], std::uint8_t{5});
        QCOMPARE(request[6], std::uint8_t{0xE0});
        QTRY_VERIFY(!mFixture->view.findChild<ThresholdEditor*>());
    }

    void readWinsOverAnOpenEditor_data()
    {
        QTest::addColumn<bool>("all");
        QTest::newRow("one sensor") << false;
        QTest::newRow("all sensors") << true;
    }

    void readWinsOverAnOpenEditor()
    {
        QFETCH(bool, all);
        for (int i = 0; i < 12; ++i) {
            const auto sensor = static_cast<std::uint8_t>(all ? i : 5);
            mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(sensor));
        }
        ThresholdEditor* editor = openEditor(5, 3);
        QVERIFY(editor);
        QTest::keyClick(box(editor, "mTimeCb"), Qt::Key_Home);
        if (all)
            QVERIFY(mFixture->view.onReceiveAll(true));
        else
            mFixture->view.onReadThresholds(true);
        QTRY_VERIFY(!mFixture->view.findChild<ThresholdEditor*>());
        QCOMPARE(mFixture->model().record(5).entries[3], std::uint8_t{0x5F});
    }

    void openEditorCountsForTheSettingsFile()
    {
        ThresholdEditor* editor = openEditor(5, 3);
        QVERIFY(editor);
        QTest::keyClick(box(editor, "mTimeCb"), Qt::Key_Home);
        ThresholdViewFixture other;
        QCOMPARE(other.importError(section()), QString());
        QCOMPARE(other.model().record(5).entries[3], std::uint8_t{0xE0});
        QTRY_VERIFY(!mFixture->view.findChild<ThresholdEditor*>());
    }

    void openEditorDoesNotOverwriteWhatWasRead()
    {
        mFixture->socket.queueReply(1, ThresholdViewFixture::wireRecord(5, 0x5F));
        ThresholdEditor* editor = openEditor(5, 3);
        QVERIFY(editor);
        QTest::keyClick(box(editor, "mTimeCb"), Qt::Key_Home);
        mFixture->view.onReadThresholds(true);
        QTest::keyClick(box(editor, "mTimeCb"), Qt::Key_Return);
        QTRY_VERIFY(!mFixture->view.findChild<ThresholdEditor*>());
        QCOMPARE(mFixture->model().record(5).entries[3], std::uint8_t{0x5F});
    }

    void openEditorDoesNotOverwriteWhatWasImported()
    {
        ThresholdViewFixture other;
        other.model().setRecord(curve(5));
        ThresholdEditor* editor = openEditor(5, 3);
        QVERIFY(editor);
        QTest::keyClick(box(editor, "mTimeCb"), Qt::Key_Home);
        QCOMPARE(mFixture->importError(other.section("Thresholds")), QString());
        QTRY_VERIFY(!mFixture->view.findChild<ThresholdEditor*>());
        QCOMPARE(mFixture->model().record(5).entries, curve(5).entries);
    }

    void stateIsTheDivisionOfTableAndPlot()
    {
        mFixture->view.show();
        auto& splitter = mFixture->part<QSplitter>("mSplitter");
        splitter.setSizes({200, 400});
        const QList<int> sizes = splitter.sizes();
        const QByteArray state = mFixture->view.saveState();
        splitter.setSizes({400, 200});
        QVERIFY(mFixture->view.restoreState(state));
        QCOMPARE(splitter.sizes(), sizes);
        QVERIFY(!mFixture->view.restoreState("no state"));
    }

    void settingsFileRestoresAllSensors()
    {
        mFixture->model().setRecord(curve(2));
        mFixture->model().setScale(11, 0);
        const QString text = section();
        ThresholdViewFixture other;
        QCOMPARE(other.importError(text), QString());
        QCOMPARE(other.model().record(2).entries, curve(2).entries);
        QCOMPARE(other.model().record(11).scale, std::uint8_t{0});
    }

    void settingsFileHoldsTheFreshRecordsToo()
    {
        const QString first =
            "<Thresholds><Sensor id=\"0\"><![CDATA[AAAAAAAAAAAAAAAAAAI=]]></Sensor>";
        QVERIFY2(section().startsWith(first), qPrintable(section()));
        QCOMPARE(section().count("<Sensor "), 12);
    }

    void importKeepsTheSelectedSensorInThePlot()
    {
        mFixture->model().setRecord(curve(2));
        mFixture->model().setScale(2, 3);
        const QString text = section();
        ThresholdViewFixture other;
        other.setCurrent(2);
        QCOMPARE(other.importError(text), QString());
        QCOMPARE(other.scaleBox().currentText(), QString("100%"));
        mFixture->setCurrent(2);
        QCOMPARE(other.plot().grab().toImage(), mFixture->plot().grab().toImage());
    }

    void refusedImportChangesNothing()
    {
        const auto before = mFixture->model().records();
        const QString text = section().replace("id=\"11\"", "id=\"12\"").replace("AAI=", "AAE=");
        QCOMPARE(mFixture->importError(text), QString("wrong id value"));
        QCOMPARE(mFixture->model().records(), before);
    }

private:
    static orv::SensorThreshold curve(std::uint8_t sensor)
    {
        return {.valid = true,
                .sensorId = sensor,
                .entries = {0x5F, 0x5C, 0x56, 0x70, 0x6C, 0x8A, 0x88, 0x86, 0xA5, 0xA4, 0xA3, 0xC2},
                .scale = 2};
    }

    int orangePixels()
    {
        const QImage image = mFixture->plot().grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == QColor("orange");
        return count;
    }

    // The leftmost pixel of the white mark, or (-1, -1).
    QPoint brightWhite()
    {
        const QImage image = mFixture->plot().grab().toImage();
        for (int x = 0; x < image.width(); ++x)
            for (int y = 0; y < image.height(); ++y)
                if (image.pixelColor(x, y) == QColor(Qt::white))
                    return {x, y};
        return {-1, -1};
    }

    ThresholdEditor* openEditor(int row, int column) { return mFixture->openEditor(row, column); }

    static QComboBox* box(ThresholdEditor* editor, const char* name)
    {
        return editor->findChild<QComboBox*>(QLatin1String(name));
    }

    QString section() { return mFixture->section("Thresholds"); }

    std::unique_ptr<ThresholdViewFixture> mFixture;
};

QTEST_MAIN(ThresholdViewTest)
#include "test_threshold_view.moc"
