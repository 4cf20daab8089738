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

/// Shows it while `work` runs, and returns what that returns.
template<typename Work>
auto underWaitCursor(const Work& work)
{
    const WaitCursor waitCursor;
    return work();
}
