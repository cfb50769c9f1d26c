#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "bench/Counted.h"

namespace {

/// Lets the child run to its next system call, in or out. False when it has ended.
bool toNextStop(pid_t child) {
    int status = 0;
    return ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) == 0 && waitpid(child, &status, 0) == child &&
           WIFSTOPPED(status);
}

/// The number of stops from here to the next gettid(), which is two per system call; negative when the child ends
/// first.
int64_t stopsToMark(pid_t child) {
    for (int64_t stops = 0; toNextStop(child); ++stops) {
        __ptrace_syscall_info call{};
        if (ptrace(static_cast<__ptrace_request>(PTRACE_GET_SYSCALL_INFO), child, sizeof call, &call) <= 0) return -1;
        if (call.op == PTRACE_SYSCALL_INFO_ENTRY && call.entry.nr == SYS_gettid) {
            return toNextStop(child) ? stops : -1;  // out of it again
        }
    }
    return -1;
}

}  // namespace

int64_t bench::systemCallsOf(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(1);
        if (raise(SIGSTOP) != 0) _exit(1);
        syscall(SYS_gettid);
        work();
        syscall(SYS_gettid);
        _exit(0);
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFSTOPPED(status)) return -1;
    const bool traced =
        ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD) == 0 && stopsToMark(child) >= 0;
    const int64_t during = traced ? stopsToMark(child) : -1;
    if (kill(child, SIGKILL) == 0) waitpid(child, &status, 0);
    return during < 0 ? -1 : during / 2;
}
