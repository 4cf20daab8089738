#include "views/live/OrvgLiveView.h"
#include "views/live/OrvgSignalLineWidget.h"
#include "views/live/OrvgSignalWidget.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QRadioButton>
#include <QScrollArea>
#include <QSplitter>
#include <QTableWidget>
#include <QtTest>

namespace {

QStringList texts(const QTableWidget& table, Qt::Orientation orientation)
{
    QStringList headers;
    const int count = orientation == Qt::Horizontal ? table.columnCount() : table.rowCount();
    for (int section = 0; section < count; ++section)
        headers.append(table.model()->headerData(section, orientation).toString());
    return headers;
}

} // namespace

class LiveViewLayoutTest : public QObject
{
    Q_OBJECT

private slots:
    void viewOpensAsSignals()
    {
        const OrvgLiveView view;
        QCOMPARE(view.windowTitle(), QString("Signals"));
        QCOMPARE(view.size(), QSize(1037, 388));
        QCOMPARE(view.minimumSize(), QSize(50, 50));
    }

    void timelinesTakeFourTimesTheRoomOfTheLargePicture()
    {
        OrvgLiveView view;
        auto* splitter = view.findChild<QSplitter*>("mSplitter");
        QCOMPARE(splitter->orientation(), Qt::Horizontal);
        QVERIFY(!splitter->childrenCollapsible());
        QCOMPARE(splitter->widget(0)->objectName(), QString("timeline"));
        QCOMPARE(splitter->widget(0)->sizePolicy().horizontalStretch(), 4);
        QCOMPARE(splitter->widget(1)->objectName(), QString("signalInfo"));
        QCOMPARE(splitter->widget(1)->sizePolicy().horizontalStretch(), 1);
        QCOMPARE(splitter->widget(1)->minimumSize(), QSize(200, 0));
    }

    void splitterStateIsKept()
    {
        OrvgLiveView view;
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        auto* splitter = view.findChild<QSplitter*>("mSplitter");
        splitter->setSizes({600, 400});
        const QList<int> sizes = splitter->sizes();
        const QByteArray state = view.saveState();
        splitter->setSizes({800, 200});
        QVERIFY(splitter->sizes() != sizes);
        QVERIFY(view.restoreState(state));
        QCOMPARE(splitter->sizes(), sizes);
    }

    void foreignStateIsRefused()
    {
        OrvgLiveView view;
        const QList<int> sizes = view.findChild<QSplitter*>("mSplitter")->sizes();
        QVERIFY(!view.restoreState({}));
        QVERIFY(!view.restoreState("no state"));
        QCOMPARE(view.findChild<QSplitter*>("mSplitter")->sizes(), sizes);
    }

    void eachSensorHasARadioButtonBeforeItsTimeline()
    {
        OrvgLiveView view;
        auto* rows = view.findChild<QVBoxLayout*>("verticalLayout");
        QCOMPARE(rows->count(), 13);
        QCOMPARE(rows->spacing(), 2);
        for (int sensor = 0; sensor < 12; ++sensor) {
            const auto* row = qobject_cast<QHBoxLayout*>(rows->itemAt(sensor)->layout());
            QCOMPARE(row->count(), 4);
            auto* button = qobject_cast<QRadioButton*>(row->itemAt(1)->widget());
            QCOMPARE(button->text(), QString::number(sensor + 1));
            QCOMPARE(button->objectName(), QString::number(sensor));
            QCOMPARE(button->minimumWidth(), 40);
            QCOMPARE(button->isChecked(), sensor == 0);
            QVERIFY(qobject_cast<OrvgSignalLineWidget*>(row->itemAt(3)->widget()));
            QCOMPARE(row->stretch(1), 1);
            QCOMPARE(row->stretch(3), 50);
        }
    }

