#pragma once

/// Shows the wait cursor for as long as it lives: one on the stack around each blocking exchange
/// with the ECU that takes noticeably long. Message boxes belong outside its scope.
class WaitCursor
{
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};
