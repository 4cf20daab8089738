#pragma once

/// Owns the pointing-hand override cursor of one item under the mouse: sets it once, restores it
/// once, at the latest when it is destroyed. GUI thread.
class HoverCursor
{
public:
    HoverCursor() = default;
    ~HoverCursor();
    HoverCursor(const HoverCursor&) = delete;
    HoverCursor& operator=(const HoverCursor&) = delete;

    void set();
    void restore();

private:
    bool mIsSet = false;
};
