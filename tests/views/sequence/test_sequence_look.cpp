#include "tests/support/Palettes.h"
#include "tests/support/clipped_widgets.h"
#include "tests/support/rendered_contrast.h"
#include "tests/support/screenshots.h"
#include "tests/views/sequence/SequenceViewFixture.h"

#include <QAbstractItemView>
#include <QHeaderView>
#include <QScrollBar>

namespace {

constexpr double kReadable = 4.5;
constexpr double kReadableSelection = 3;

const QColor kModeColor(200, 205, 200);
const QColor kActiveColor(250, 220, 180);
const QColor kPassiveColor(200, 200, 250);

} // namespace

class SequenceLookTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mFixture = std::make_unique<SequenceViewFixture>();
        mFixture->view.resize(1300, 320); // wide enough for all columns
        mFixture->model().setSteps(SequenceViewFixture::steps(6));
    }

    void cleanup() { mFixture.reset(); }

    void textsReadOnTheirColours_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("light") << lightPalette();
        QTest::newRow("dark") << darkPalette();
    }

    void textsReadOnTheirColours()
    {
        QFETCH(QPalette, palette);
        const PaletteScope scope(palette);
        mFixture->view.show();
        expectReadable(2, 0, kModeColor);
        expectReadable(2, 3, kActiveColor);
        expectReadable(2, 4, kPassiveColor);
        expectReadable(2, 12, palette.color(QPalette::Base));
    }

    void listOfTheEditorReads_data() { textsReadOnTheirColours_data(); }

    void listOfTheEditorReads()
    {
        QFETCH(QPalette, palette);
        const PaletteScope scope(palette);
        mFixture->doubleClick(2, 3); // "Active"
        QAbstractItemView* list = mFixture->editor()->view();
        QTRY_VERIFY(list->isVisible());
        QVERIFY(contrastInList(*list, 0).ratio >= kReadable);
        QVERIFY(contrastInList(*list, 1).ratio >= kReadableSelection);
        QCOMPARE(contrastInList(*list, 2).ground, contrastInList(*list, 0).ground);
        QVERIFY(contrastInList(*list, 1).ground != contrastInList(*list, 0).ground);
    }

    // The longest word, and what the style keeps free on both sides of it.
    void columnsHaveRoomForTheLongestWord()
    {
        const QTableView& table = mFixture->table();
        const int margin = table.style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1;
        QCOMPARE(table.horizontalHeader()->minimumSectionSize(),
                 table.fontMetrics().horizontalAdvance("Disabled") + 2 * margin + 2);
    }

    void currentRowIsFramedWithoutFocus()
    {
        mFixture->view.show();
        mFixture->button("readMseqTb").setFocus();
        for (int row = 0; row < 6; ++row)
            QVERIFY(!isFramed(row));
        mFixture->setCurrent(3, 5);
        QVERIFY(!mFixture->table().hasFocus());
        for (int row = 0; row < 6; ++row)
            QCOMPARE(isFramed(row), row == 3);
    }

    void frameFollowsTheCurrentRow()
    {
        mFixture->view.show();
        mFixture->setCurrent(3, 5);
        mFixture->model().insertEmptyStep(0);
        QVERIFY(isFramed(4) && !isFramed(3));
        mFixture->view.cloneStep();
        QVERIFY(isFramed(5) && !isFramed(4));
        mFixture->view.removeStep();
        const int current = mFixture->table().currentIndex().row();
        QVERIFY(current >= 0);
        for (int row = 0; row < mFixture->model().rowCount(); ++row)
            QCOMPARE(isFramed(row), row == current);
    }

    // What a grab renders anew says nothing of what is painted on the screen.
    void wholeRowIsRepaintedWhenItBecomesCurrent()
    {
        mFixture->view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&mFixture->view));
        mFixture->setCurrent(1, 5);
        QCoreApplication::processEvents();
        PaintedRegion painted(mFixture->table().viewport());
        mFixture->setCurrent(4, 5);
        QTRY_VERIFY(!painted.region().isEmpty());
        for (const int row : {1, 4})
            for (const int column : {0, 5, 12})
                QVERIFY(painted.region().contains(cell(row, column)));
    }

    void noButtonIsCutInALowDock()
    {
        mFixture->view.show();
        for (const int height : {mFixture->view.minimumSizeHint().height(), 140, 244}) {
            mFixture->view.resize(600, height);
            QCoreApplication::processEvents();
            QCOMPARE(clippedChildren<QToolButton>(mFixture->view), QStringList());
        }
    }

    void guidePictureShowsTheWordsAndAnEditor()
    {
        mFixture->model().setData(mFixture->model().index(2, 0), 1);
        mFixture->model().setData(mFixture->model().index(4, 0), 2);
        mFixture->view.resize(1190, 320);
        mFixture->view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&mFixture->view));
        QTRY_VERIFY(!mFixture->table().horizontalScrollBar()->isVisible());
        const QComboBox* editor = mFixture->openEditor(3, 2);
        QVERIFY(editor);
        QCOMPARE(editor->currentText(), QString("Disabled"));
        const QImage picture = mFixture->view.grab().toImage();
        const QPoint corner = mFixture->table().viewport()->mapTo(&mFixture->view, QPoint());
        const auto ground = [&](int row, int column) {
            return renderedContrast(picture, inPixels(cell(row, column).translated(corner))).ground;
        };
        QCOMPARE(ground(0, 1), kActiveColor);
        QCOMPARE(ground(0, 2), kPassiveColor);
        QCOMPARE(ground(4, 0), kModeColor);
        QCOMPARE(mFixture->text(4, 0), QString("BPSK1"));
        saveScreenshot(mFixture->view, "measurement-sequence");
    }

