#include "tests/support/hand_painted_freespace.h"
#include "tests/views/freespace/picture.h"
#include "tools/ecu_simulator/Freespace.h"

#include <QBackingStore>
#include <QtTest>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <optional>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

// What all twelve sensors see while a pedestrian walks round the vehicle.
orv::OrvFreespacePackage liveData(double seconds)
{
    return ecusim::freespacePackage(ecusim::defaultEcuState(),
                                    ecusim::Scene(ecusim::SceneKind::Car), 0, seconds);
}

// Of one channel of one pixel; 255 for pictures of different sizes.
int largestDifference(const QImage& a, const QImage& b)
{
    if (a.size() != b.size())
        return 255;
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb left = a.pixel(x, y);
            const QRgb right = b.pixel(x, y);
            largest = std::max({largest, std::abs(qRed(left) - qRed(right)),
                                std::abs(qGreen(left) - qGreen(right)),
                                std::abs(qBlue(left) - qBlue(right))});
        }
    }
    return largest;
}

// Gradients are rounded a little differently where a repaint starts elsewhere.
constexpr int kRounding = 3;

// By this process, as far as the C library tells; else nothing.
std::optional<std::size_t> allocatedBytes()
{
#ifdef __GLIBC__
    return mallinfo2().uordblks;
#else
    return std::nullopt;
#endif
}

class Picture : public OrvgFreespaceGraphicsView
{
public:
    Picture()
    {
        resize(900, 600);
        show();
        QCoreApplication::processEvents();
    }

    QImage painted() { return viewport()->grab().toImage(); }

    // What the event loop brought to the screen, one repaint of what changed after the other.
    QImage onScreen()
    {
        QCoreApplication::processEvents();
        const auto& window = dynamic_cast<const QImage&>(*backingStore()->paintDevice());
        const QRect place(viewport()->pos() * devicePixelRatio(),
                          viewport()->size() * devicePixelRatio());
        return window.copy(place);
    }

    int repaints() const { return mRepaints; }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        ++mRepaints;
        OrvgFreespaceGraphicsView::paintEvent(event);
    }

private:
    int mRepaints = 0;

public:
    QImage paintedByHand(const orv::OrvFreespacePackage& package)
    {
        QImage image(viewport()->size() * devicePixelRatio(), QImage::Format_RGB32);
        image.setDevicePixelRatio(devicePixelRatio());
        image.fill(QColor(240, 240, 250));
        QPainter painter(&image);
        painter.setTransform(viewportTransform());
        hand_painted::picture(painter, package);
        return image;
    }
};

} // namespace

class FreespacePixelsTest : public QObject
{
    Q_OBJECT

private slots:
    void viewShowsWhatIsPaintedByHand()
    {
        Picture view;
        view.onNewFreespacePackage(liveData(3));
        QCOMPARE(view.painted(), view.paintedByHand(liveData(3)));
    }

    void repaintsOfWhatChangedLeaveNothingBehind()
    {
        Picture view;
        for (int second = 0; second < 12; ++second) {
            orv::OrvFreespacePackage package = liveData(second);
            if (second % 3 == 1)
                package.entries.resize(4);
            view.onNewFreespacePackage(package);
            QVERIFY(largestDifference(view.onScreen(), view.painted()) <= kRounding);
        }
        view.onSetEditMode(true);
        QVERIFY(largestDifference(view.onScreen(), view.painted()) <= kRounding);
        QTest::keyClick(&view, Qt::Key_PageDown);
        QTest::keyClick(&view, Qt::Key_Up, Qt::ShiftModifier);
        QVERIFY(largestDifference(view.onScreen(), view.painted()) <= kRounding);
    }

    void packageIsOneRepaint()
    {
        Picture view;
        const int before = view.repaints();
        for (int second = 0; second < 10; ++second) {
            view.onNewFreespacePackage(liveData(second));
            QCoreApplication::processEvents();
        }
        QCOMPARE(view.repaints(), before + 10);
    }

    void hiddenViewPaintsNothingAndShowsTheLatestPackageThen()
    {
        Picture view;
        view.hide();
        const int before = view.repaints();
        for (int second = 0; second < 10; ++second) {
            view.onNewFreespacePackage(liveData(second));
            QCoreApplication::processEvents();
        }
        QCOMPARE(view.repaints(), before);
        view.show();
        QCOMPARE(view.painted(), view.paintedByHand(liveData(9)));
    }

    void packagesDoNotFillTheMemory_data()
    {
        QTest::addColumn<bool>("shown");
        QTest::newRow("shown") << true;
        QTest::newRow("hidden") << false;
    }

    void packagesDoNotFillTheMemory()
    {
        QFETCH(bool, shown);
        Picture view;
        view.setVisible(shown);
        const std::array packages = {liveData(1), liveData(2), liveData(3)};
        const auto take = [&](std::size_t count) {
            for (std::size_t i = 0; i < count; ++i) {
                view.onNewFreespacePackage(packages[i % packages.size()]);
                if (i % 100 == 0)
                    QCoreApplication::processEvents();
            }
        };
        take(500);
        const auto before = allocatedBytes();
        if (!before)
            QSKIP("the C library does not tell what is allocated");
        take(5000);
        QVERIFY(*allocatedBytes() < *before + 100'000);
    }
};

QTEST_MAIN(FreespacePixelsTest)
#include "test_freespace_pixels.moc"
