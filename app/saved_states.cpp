#include "app/saved_states.h"

#include "app/StateReader.h"

#include <QRect>
#include <QSize>

namespace {

// --- QWidget::saveGeometry()

constexpr quint32 kGeometryMagic = 0x1D9D0CB;
constexpr quint16 kGeometryMajorVersion = 3;
constexpr quint16 kGeometryMinorVersion = 0;
constexpr int kMaxScreens = 64;

// What is left of a window on the desktop has to be enough to take hold of it.
constexpr int kLeastVisible = 100;

bool isRect(const QRect& rect)
{
    const auto isPosition = [](int value) { return value >= -kMaxExtent && value <= kMaxExtent; };
    return isPosition(rect.left()) && isPosition(rect.top()) && isPosition(rect.right()) &&
           isPosition(rect.bottom()) && rect.isValid();
}

bool isPlace(const QRect& rect, const QRect& desktop, const QSize& largest)
{
    if (!isRect(rect) || rect.width() > largest.width() || rect.height() > largest.height())
        return false;
    const QRect visible = rect & desktop;
    return visible.isEmpty() ||
           (visible.width() >= kLeastVisible && visible.height() >= kLeastVisible);
}

bool nextIsFlag(StateReader& reader, Qt::WindowState flag)
{
    const auto value = reader.next<quint8>();
    return value == 0 || value == flag;
}

// --- QSplitter::saveState()

// Marker, version and count stand before the sizes; what the splitter is like, behind them.
constexpr int kBytesBeforeSizes = 12;
constexpr int kBytesBehindSizes = 11;

} // namespace

bool isSoundGeometry(const QByteArray& geometry, const QRect& desktop, const QSize& largest)
{
    StateReader reader(geometry);
    const bool isKnown = reader.nextIs(kGeometryMagic) && reader.nextIs(kGeometryMajorVersion) &&
                         reader.nextIs(kGeometryMinorVersion);
    const bool isPlaced = isRect(reader.next<QRect>()) &&
                          isPlace(reader.next<QRect>(), desktop, largest) &&
                          reader.nextIsWithin(0, kMaxScreens - 1);
    const bool isState =
        nextIsFlag(reader, Qt::WindowMaximized) && nextIsFlag(reader, Qt::WindowFullScreen);
    const bool isSized =
        reader.nextIsWithin(0, kMaxExtent) && isPlace(reader.next<QRect>(), desktop, largest);
    return isKnown && isPlaced && isState && isSized && reader.isComplete();
}

bool isSoundSplitterState(const QByteArray& state, const QByteArray& own)
{
    const int sizesEnd = int(own.size()) - kBytesBehindSizes;
    if (state.size() != own.size() || state.mid(sizesEnd) != own.mid(sizesEnd) ||
        state.left(kBytesBeforeSizes) != own.left(kBytesBeforeSizes))
        return false;
    StateReader sizes(state.left(sizesEnd).mid(kBytesBeforeSizes));
    // A section that was never shown has -1.
    for (int offset = kBytesBeforeSizes; offset < sizesEnd; offset += int(sizeof(qint32))) {
        if (!sizes.nextIsWithin(-1, kMaxExtent))
            return false;
    }
    return true;
}
