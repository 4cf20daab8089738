#include "views/live/EchoCellDelegate.h"
#include "views/live/echo_texts.h"

#include <QApplication>
#include <QHeaderView>
#include <QPalette>
#include <QTableWidget>
#include <QtTest>

#include <algorithm>

namespace {

// Five echoes, painted by the style.
class StyledTable : public QTableWidget
{
public:
    explicit StyledTable(int width) : QTableWidget(5, 2)
    {
        setSelectionMode(QAbstractItemView::NoSelection);
        horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
        resize(width, 180);
        for (int row = 0; row < 5; ++row) {
            for (int column = 0; column < 2; ++column) {
                setItem(row, column, new QTableWidgetItem);
                item(row, column)->setTextAlignment(Qt::AlignCenter);
            }
        }
    }

    void showEchoes(int first)
    {
        for (int row = 0; row < 5; ++row) {
            const EchoTexts texts =
                echoTexts({.magnitude = static_cast<std::uint8_t>((first + row) % 16),
                           .timeOfFlight = static_cast<std::uint16_t>(700 * first + 51 * row)});
            item(row, 0)->setText(texts.timeOfFlight);
            item(row, 1)->setText(texts.magnitude);
        }
    }

    QImage picture() { return grab().toImage(); }

    // From the first to the last column of a cell that is not of one colour.
    int inkWidth(int row, int column)
    {
        const QImage cell = viewport()->grab(visualItemRect(item(row, column))).toImage();
        int first = cell.width();
        int last = 0;
        for (int x = 0; x < cell.width() - 1; ++x) { // the last one is the grid's
            for (int y = 0; y < cell.height() - 1; ++y) {
                if (cell.pixel(x, y) != cell.pixel(0, 0)) {
                    first = std::min(first, x);
                    last = x;
                }
            }
        }
        return last - first + 1;
    }
};

class Table : public StyledTable
{
public:
    explicit Table(int width) : StyledTable(width) { setItemDelegate(new EchoCellDelegate(this)); }
};

} // namespace

class EchoCellDelegateTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QApplication::setPalette(QPalette()); }

    void cellsLookAsTheStylePaintsThem_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<QColor>("window");
        for (const int width : {196, 239, 240, 401}) {
            QTest::addRow("%d pixels, light", width) << width << QColor(239, 239, 239);
            QTest::addRow("%d pixels, dark", width) << width << QColor(45, 45, 48);
        }
    }

    void cellsLookAsTheStylePaintsThem()
    {
        QFETCH(int, width);
        QFETCH(QColor, window);
        QPalette palette(window);
        palette.setColor(QPalette::Text, Qt::darkCyan);
        QApplication::setPalette(palette);
        Table table(width);
        StyledTable expected(width);
        for (int first = 0; first < 90; first += 7) {
            table.showEchoes(first);
            expected.showEchoes(first);
            QCOMPARE(table.picture(), expected.picture());
        }
    }

    void keyboardsCellIsMarked()
    {
        Table table(240);
        table.show();
        table.showEchoes(5);
        const QImage before = table.picture();
        table.setCurrentCell(2, 1);
        table.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&table));
        table.setFocus();
        const QRect cell = table.visualItemRect(table.item(2, 1));
        QTRY_VERIFY(table.picture() != before);
        QVERIFY(table.viewport()->grab(cell).toImage().pixel(0, 0) !=
                table.viewport()->grab(cell.translated(0, cell.height())).toImage().pixel(0, 0));
    }

    // The style would leave out the level.
    void textThatJustFitsIsShownWhole()
    {
        Table table(300);
        const QString text = "131 (0.87)";
        const int width = table.fontMetrics().horizontalAdvance(text);
        table.horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        table.setColumnWidth(1, width + 4);
        table.item(0, 1)->setText(text);
        QVERIFY(table.inkWidth(0, 1) >= width - 4);
    }
};

QTEST_MAIN(EchoCellDelegateTest)
#include "test_echo_cell_delegate.moc"
