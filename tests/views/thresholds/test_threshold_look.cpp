#include "tests/support/Palettes.h"
#include "tests/support/clipped_widgets.h"
#include "tests/support/rendered_contrast.h"
#include "tests/support/screenshots.h"
#include "tests/views/thresholds/ThresholdViewFixture.h"
#include "views/thresholds/ThresholdEditor.h"

#include <QAbstractItemView>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QtTest>

namespace {

constexpr double kReadable = 4.5;
constexpr double kReadableSelection = 3;

// Rises where a sensor rings down and falls with the distance.
orv::SensorThreshold curve(std::uint8_t sensor)
{
    return {.valid = true,
            .sensorId = sensor,
            .entries = {0x5F, 0x5C, 0x56, 0x70, 0x6C, 0x8A, 0x88, 0x86, 0xA5, 0xA4, 0xA3, 0xC2},
            .scale = 2};
}

} // namespace

class ThresholdLookTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mFixture = std::make_unique<ThresholdViewFixture>();
        for (std::uint8_t sensor = 0; sensor < 12; ++sensor)
            mFixture->model().setRecord(curve(sensor));
    }

    void cleanup() { mFixture.reset(); }

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
        mFixture->view.show();
        mFixture->setCurrent(1, 3);
        QCOMPARE(inCell(0, 0).ground, palette.color(QPalette::Base));
        QVERIFY(inCell(0, 0).ratio >= kReadable);
        QCOMPARE(inCell(1, 3).ground, palette.color(QPalette::Highlight));
        QVERIFY(inCell(1, 3).ratio >= kReadableSelection);
    }

    void editorReads_data() { textsOfTheTableRead_data(); }

    void editorReads()
    {
        QFETCH(QPalette, palette);
        const PaletteScope scope(palette);
        ThresholdEditor* editor = mFixture->openEditor(2, 4);
        QVERIFY(editor);
        const QImage frame = editor->grab().toImage();
        const RenderedContrast whole = renderedContrast(frame, frame.rect());
        QCOMPARE(whole.ground, palette.color(QPalette::Window));
        for (QLabel* label : editor->findChildren<QLabel*>())
            QVERIFY(inWidget(*label).ratio >= kReadable);
        for (QComboBox* box : editor->findChildren<QComboBox*>())
            QVERIFY(inWidget(*box).ratio >= kReadable);
    }

    void listsOfTheEditorShowTheirHighlight_data() { textsOfTheTableRead_data(); }

    void listsOfTheEditorShowTheirHighlight()
    {
        QFETCH(QPalette, palette);
        const PaletteScope scope(palette);
        ThresholdEditor* editor = mFixture->openEditor(2, 4);
        QVERIFY(editor);
        for (QComboBox* box : editor->findChildren<QComboBox*>()) {
            const int current = box->currentIndex();
            box->showPopup();
            QTRY_VERIFY(box->view()->isVisible());
            const RenderedContrast highlighted = inList(*box->view(), current);
            const RenderedContrast other = inList(*box->view(), current + 1);
            QVERIFY(highlighted.ratio >= kReadableSelection);
            QVERIFY(other.ratio >= kReadable);
            QVERIFY(highlighted.ground.saturation() > other.ground.saturation() + 100);
            box->hidePopup();
        }
    }

    void noButtonIsCutInALowDock_data()
    {
        QTest::addColumn<int>("height");
        QTest::newRow("lowest") << 0;
        QTest::newRow("very low") << 140;
        QTest::newRow("at first") << 244;
    }

    void noButtonIsCutInALowDock()
    {
        QFETCH(int, height);
        mFixture->view.show();
        mFixture->view.resize(mFixture->view.minimumSizeHint().expandedTo({0, height}));
        QCoreApplication::processEvents();
        QCOMPARE(clippedChildren<QToolButton>(mFixture->view), QStringList());
        QVERIFY(mFixture->scaleBox().visibleRegion() == QRegion(mFixture->scaleBox().rect()));
    }

    void viewMayBeLow() { QVERIFY(mFixture->view.minimumSizeHint().height() <= 130); }

    void plotIsNeverFlat()
    {
        mFixture->view.show();
        for (const int height : {140, 244, 600}) {
            mFixture->view.resize(1280, height);
            QCoreApplication::processEvents();
            QVERIFY(mFixture->plot().height() >= 100);
        }
    }

    // Else the wheel over the table would move the whole content.
    void nothingScrollsButTheTableWhenBothHaveTheirRoom()
    {
        mFixture->view.resize(1280, 244);
        mFixture->view.show();
        QCoreApplication::processEvents();
        const auto& scrollArea = mFixture->part<QScrollArea>("mScrollArea");
        QVERIFY(!scrollArea.verticalScrollBar()->isVisible());
        QVERIFY(!scrollArea.horizontalScrollBar()->isVisible());
    }

    void guidePicturesShowCurvePeaksAndEditor()
    {
        mFixture->setCurrent(2, 4);
        for (const std::uint16_t timeOfFlight :
             std::initializer_list<std::uint16_t>{614, 665, 7987, 8038, 8089, 15052})
            mFixture->receiveEcho(2, timeOfFlight);
        mFixture->view.resize(1040, 720);
        ThresholdEditor* editor = mFixture->openEditor(2, 4);
        QVERIFY(editor);
        for (const int timeOfFlight : {614, 7987, 15052})
            QVERIFY(mFixture->plotHasStickAt(timeOfFlight));
        QVERIFY(!mFixture->plotHasStickAt(4000));
        QCOMPARE(editor->indexes(), QPoint(3, 12));
        saveScreenshot(mFixture->view, "thresholds");
        saveScreenshot(*editor, "thresholds-editor");
    }

private:
    static QRect inPixels(const QRect& rect)
    {
        const double ratio = qApp->devicePixelRatio();
        return {(QPointF(rect.topLeft()) * ratio).toPoint(), rect.size() * ratio};
    }

    RenderedContrast inCell(int row, int column)
    {
        const QRect cell = mFixture->table().visualRect(mFixture->model().index(row, column));
        const QImage picture = mFixture->table().viewport()->grab().toImage();
        return renderedContrast(picture, inPixels(cell.adjusted(3, 3, -3, -3)));
    }

    static RenderedContrast inList(QAbstractItemView& list, int item)
    {
        list.scrollTo(list.model()->index(item, 0));
        const QRect row = list.visualRect(list.model()->index(item, 0)).adjusted(3, 3, -3, -3);
        return renderedContrast(list.viewport()->grab().toImage(), inPixels(row));
    }

    static RenderedContrast inWidget(QWidget& widget)
    {
        const QImage picture = widget.grab().toImage();
        return renderedContrast(picture, picture.rect().adjusted(3, 3, -3, -3));
    }

    std::unique_ptr<ThresholdViewFixture> mFixture;
};

QTEST_MAIN(ThresholdLookTest)
#include "test_threshold_look.moc"
