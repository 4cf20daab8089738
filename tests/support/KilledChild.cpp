#include "tests/support/KilledChild.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <limits>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

[[noreturn]] void runChild(const std::function<void()>& write)
{
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0) {
        std::raise(SIGSTOP);
        write();
    }
    // Nothing of what the parent owns, a temporary folder for one, may be cleaned up here.
    _exit(EXIT_SUCCESS);
}

__ptrace_syscall_info systemCallOf(pid_t child)
{
    __ptrace_syscall_info info{};
    ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
    return info;
}

bool isEntry(const __ptrace_syscall_info& call)
{
    return call.op == PTRACE_SYSCALL_INFO_ENTRY;
}

bool createsFile(const __ptrace_syscall_info& call)
{
    constexpr auto kCreates = O_CREAT | (O_TMPFILE & ~O_DIRECTORY);
    return isEntry(call) && call.entry.nr == SYS_openat && (call.entry.args[2] & kCreates) != 0;
}

/// False when the child has ended.
bool goOnToTheNextStop(pid_t child)
{
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    int status = 0;
    return waitpid(child, &status, __WALL) == child && WIFSTOPPED(status);
}

/// False when there was none.
bool goOnToTheFirstFile(pid_t child)
{
    while (goOnToTheNextStop(child)) {
        if (createsFile(systemCallOf(child)))
            return true;
    }
    return false;
}

} // namespace

KilledChild::End KilledChild::killedAtStop(int stop, const std::function<void()>& write)
{
    const pid_t child = fork();
    if (child == 0)
        runChild(write);
    int status = 0;
    End end;
    if (waitpid(child, &status, 0) != child || !WIFSTOPPED(status))
        return end;
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    if (!goOnToTheFirstFile(child))
        return end;
    for (int passed = 0; passed < stop; ++passed) {
        if (!goOnToTheNextStop(child))
            return end;
        if (const __ptrace_syscall_info call = systemCallOf(child); isEntry(call))
            end.systemCalls.push_back(static_cast<long>(call.entry.nr));
    }
    kill(child, SIGKILL);
    waitpid(child, &status, __WALL);
    end.wasKilled = WIFSIGNALED(status);
    return end;
}

KilledChild::End KilledChild::whole(const std::function<void()>& write)
{
    return killedAtStop(std::numeric_limits<int>::max(), write);
}
