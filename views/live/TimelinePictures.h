#pragma once

#include <QPixmap>

#include <array>
#include <cstddef>
#include <vector>

class OrvgSignalWidget;

/// The slots of a timeline as they were painted last: a result costs the painting of one slot, the
/// others are there already.
class TimelinePictures
{
public:
    /// Forgets all pictures; there are `count` slots from now on.
    void reset(int count);

    /// Forgets how the slots look, but not how many there are.
    void forget();

    /// Each slot takes over the picture of its right neighbour; the last one has none yet.
    void shiftLeft();

    /// What `slot`, which is at `position` from the left and not empty in size, looks like at a
    /// whole device pixel ratio. It is painted unless it was in this size before.
    const QPixmap& picture(int position, const OrvgSignalWidget& slot);

private:
    struct Picture
    {
        QPixmap pixmap;
        bool isPainted = false;
    };
    // The widths of slots differ by a pixel at most: one picture for even and one for odd widths.
    using SlotPictures = std::array<Picture, 2>;

    static void fit(Picture& picture, const OrvgSignalWidget& slot);
    static void paint(Picture& picture, const OrvgSignalWidget& slot);
    SlotPictures& at(int position);

    std::vector<SlotPictures> mSlots; // a ring: shifting moves nothing
    std::size_t mFirst = 0;           // where in the ring the leftmost slot is
};
