#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace refhost {

/// Runs jobs in child processes, some at a time. Each starts from the state of this process, which what it does leaves
/// as it is: a child may load a plug-in, and may crash. One thread, and no other may run beside it as a job is started.
class ChildProcesses {
  public:
    /// What a job does in its child, told its number; what it answers comes out as `Ended::said`. Whatever it throws
    /// ends the child like a crash.
    using Job = std::function<std::string(size_t number)>;

    struct Ended {
        size_t number = 0;
        std::string said;  ///< the whole answer; or what there is of it, where the child did not come to its end
        int status = 0;    ///< as waitpid() tells it
    };

    explicit ChildProcesses(Job job) : mJob(std::move(job)) {}
    /// Kills those that still run.
    ~ChildProcesses();
    ChildProcesses(const ChildProcesses&) = delete;
    ChildProcesses& operator=(const ChildProcesses&) = delete;

    size_t running() const { return mChildren.size(); }
    /// Throws std::system_error where there can be no further process.
    void start(size_t number);
    /// Waits for a child to end, for `patience` at most. Nothing where none has.
    std::optional<Ended> next(std::chrono::milliseconds patience);

  private:
    struct Child {
        size_t number;
        pid_t process;
        int answers;  ///< the end of the pipe that is read
        std::string said;
    };

    static Ended reap(Child& child);

    Job mJob;
    std::vector<Child> mChildren;
};

}  // namespace refhost