private:
    // Keeps what is painted of a widget.
    class PaintedRegion : public QObject
    {
    public:
        explicit PaintedRegion(QWidget* widget) { widget->installEventFilter(this); }

        const QRegion& region() const { return mRegion; }

        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() == QEvent::Paint)
                mRegion += static_cast<QPaintEvent*>(event)->region();
            return false;
        }

    private:
        QRegion mRegion;
    };

    // The inner part of a cell, without grid and frame.
    QRect cell(int row, int column)
    {
        return mFixture->table()
            .visualRect(mFixture->model().index(row, column))
            .adjusted(3, 3, -3, -3);
    }

    static QRect inPixels(const QRect& rect)
    {
        const double ratio = qApp->devicePixelRatio();
        return {(QPointF(rect.topLeft()) * ratio).toPoint(), rect.size() * ratio};
    }

    void expectReadable(int row, int column, const QColor& ground)
    {
        const QImage picture = mFixture->table().viewport()->grab().toImage();
        const RenderedContrast found = renderedContrast(picture, inPixels(cell(row, column)));
        QCOMPARE(found.ground, ground);
        QVERIFY2(found.ratio >= kReadable, qPrintable(QString::number(found.ratio)));
    }

    static RenderedContrast contrastInList(QAbstractItemView& list, int item)
    {
        const QRect row = list.visualRect(list.model()->index(item, 0)).adjusted(3, 3, -3, -3);
        return renderedContrast(list.viewport()->grab().toImage(), inPixels(row));
    }

    // Whether the row is framed on all sides.
    bool isFramed(int row)
    {
        const QImage picture = mFixture->table().viewport()->grab().toImage();
        const QRect first = inPixels(mFixture->table().visualRect(mFixture->model().index(row, 0)));
        const QRect last = inPixels(mFixture->table().visualRect(mFixture->model().index(row, 12)));
        const QColor color = mFixture->table().palette().color(QPalette::Highlight);
        const auto isColored = [&](QPoint point) { return picture.pixelColor(point) == color; };
        const int top = std::clamp(first.top(), 0, picture.height() - 1);
        const int bottom = std::clamp(first.bottom(), 0, picture.height() - 1);
        return isColored({first.left() + 9, top}) && isColored({first.left() + 9, bottom}) &&
               isColored({last.left() + 9, top}) && isColored({last.left() + 9, bottom}) &&
               isColored({first.left(), first.center().y()}) &&
               isColored({std::min(last.right(), picture.width() - 1), last.center().y()});
    }

    std::unique_ptr<SequenceViewFixture> mFixture;
};

QTEST_MAIN(SequenceLookTest)
#include "test_sequence_look.moc"
