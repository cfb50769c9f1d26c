#include "refhost/corpus/ChildProcesses.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <system_error>
#include <utility>

namespace refhost {

namespace {

/// Calls again what a signal has interrupted.
template <typename Call>
auto whole(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

[[noreturn]] void fail(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = whole([&] { return write(file, bytes.data(), bytes.size()); });
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

/// Ends without the destructors and buffers of the parent, of which the child has copies: whatever the job throws must
/// not get there either.
[[noreturn]] void runAsChild(pid_t parent, int answers, const ChildProcesses::Job& job, size_t number) noexcept {
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // a job that never ends does not outlive whoever would wait for it
    if (getppid() != parent) _exit(1);
    _exit(writeAll(answers, job(number)) ? 0 : 1);
}

}  // namespace

ChildProcesses::~ChildProcesses() {
    for (const Child& child : mChildren) kill(child.process, SIGKILL);
    for (Child& child : mChildren) reap(child);
}

void ChildProcesses::start(size_t number) {
    mChildren.reserve(mChildren.size() + 1);  // here: a child that is running cannot be forgotten
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) fail("no pipe for another process");
    const pid_t parent = getpid();
    const pid_t process = fork();
    if (process == 0) runAsChild(parent, ends[1], mJob, number);
    close(ends[1]);
    if (process < 0) {
        const int reason = errno;
        close(ends[0]);
        errno = reason;
        fail("no further process");
    }
    mChildren.push_back({number, process, ends[0], {}});
}

std::optional<ChildProcesses::Ended> ChildProcesses::next(std::chrono::milliseconds patience) {
    std::vector<pollfd> waiting;
    waiting.reserve(mChildren.size());
    for (const Child& child : mChildren) waiting.push_back({child.answers, POLLIN, 0});
    const int ready = poll(waiting.data(), waiting.size(), static_cast<int>(patience.count()));
    if (ready < 0 && errno != EINTR) fail("poll");
    if (ready <= 0) return std::nullopt;

    std::array<char, 65536> piece{};  // what a pipe holds
    for (size_t i = 0; i < waiting.size(); ++i) {
        if (waiting[i].revents == 0) continue;
        const ssize_t read = whole([&] { return ::read(waiting[i].fd, piece.data(), piece.size()); });
        if (read > 0) {
            mChildren[i].said.append(piece.data(), static_cast<size_t>(read));
            continue;
        }
        Ended ended = reap(mChildren[i]);
        mChildren.erase(mChildren.begin() + static_cast<std::ptrdiff_t>(i));
        return ended;
    }
    return std::nullopt;
}

ChildProcesses::Ended ChildProcesses::reap(Child& child) {
    Ended ended{child.number, std::move(child.said), 0};
    close(child.answers);
    whole([&] { return waitpid(child.process, &ended.status, 0); });
    return ended;
}

}  // namespace refhost
