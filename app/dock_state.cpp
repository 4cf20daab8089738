#include "app/StateReader.h"
#include "app/saved_states.h"

#include <QRect>
#include <QSize>

#include <optional>
#include <set>

namespace {

// The markers in QMainWindow::saveState().
constexpr qint32 kStateMarker = 0xFF;
constexpr quint8 kDocksMarker = 0xFD;
constexpr quint8 kToolBarsMarker = 0xFC;
constexpr quint8 kTabsMarker = 0xFA;
constexpr quint8 kWidgetMarker = 0xFB;
constexpr quint8 kSequenceMarker = 0xFC;

constexpr qint32 kVersion = 0;
constexpr quint8 kDockShown = 1;
constexpr quint8 kDockFloating = 2;
constexpr quint8 kToolBarShown = 1;
constexpr quint8 kToolBarVertical = 2;

constexpr int kAreas = 4;
constexpr int kMaxItems = 64;
constexpr int kMaxDepth = 8;
constexpr int kMaxNameBytes = 512;

/// Goes through the state as Qt does, and stops at the first thing that no window ever saved.
class DockStateCheck
{
public:
    DockStateCheck(const QByteArray& state, const QRect& desktop)
        : mReader(state), mDesktop(desktop)
    {}

    bool passes()
    {
        return mReader.nextIs(kStateMarker) && mReader.nextIs(kVersion) && passDocks() &&
               passToolBars() && mReader.isComplete();
    }

    /// Of the docks and tool bars that it has passed.
    const std::set<QByteArray>& names() const { return mNames; }

private:
    bool passName();
    bool passDocks();
    bool passDockArea();
    bool passItems(int depth);
    bool passItem(int depth);
    bool passDock();
    bool passFloatingRect();
    bool passDockedPlace();
    bool passSize();
    bool passCorners();

    bool passToolBars();
    bool passToolBarLine();
    bool passToolBar();
    bool passToolBarRect();

    bool fitsOnDesktop(const QRect& rect) const
    {
        return rect.isValid() && rect.width() <= mDesktop.width() &&
               rect.height() <= mDesktop.height();
    }

    /// Passes over as many parts as the next number says.
    template<typename PassPart>
    bool passCounted(int maximum, PassPart passPart)
    {
        const auto count = mReader.next<qint32>();
        bool isSound = count >= 0 && count <= maximum;
        for (qint32 part = 0; part < count && isSound; ++part)
            isSound = passPart();
        return isSound;
    }

