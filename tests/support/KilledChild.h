#pragma once

#include <functional>
#include <vector>

/// Does `write` in a child process of this one and kills the child at one of its system calls.
/// What is done to files is done by system calls: to be killed before and behind each, from the
/// first that creates a file, is to be killed at every moment.
class KilledChild
{
public:
    struct End
    {
        bool wasKilled = false;          ///< false: it had come to its end before
        std::vector<long> systemCalls{}; ///< by number, behind the one that creates the first file
    };

    /// @param stop how many stops it passes before: a system call has two, before and behind
    static End killedAtStop(int stop, const std::function<void()>& write);

    /// Not killed at all.
    static End whole(const std::function<void()>& write);
};