    void spacerClosesTheTimelines()
    {
        OrvgLiveView view;
        auto* rows = view.findChild<QVBoxLayout*>("verticalLayout");
        QSpacerItem* spacer = rows->itemAt(12)->spacerItem();
        QVERIFY(spacer);
        QCOMPARE(spacer->sizeHint(), QSize(20, 40));
        QCOMPARE(spacer->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
        QCOMPARE(spacer->sizePolicy().horizontalPolicy(), QSizePolicy::Minimum);
    }

    void timelinesScrollAndFollowTheWidth()
    {
        OrvgLiveView view;
        auto* area = view.findChild<QScrollArea*>("scrollArea");
        QVERIFY(area->widgetResizable());
        QCOMPARE(area->minimumSize(), QSize(200, 0));
        QCOMPARE(area->widget()->objectName(), QString("scrollAreaWidgetContents"));
    }

    void tableShowsFiveEmptyRows()
    {
        OrvgLiveView view;
        auto* table = view.findChild<QTableWidget*>("echoTable");
        QCOMPARE(texts(*table, Qt::Horizontal),
                 (QStringList{"Time of flight (mSec)", "Magnitude"}));
        QCOMPARE(texts(*table, Qt::Vertical), (QStringList{"1", "2", "3", "4", "5"}));
        for (int row = 0; row < 5; ++row) {
            for (int column = 0; column < 2; ++column) {
                QCOMPARE(table->item(row, column)->text(), QString());
                QVERIFY(table->item(row, column)->textAlignment() & Qt::AlignHCenter);
            }
        }
    }

    void tableFillsItsRoomAndAcceptsNoEditing()
    {
        OrvgLiveView view;
        auto* table = view.findChild<QTableWidget*>("echoTable");
        QCOMPARE(table->horizontalHeader()->sectionResizeMode(0), QHeaderView::Stretch);
        QCOMPARE(table->verticalHeader()->sectionResizeMode(0), QHeaderView::Stretch);
        QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
        QCOMPARE(table->selectionMode(), QAbstractItemView::NoSelection);
        QCOMPARE(table->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
        QCOMPARE(table->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
        QCOMPARE(table->maximumHeight(), 180);
    }

    void headersStayReadableInTheNarrowestPane()
    {
        OrvgLiveView view;
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        view.findChild<QSplitter*>("mSplitter")->setSizes({800, 200});
        QCoreApplication::processEvents();
        const QHeaderView* header = view.findChild<QTableWidget*>("echoTable")->horizontalHeader();
        const QRect section(0, 0, header->sectionSize(0), header->height());
        const QRect text = header->fontMetrics().boundingRect(
            section, Qt::AlignCenter | Qt::TextWordWrap, "Time of flight (mSec)");
        QVERIFY(section.contains(text));
    }

    void allFiveRowsAreInSight()
    {
        OrvgLiveView view;
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        auto* table = view.findChild<QTableWidget*>("echoTable");
        const QRect lastCell = table->visualItemRect(table->item(4, 1));
        QVERIFY(table->viewport()->rect().contains(lastCell));
        QVERIFY(lastCell.height() >= table->fontMetrics().lineSpacing());
    }

    void largePictureKeepsItsHeightOnASmallScreen_data()
    {
        QTest::addColumn<int>("viewHeight");
        QTest::addColumn<int>("tableHeight");
        QTest::newRow("table in full") << 290 << 180;
        QTest::newRow("table scrolls") << 200 << 90;
        QTest::newRow("table all but gone") << 115 << 5;
    }

    void largePictureKeepsItsHeightOnASmallScreen()
    {
        QFETCH(int, viewHeight);
        OrvgLiveView view;
        view.resize(1037, viewHeight);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QCOMPARE(view.findChild<OrvgSignalWidget*>("signalWidget")->height(), 80);
        QTEST(view.findChild<QTableWidget*>("echoTable")->height(), "tableHeight");
    }

    void largePictureStandsAboveTheTable()
    {
        OrvgLiveView view;
        auto* pane = view.findChild<QVBoxLayout*>("verticalLayout_3");
        QCOMPARE(pane->itemAt(0)->widget()->objectName(), QString("signalWidget"));
        QCOMPARE(pane->itemAt(1)->widget()->objectName(), QString("echoTable"));
        QVERIFY(!view.findChild<OrvgSignalWidget*>("signalWidget")->isClickable());
    }

    void tabKeyLeavesTheTable()
    {
        OrvgLiveView view;
        view.show();
        view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&view));
        auto* table = view.findChild<QTableWidget*>("echoTable");
        table->setFocus();
        QTest::keyClick(table, Qt::Key_Tab);
        QVERIFY(!table->hasFocus());
    }

    void screenReaderNamesEveryPart()
    {
        OrvgLiveView view;
        QCOMPARE(view.findChild<QRadioButton*>("0")->accessibleName(), QString("Sensor 1"));
        QCOMPARE(view.findChild<QRadioButton*>("11")->accessibleName(), QString("Sensor 12"));
        const auto lines = view.findChildren<OrvgSignalLineWidget*>();
        QCOMPARE(lines.last()->accessibleName(), QString("Timeline of sensor 12"));
        QVERIFY(!view.findChild<QWidget*>("signalWidget")->accessibleName().isEmpty());
        QVERIFY(!view.findChild<QWidget*>("echoTable")->accessibleName().isEmpty());
    }
};

QTEST_MAIN(LiveViewLayoutTest)
#include "test_live_view_layout.moc"