    StateReader mReader;
    QRect mDesktop;
    std::set<QByteArray> mNames;
};

bool DockStateCheck::passName()
{
    const std::optional<QByteArray> name = mReader.nextText(kMaxNameBytes);
    return name && mNames.insert(*name).second;
}

bool DockStateCheck::passDocks()
{
    return mReader.nextIs(kDocksMarker) && passCounted(kAreas, [this] { return passDockArea(); }) &&
           passSize() && passCorners();
}

bool DockStateCheck::passDockArea()
{
    return mReader.nextIsWithin(0, kAreas - 1) && passSize() && passItems(0);
}

// Side by side or in tabs, of which one is in front.
bool DockStateCheck::passItems(int depth)
{
    const auto marker = mReader.next<quint8>();
    if (depth > kMaxDepth || (marker != kTabsMarker && marker != kSequenceMarker))
        return false;
    if (marker == kTabsMarker && !mReader.nextIsWithin(-1, kMaxItems - 1))
        return false;
    const auto orientation = mReader.next<quint8>();
    if (orientation != Qt::Horizontal && orientation != Qt::Vertical)
        return false;
    return passCounted(kMaxItems, [this, depth] { return passItem(depth); });
}

bool DockStateCheck::passItem(int depth)
{
    const auto marker = mReader.next<quint8>();
    if (marker == kWidgetMarker)
        return passDock();
    return marker == kSequenceMarker && passDockedPlace() && passItems(depth + 1);
}

bool DockStateCheck::passDock()
{
    if (!passName())
        return false;
    const auto flags = mReader.next<quint8>();
    if ((flags & ~(kDockShown | kDockFloating)) != 0)
        return false;
    return (flags & kDockFloating) != 0 ? passFloatingRect() : passDockedPlace();
}

// Wherever it is, on a screen that is gone for one: Qt moves a dock onto a screen that is there,
// but no tool bar.
bool DockStateCheck::passFloatingRect()
{
    const auto x = mReader.next<qint32>();
    const auto y = mReader.next<qint32>();
    const auto width = mReader.next<qint32>();
    const auto height = mReader.next<qint32>();
    const auto isExtent = [](qint32 value) { return value >= -kMaxExtent && value <= kMaxExtent; };
    return isExtent(x) && isExtent(y) && isExtent(width) && isExtent(height) &&
           fitsOnDesktop({x, y, width, height});
}

// Position and size along the area; Qt asks the dock itself for the smallest and the largest size.
bool DockStateCheck::passDockedPlace()
{
    const bool isPlaced =
        mReader.nextIsWithin(-1, kMaxExtent) && mReader.nextIsWithin(-1, kMaxExtent);
    mReader.next<qint32>();
    mReader.next<qint32>();
    return isPlaced;
}

bool DockStateCheck::passSize()
{
    const auto size = mReader.next<QSize>();
    return size.width() >= -1 && size.width() <= kMaxExtent && size.height() >= -1 &&
           size.height() <= kMaxExtent;
}

bool DockStateCheck::passCorners()
{
    const auto isOneOf = [this](Qt::DockWidgetArea first, Qt::DockWidgetArea second) {
        const auto area = mReader.next<qint32>();
        return area == first || area == second;
    };
    return isOneOf(Qt::TopDockWidgetArea, Qt::LeftDockWidgetArea) &&
           isOneOf(Qt::TopDockWidgetArea, Qt::RightDockWidgetArea) &&
           isOneOf(Qt::BottomDockWidgetArea, Qt::LeftDockWidgetArea) &&
           isOneOf(Qt::BottomDockWidgetArea, Qt::RightDockWidgetArea);
}

bool DockStateCheck::passToolBars()
{
    return mReader.nextIs(kToolBarsMarker) &&
           passCounted(kMaxItems, [this] { return passToolBarLine(); });
}

bool DockStateCheck::passToolBarLine()
{
    return mReader.nextIsWithin(0, kAreas - 1) &&
           passCounted(kMaxItems, [this] { return passToolBar(); });
}

bool DockStateCheck::passToolBar()
{
    if (!passName())
        return false;
    const auto flags = mReader.next<quint8>();
    return (flags & ~kToolBarVertical) == kToolBarShown && mReader.nextIsWithin(-1, kMaxExtent) &&
           mReader.nextIsWithin(-1, kMaxExtent) && passToolBarRect();
}

// Packed into two words: a bit for floating, then x and width, y and height, x and y shifted to
// the positive numbers.
bool DockStateCheck::passToolBarRect()
{
    constexpr int kShift = 0x7FFF;
    constexpr quint32 kMask = 0xFFFF;
    auto horizontal = mReader.next<quint32>();
    const auto vertical = mReader.next<quint32>();
    if ((horizontal & 1) == 0)
        return true;
    horizontal >>= 1;
    const QRect rect(int(horizontal & kMask) - kShift, int(vertical & kMask) - kShift,
                     int(horizontal >> 16), int(vertical >> 16));
    return fitsOnDesktop(rect) && mDesktop.contains(rect.center());
}

} // namespace

bool isSoundDockState(const QByteArray& state, const QByteArray& own, const QRect& desktop)
{
    DockStateCheck check(state, desktop);
    DockStateCheck ownCheck(own, desktop);
    return ownCheck.passes() && check.passes() && check.names() == ownCheck.names();
}
